#include "widgets/wrappinglabel.h"

#include <QPainter>
#include <QStaticText>
#include <QTextOption>

#include <cmath>

namespace {

QStaticText laidOut(const QLabel &label, int width)
{
    QTextOption option(label.alignment());
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QStaticText text(label.text());
    text.setTextFormat(Qt::PlainText);
    text.setTextOption(option);
    text.setTextWidth(width);
    text.prepare(QTransform(), label.font());
    return text;
}

} // namespace

WrappingLabel::WrappingLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true); // makes the height depend on the width
}

QSize WrappingLabel::minimumSizeHint() const
{
    // Before it is shown the width means nothing yet.
    return {0, isVisible() ? heightForWidth(width()) : fontMetrics().height()};
}

int WrappingLabel::heightForWidth(int width) const
{
    return static_cast<int>(std::ceil(laidOut(*this, width).size().height()));
}

void WrappingLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.drawStaticText(0, 0, laidOut(*this, width()));
}

void WrappingLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    updateGeometry();
}

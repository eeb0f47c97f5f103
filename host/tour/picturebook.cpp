#include "host/tour/picturebook.h"

#include "host/tour/stepfailed.h"

#include <QMenu>
#include <QPainter>
#include <QWidget>

namespace {

constexpr int border = 1;
constexpr int titleDarkness = 112; // in percent of the window's own
constexpr int shadowWidth = 10;
constexpr int shadowDarkness = 9; // alpha of each of the rings that make it up
constexpr int numberWidth = 2;

QSizeF sizeOf(const QPixmap &picture)
{
    return QSizeF(picture.size()) / picture.devicePixelRatioF();
}

QPixmap blank(const QSizeF &size, qreal ratio)
{
    QPixmap picture((size * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    return picture;
}

int titleHeight(const QWidget *window)
{
    return window->fontMetrics().height() * 2;
}

void drawTitle(QPainter &painter, const QRectF &bar, const QWidget *window)
{
    painter.fillRect(
        bar, window->palette().color(QPalette::Active, QPalette::Window).darker(titleDarkness));
    QFont font = window->font();
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(window->palette().color(QPalette::Active, QPalette::WindowText));
    painter.drawText(bar, Qt::AlignCenter, window->windowTitle());
}

QPixmap framed(QWidget *window)
{
    const QPixmap content = window->grab();
    const QSizeF size = sizeOf(content);
    const qreal title = titleHeight(window);
    QPixmap picture =
        blank(size + QSizeF(2 * border, title + 2 * border), content.devicePixelRatioF());
    QPainter painter(&picture);
    const QRectF whole({}, sizeOf(picture));
    painter.fillRect(whole, window->palette().color(QPalette::Active, QPalette::Dark));
    drawTitle(painter, {border, border, size.width(), title}, window);
    painter.drawPixmap(QPointF(border, border + title), content);
    return picture;
}

void drawShadow(QPainter &painter, const QRectF &around)
{
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, shadowDarkness));
    for (int width = 1; width <= shadowWidth; ++width) {
        painter.drawRoundedRect(around.adjusted(-width, -width, width, width), width, width);
    }
    painter.restore();
}

} // namespace

PictureBook::PictureBook(const QDir &folder)
    : m_folder(folder)
{
}

void PictureBook::add(const QString &name, QWidget *window)
{
    save(name, framed(window));
}

void PictureBook::add(const QString &name, QWidget *window, QWidget *above)
{
    QPixmap picture = framed(window);
    const bool isMenu = qobject_cast<QMenu *>(above) != nullptr;
    const QPixmap top = isMenu ? above->grab() : framed(above);
    const QPointF inMiddle =
        QRectF({}, sizeOf(picture)).center() - QRectF({}, sizeOf(top)).center();
    const QPointF whereItPoppedUp =
        window->mapFromGlobal(above->pos()) + QPoint(border, border + titleHeight(window));
    const QRectF place(isMenu ? whereItPoppedUp : inMiddle, sizeOf(top));
    QPainter painter(&picture);
    drawShadow(painter, place);
    painter.drawPixmap(place.topLeft(), top);
    painter.end();
    save(name, picture);
}

void PictureBook::save(const QString &name, const QPixmap &picture)
{
    const QString fileName =
        QStringLiteral("%1-%2.png").arg(++m_count, numberWidth, 10, QLatin1Char('0')).arg(name);
    if (!picture.save(m_folder.filePath(fileName))) {
        throw StepFailed(QStringLiteral("cannot write %1").arg(m_folder.filePath(fileName)));
    }
}

#include "host/panelarea.h"

#include <QScrollBar>

PanelArea::PanelArea(QWidget *panel, QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setWidget(panel);
}

QSize PanelArea::minimumSizeHint() const
{
    const int scrollBar = verticalScrollBar()->sizeHint().width();
    return {widget()->minimumSizeHint().width() + scrollBar,
            QScrollArea::minimumSizeHint().height()};
}

#include "host/growingdocks.h"

#include <QDockWidget>
#include <QEvent>
#include <QMainWindow>

#include <algorithm>

GrowingDocks::GrowingDocks(QMainWindow *window, QDockWidget *wider, QDockWidget *higher)
    : QObject(window)
    , m_window(window)
    , m_wider(wider)
    , m_higher(higher)
{
    window->installEventFilter(this);
    window->centralWidget()->installEventFilter(this);
}

bool GrowingDocks::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        if (watched == m_window) {
            keepCentralSize();
        } else if (m_window->size() == m_windowSize) { // the user has moved a border
            m_centralSize = m_window->centralWidget()->size();
        }
    }
    return QObject::eventFilter(watched, event);
}

// The window's layout comes first, and gives the central widget all.
void GrowingDocks::keepCentralSize()
{
    m_windowSize = m_window->size();
    if (m_centralSize.isValid()) {
        const QSize excess = m_window->centralWidget()->size() - m_centralSize;
        m_window->resizeDocks({m_wider}, {std::max(1, m_wider->width() + excess.width())},
                              Qt::Horizontal);
        m_window->resizeDocks({m_higher}, {std::max(1, m_higher->height() + excess.height())},
                              Qt::Vertical);
    }
}

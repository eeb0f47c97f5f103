#include "widgets/waitcursor.h"

#include <QCursor>
#include <QGuiApplication>

WaitCursor::WaitCursor()
{
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
}

WaitCursor::~WaitCursor()
{
    restore();
}

void WaitCursor::restore()
{
    if (m_shown) {
        QGuiApplication::restoreOverrideCursor();
        m_shown = false;
    }
}

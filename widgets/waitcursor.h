#pragma once

#include <QCursor>
#include <QGuiApplication>

/// Shows the application-wide wait cursor for as long as it lives; cursors stay paired on every way
/// out.
class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor)); }
    ~WaitCursor() { restore(); }
    Q_DISABLE_COPY(WaitCursor)

    /// Takes the wait cursor back before the end of the scope, as is due before a message box.
    /// Harmless when called again.
    void restore()
    {
        if (m_shown) {
            QGuiApplication::restoreOverrideCursor();
            m_shown = false;
        }
    }

    /// Leaves the wait cursor on for good.
    void abandon() { m_shown = false; }

private:
    bool m_shown = true;
};

#pragma once

/// Shows the application-wide wait cursor for as long as it lives; cursors stay paired on every way
/// out.
class WaitCursor
{
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;

    /// Takes the wait cursor back before the end of the scope, as is due before a message box.
    /// Harmless when called again.
    void restore();

    /// Leaves the wait cursor on for good.
    void abandon() { m_shown = false; }

private:
    bool m_shown = true;
};

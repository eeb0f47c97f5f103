#pragma once

#include <QWidget>

/// Gives @p window a parent, which may be null; it stays a window. What has its focus keeps it,
/// which QWidget::setParent() alone takes away.
inline void adopt(QWidget *window, QWidget *parent)
{
    QWidget *const focused = window->focusWidget();
    window->setParent(parent, window->windowFlags());
    if (focused) {
        focused->setFocus();
    }
}

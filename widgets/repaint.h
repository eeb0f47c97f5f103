#pragma once

#include <QApplication>
#include <QWidget>

/// Paints all visible windows, without the event loop: neither input nor timers get in between.
///
/// Called when a window has closed: the commands that follow block the event loop, and what it
/// covered would go on showing it until they end.
inline void repaintWindows()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        window->repaint(); // nothing happens to those that are hidden
    }
}

#pragma once

#include <QExposeEvent>
#include <QGuiApplication>
#include <QWindow>

/// Puts all windows on the screen again, without the event loop: neither input nor timers get in
/// between.
///
/// Called when a window has closed: the commands that follow block the event loop, and what it
/// covered would go on showing it until they end. Asking widgets to repaint would not do, for they
/// leave out what they take to be there still.
inline void repaintWindows()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *window : windows) {
        QExposeEvent event(QRect(QPoint(), window->size()));
        QCoreApplication::sendEvent(window, &event); // nothing happens to those that are hidden
    }
}

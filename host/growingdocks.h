#pragma once

#include <QObject>
#include <QSize>

class QDockWidget;
class QMainWindow;

/// Gives what a main window grows to its docks, and takes what it shrinks from them: the central
/// widget keeps the size that the user gave it by moving its borders.
class GrowingDocks : public QObject
{
    Q_OBJECT

public:
    /// Belongs to @p window. One of its docks gets the width, the other one the height.
    GrowingDocks(QMainWindow *window, QDockWidget *wider, QDockWidget *higher);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void keepCentralSize();

    QMainWindow *m_window;
    QDockWidget *m_wider;
    QDockWidget *m_higher;
    QSize m_windowSize; // for which the docks have their sizes
    QSize m_centralSize;
};

#pragma once

#include <QMainWindow>

class IdentityPanel;
class LogModel;
class LogView;
class QDockWidget;
class TransferStatus;

/// The host's window: who the controller is, what modules post, what they send, and the menus into
/// which they put their actions. What it grows goes to the logs.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// The log models are not owned and must outlive the window.
    MainWindow(LogModel *events, LogModel *commands);

    IdentityPanel *identityPanel() const { return m_identityPanel; }
    TransferStatus *transferStatus() const { return m_transferStatus; }

    /// Takes the size that suits the window's contents, whatever the screen's size.
    void takePreferredSize();

signals:
    /// The window has been painted for the first time.
    void appeared();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QDockWidget *addDock(Qt::DockWidgetArea area, const QString &title, LogView *log,
                         const QString &shortcut);
    void addMenus();
    QSize sizeForContents() const;
    QSize spaceOnScreen() const;
    void takeSize(const QSize &size);
    void about();

    IdentityPanel *m_identityPanel;
    TransferStatus *m_transferStatus;
    QDockWidget *m_eventsDock;
    QDockWidget *m_commandsDock;
    bool m_hasAppeared = false;
};

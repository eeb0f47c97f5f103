#pragma once

#include <QMainWindow>

class IdentityPanel;
class LogModel;
class TransferStatus;

/// The host's window: who the controller is, what modules post, what they send, and the menus into
/// which they put their actions.
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

private:
    void addDock(Qt::DockWidgetArea area, const QString &title, QWidget *content);
    void addMenus();
    void about();

    IdentityPanel *m_identityPanel;
    TransferStatus *m_transferStatus;
};

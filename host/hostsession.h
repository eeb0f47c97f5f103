#pragma once

#include "host/channellogs.h"
#include "host/channelmonitor.h"
#include "host/mainwindow.h"
#include "host/pluginloader.h"
#include "hostapi/backendversions.h"

#include <QTimer>

class ControllerLink;
struct HostOptions;

/// One run of the host: its window, connected to a controller, with one module in its menus.
class HostSession : public QObject
{
    Q_OBJECT

public:
    /// @p link is not owned and must outlive the session.
    HostSession(ControllerLink &link, const HostOptions &options);
    ~HostSession() override;

    /// Loads the module. @return whether it could be loaded; if not, @p problem says why in one
    /// line
    bool load(QString *problem);

    /// Asks the controller who it is, hands the loaded module what it needs, and puts its actions
    /// into the menus. Blocks for as long as the controller takes, or does not answer, so the
    /// window should be visible before.
    void start();

    MainWindow &window() { return m_window; }
    ChannelMonitor &monitor() { return m_monitor; }
    /// What the module is told of the controller.
    const BackendVersions &versions() const { return m_versions; }

signals:
    /// The window shows who the controller is and what is active on it.
    void identityShown();

private:
    void setProperties();
    void placeMenuEntries();
    void noticeEvent(const QByteArray &category, const QByteArray &source, int level,
                     const QByteArray &text);
    void followContact();
    void showIdentity();

    ControllerLink &m_link;
    const bool m_isObserver;
    const QString m_hostVersion;
    BackendVersions m_versions;
    PluginLoader m_plugin; // goes after the window, which shows what came from the module
    ChannelMonitor m_monitor;
    ChannelLogs m_logs;
    MainWindow m_window;
    QTimer m_identityTimer;
};

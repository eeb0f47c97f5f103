#pragma once

#include "channel/configentry.h"

#include <QDialog>

class ConfigurationsMessagereceiver;
class IOManager;
struct BackendVersions;

/// Saves configurations of the controller into a file.
class ConfigSaveDlg : public QDialog
{
    Q_OBJECT

public:
    /// @p channel and @p versions are not owned and must outlive the dialog.
    ConfigSaveDlg(IOManager *channel, BackendVersions *versions, QWidget *parent);
    ~ConfigSaveDlg() override;

    /// Replaces the configurations that are offered; called before each showing.
    void setConfigurationList(const ConfigEntryList &configurations);

private:
    IOManager *m_channel;
    BackendVersions *m_versions;
    ConfigEntryList m_configurations;
    ConfigurationsMessagereceiver *m_messageReceiver;
};

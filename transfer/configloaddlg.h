#pragma once

#include "channel/configentry.h"

#include <QDialog>

class IOManager;
struct BackendVersions;

/// Brings configurations from a file back onto the controller.
class ConfigLoadDlg : public QDialog
{
    Q_OBJECT

public:
    /// @p channel and @p versions are not owned and must outlive the dialog.
    ConfigLoadDlg(IOManager *channel, BackendVersions *versions, QWidget *parent);
    ~ConfigLoadDlg() override;

    /// Replaces the controller's configurations that a load is compared with; called before each
    /// use.
    void setConfigurationList(const ConfigEntryList &configurations);

private:
    IOManager *m_channel;
    BackendVersions *m_versions;
    ConfigEntryList m_configurations;
};

#include "transfer/configloaddlg.h"

ConfigLoadDlg::ConfigLoadDlg(IOManager *channel, BackendVersions *versions, QWidget *parent)
    : QDialog(parent)
    , m_channel(channel)
    , m_versions(versions)
{
}

ConfigLoadDlg::~ConfigLoadDlg() = default;

void ConfigLoadDlg::setConfigurationList(const ConfigEntryList &configurations)
{
    m_configurations = configurations;
}

#include "transfer/configsavedlg.h"

#include "channel/configurationsmessagereceiver.h"
#include "hostapi/iomanager.h"

ConfigSaveDlg::ConfigSaveDlg(IOManager *channel, BackendVersions *versions, QWidget *parent)
    : QDialog(parent)
    , m_channel(channel)
    , m_versions(versions)
    , m_messageReceiver(new ConfigurationsMessagereceiver(this))
{
    m_channel->addMessageReceiver("ConfigurationsModule", m_messageReceiver);
}

ConfigSaveDlg::~ConfigSaveDlg()
{
    // Not the name it was added under: hosts expect exactly this pair.
    m_channel->removeMessageReceiver("ServiceModule", m_messageReceiver);
}

void ConfigSaveDlg::setConfigurationList(const ConfigEntryList &configurations)
{
    m_configurations = configurations;
}

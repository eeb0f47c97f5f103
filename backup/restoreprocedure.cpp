#include "backup/restoreprocedure.h"

#include "backup/fullbackup.h"
#include "channel/answeredcount.h"
#include "channel/hostmessages.h"
#include "channel/replybuffer.h"
#include "hostapi/iomanager.h"

#include <algorithm>

namespace {

constexpr int importTimeoutMs = 6000;
constexpr int cascadeTimeoutMs = 8000;
constexpr int availabilityTimeoutMs = 1000;

const QLatin1String accepted("veltra2 ok");

} // namespace

RestoreProcedure::RestoreProcedure(FullBackup *backup, IOManager *channel,
                                   QStringList *failedSlaves, QStringList *reconnectedSlaves)
    : m_backup(backup)
    , m_channel(channel)
    , m_failedSlaves(failedSlaves)
    , m_reconnectedSlaves(reconnectedSlaves)
{
}

bool RestoreProcedure::run(bool restoreNetwork)
{
    if (!setNetwork(restoreNetwork) || !readExistingConfigurations() || !uploadConfigurations()
        || !importConfigurations()) {
        return false;
    }
    activateConfiguration();
    HostMessages::announceActiveConfigurationChanged(m_channel);
    return removeForeignSlaves() && reattachSlaves();
}

bool RestoreProcedure::setNetwork(bool withAddress)
{
    if (!m_backup->isControllerEmbedded()) {
        return true;
    }
    const auto latin1 = [](const QString &text) { return text.toLatin1(); };
    if (withAddress
        && (m_channel->sendCommand("system hostname %s", latin1(m_backup->name).constData()) != 0
            || m_channel->sendCommand("system net %s", latin1(m_backup->net).constData()) != 0)) {
        return false;
    }
    return m_channel->sendCommand("system domainname %s", latin1(m_backup->domain).constData()) == 0
        && m_channel->sendCommand("system nameserver %s", latin1(m_backup->nameServer).constData())
        == 0
        && m_channel->sendCommand("system ntp_server %s", latin1(m_backup->ntpServer).constData())
        == 0;
}

bool RestoreProcedure::readExistingConfigurations()
{
    int number = 0;
    if (m_channel->queryInt(&number, "config number_of_configs") != 0 || !isBelievable(number)) {
        return false;
    }
    for (int slot = 1; slot <= number; ++slot) {
        ReplyBuffer identifier;
        if (m_channel->queryString(identifier.data(), "config config t%02d", slot) != 0) {
            return false;
        }
        m_existingConfigurations.append(identifier.utf8Text());
    }
    return true;
}

bool RestoreProcedure::uploadConfigurations()
{
    m_backup->uploadConfigData();
    return m_backup->readImportItems(&m_importItems);
}

bool RestoreProcedure::importConfigurations()
{
    return std::all_of(m_importItems.begin(), m_importItems.end(), [this](const QString &item) {
        return (!m_existingConfigurations.contains(item) || deleteConfiguration(item))
            && importConfiguration(item);
    });
}

bool RestoreProcedure::deleteConfiguration(const QString &identifier)
{
    ReplyBuffer reply;
    m_channel->setTimeout(0, importTimeoutMs, 1);
    return m_channel->sendCommandReply(reply.data(), "veltra2 config delete_config %s",
                                       identifier.toLatin1().constData())
        == 0
        && reply.utf8Text() == accepted;
}

bool RestoreProcedure::importConfiguration(const QString &identifier)
{
    // The controller wants flag 0 here, unlike before every other command of a restore.
    m_channel->setTimeout(0, importTimeoutMs, 0);
    return m_channel->sendCommand("system import 'config' '%s'", identifier.toLatin1().constData())
        == 0;
}

void RestoreProcedure::activateConfiguration()
{
    if (m_importItems.contains(m_backup->activeConfig)) {
        m_channel->sendCommand("config active_config %s",
                               m_backup->activeConfig.toLatin1().constData());
    }
}

bool RestoreProcedure::removeForeignSlaves()
{
    if (!m_backup->readConnectedSlaves(&m_connectedSlaves)) {
        return false;
    }
    return std::all_of(m_connectedSlaves.begin(), m_connectedSlaves.end(),
                       [this](const QString &slave) {
                           return m_backup->slaves.contains(slave)
                               || sendSlaveCommand("sub_slave", slave) == accepted;
                       });
}

bool RestoreProcedure::reattachSlaves()
{
    const QStringList &slaves = m_backup->slaves;
    return std::all_of(slaves.begin(), slaves.end(), [this](const QString &slave) {
        if (!m_connectedSlaves.contains(slave) && !addSlave(slave)) {
            return false;
        }
        checkSlave(slave);
        return true;
    });
}

// A slave that the controller refuses may have to be found first. Whether that helped does not show
// in the answers, but when the slave is checked.
bool RestoreProcedure::addSlave(const QString &slave)
{
    const auto answer = sendSlaveCommand("add_slave", slave);
    if (!answer || *answer == accepted) {
        return answer.has_value();
    }
    return sendSlaveCommand("add_scanned_slave", slave) && sendSlaveCommand("add_slave", slave);
}

void RestoreProcedure::checkSlave(const QString &slave)
{
    bool isAvailable = false;
    m_channel->setTimeout(0, availabilityTimeoutMs, 1);
    const bool isAnswered =
        m_channel->queryBool(&isAvailable, "cascade connected_slave_available %s",
                             slave.toLatin1().constData())
        == 0;
    const bool isReconnected = isAnswered && isAvailable;
    if (QStringList *list = isReconnected ? m_reconnectedSlaves : m_failedSlaves) {
        list->append(slave);
    }
    if (!isReconnected) {
        HostMessages::reportError(m_channel,
                                  QStringLiteral("unable to reconnect slave '%1'").arg(slave));
    }
}

std::optional<QString> RestoreProcedure::sendSlaveCommand(const char *command, const QString &slave)
{
    ReplyBuffer reply;
    m_channel->setTimeout(0, cascadeTimeoutMs, 1);
    if (m_channel->sendCommandReply(reply.data(), "veltra2 cascade %s %s", command,
                                    slave.toLatin1().constData())
        != 0) {
        return std::nullopt;
    }
    return reply.utf8Text();
}

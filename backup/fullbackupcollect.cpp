#include "backup/fullbackup.h"

#include "channel/answeredcount.h"
#include "channel/downloadanswer.h"
#include "channel/replybuffer.h"
#include "channel/transferencoding.h"
#include "hostapi/backendversions.h"
#include "hostapi/iomanager.h"

#include <optional>

namespace {

constexpr int prepareTimeoutMs = 7000;

constexpr int downloadNotStarted = -1;
constexpr int downloadBrokeOff = -22;

constexpr int maxConfigDataSize = 256 * 1024 * 1024; // what a document can carry
constexpr int maxChunks = maxConfigDataSize / TransferEncoding::chunkSize;

} // namespace

int FullBackup::collectFromController()
{
    const bool isCollected = readIdentity() && readConnectedSlaves(&slaves) && readNetworkSettings()
        && ask("config active_config", &activeConfig) && downloadConfigData() == 0;
    return isCollected ? 1 : 0;
}

bool FullBackup::readIdentity()
{
    if (!ask("system hostname", &name) || !ask("system controller_serial", &serial)) {
        return false;
    }
    ptVersion = m_versions->ptVersion;
    ctVersion = m_versions->ctVersion;
    systemModel = m_versions->systemModel;
    return true;
}

bool FullBackup::readConnectedSlaves(QStringList *list)
{
    list->clear();
    int number = 0;
    if (m_channel->queryInt(&number, "cascade number_of_connected_slaves") != 0
        || !isBelievable(number)) {
        return false;
    }
    for (int i = 1; i <= number; ++i) {
        ReplyBuffer reply;
        if (m_channel->queryString(reply.data(), "cascade connected_slave d%02d", i) != 0) {
            return false;
        }
        list->append(reply.utf8Text());
    }
    return true;
}

bool FullBackup::readNetworkSettings()
{
    if (!ask("system net", &net)) {
        return false;
    }
    if (!isControllerEmbedded()) {
        domain = nameServer = ntpServer = QStringLiteral("none");
        return true;
    }
    return ask("system domainname", &domain) && ask("system nameserver", &nameServer)
        && ask("system ntp_server", &ntpServer);
}

int FullBackup::downloadConfigData()
{
    configData.clear();
    if (!prepareDownload()) {
        return downloadNotStarted;
    }
    if (!downloadChunks()) {
        configData.clear();
        return downloadBrokeOff;
    }
    return 0;
}

bool FullBackup::prepareDownload()
{
    int number = 0;
    if (!cancelDownload() || m_channel->queryInt(&number, "config number_of_configs") != 0
        || number == 0 || !isBelievable(number)) {
        return false;
    }
    m_channel->setTimeout(0, prepareTimeoutMs, 1);
    if (m_channel->sendCommand("system download prepare 'config' '__base'") != 0) {
        cancelDownload();
        return false;
    }
    for (int slot = 1; slot <= number; ++slot) {
        prepareSlot(slot);
    }
    return true;
}

// Results do not matter: one configuration that cannot be prepared does not stop the backup of all
// others.
void FullBackup::prepareSlot(int slot)
{
    ReplyBuffer identifier;
    if (m_channel->queryString(identifier.data(), "config config t%02d", slot) != 0) {
        return;
    }
    m_channel->setTimeout(0, prepareTimeoutMs, 1);
    m_channel->sendCommand("system download prepare 'config' '%s'",
                           identifier.utf8Text().toLatin1().constData());
}

bool FullBackup::downloadChunks()
{
    int expected = 0; // the first number that is not 0; those after it are not looked at
    for (int chunk = 1;; ++chunk) {
        ReplyBuffer reply;
        if (m_channel->queryString(reply.data(), "system download %d", chunk) != 0) {
            return false;
        }
        const std::optional<DownloadAnswer> answer = parseDownloadAnswer(reply.bytes());
        if (!answer || TransferEncoding::decode(answer->text, &configData) < 0) {
            return false;
        }
        if (expected == 0) {
            expected = answer->total;
        }
        if (chunk >= expected) {
            return true;
        }
        if (expected > maxChunks) {
            return false;
        }
    }
}

bool FullBackup::ask(const char *query, QString *text)
{
    ReplyBuffer reply;
    if (m_channel->queryString(reply.data(), query) != 0) {
        return false;
    }
    *text = reply.utf8Text();
    return true;
}

#include "backup/fullbackup.h"

#include "channel/chunkdownload.h"
#include "channel/replybuffer.h"
#include "channel/transferencoding.h"
#include "hostapi/backendversions.h"

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
        && ask(&Controller::activeConfiguration, &activeConfig) && downloadConfigData() == 0;
    return isCollected ? 1 : 0;
}

bool FullBackup::readIdentity()
{
    if (!ask(&Controller::hostname, &name) || !ask(&Controller::serial, &serial)) {
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
    const std::optional<int> count = m_controller.numberOfConnectedSlaves();
    if (!count) {
        return false;
    }
    for (int number = 1; number <= *count; ++number) {
        ReplyBuffer slave;
        if (!m_controller.connectedSlave(number, &slave)) {
            return false;
        }
        list->append(slave.utf8Text());
    }
    return true;
}

bool FullBackup::readNetworkSettings()
{
    if (!ask(&Controller::net, &net)) {
        return false;
    }
    if (!isControllerEmbedded()) {
        domain = nameServer = ntpServer = QStringLiteral("none");
        return true;
    }
    return ask(&Controller::domainName, &domain) && ask(&Controller::nameServer, &nameServer)
        && ask(&Controller::ntpServer, &ntpServer);
}

int FullBackup::downloadConfigData()
{
    configData.clear();
    if (!prepareDownload()) {
        return downloadNotStarted;
    }
    const auto append = [this](const Chunk &chunk) {
        configData += chunk.bytes;
        return chunk.total <= maxChunks;
    };
    QByteArray refused; // of which nothing is told here
    if (downloadChunks(m_controller, append, &refused) != DownloadEnd::Complete) {
        configData.clear();
        return downloadBrokeOff;
    }
    return 0;
}

bool FullBackup::prepareDownload()
{
    if (!m_controller.cancelDownload()) {
        return false;
    }
    const std::optional<int> count = m_controller.numberOfConfigurations();
    if (!count || *count == 0) {
        return false;
    }
    m_controller.setTimeout(prepareTimeoutMs, 1);
    if (!m_controller.prepareDownloadOfBase()) {
        m_controller.cancelDownload();
        return false;
    }
    for (int slot = 1; slot <= *count; ++slot) {
        ReplyBuffer identifier;
        if (m_controller.identifierInSlot(slot, &identifier)) {
            m_controller.setTimeout(prepareTimeoutMs, 1);
            // One that cannot be prepared does not stop the backup of all others.
            m_controller.prepareDownload(identifier.utf8Text());
        }
    }
    return true;
}

bool FullBackup::ask(Query query, QString *text)
{
    ReplyBuffer reply;
    if (!(m_controller.*query)(&reply)) {
        return false;
    }
    *text = reply.utf8Text();
    return true;
}

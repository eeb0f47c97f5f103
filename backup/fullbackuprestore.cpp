#include "backup/fullbackup.h"

#include "channel/identifiers.h"
#include "channel/importitem.h"
#include "channel/replybuffer.h"
#include "channel/transferencoding.h"
#include "channel/versiongate.h"
#include "hostapi/backendversions.h"

#include <algorithm>

namespace {

constexpr int importTimeoutMs = 6000;
constexpr int cascadeTimeoutMs = 8000;
constexpr int availabilityTimeoutMs = 1000;

void append(QStringList *list, const QString &text)
{
    if (list) {
        list->append(text);
    }
}

} // namespace

bool FullBackup::restoreToController(bool restoreNetwork, QStringList *failedSlaves,
                                     QStringList *reconnectedSlaves)
{
    QStringList existing;
    QStringList items;
    if (!setNetwork(restoreNetwork) || !readConfigurations(&existing)) {
        return false;
    }
    uploadConfigData();
    if (!readImportItems(&items) || !importItems(items, existing)) {
        return false;
    }
    if (items.contains(activeConfig)) {
        m_controller.activate(activeConfig);
    }
    m_controller.announceActiveConfigurationChanged();

    QStringList connected;
    if (!readConnectedSlaves(&connected) || !removeForeignSlaves(connected)) {
        return false;
    }
    for (const QString &slave : qAsConst(slaves)) {
        if (!connected.contains(slave) && !addSlave(slave)) {
            return false;
        }
        append(isSlaveBack(slave) ? reconnectedSlaves : failedSlaves, slave);
    }
    return true;
}

bool FullBackup::setNetwork(bool withAddress)
{
    if (!isControllerEmbedded()) {
        return true;
    }
    if (withAddress && !(m_controller.setHostname(name) && m_controller.setNet(net))) {
        return false;
    }
    return m_controller.setDomainName(domain) && m_controller.setNameServer(nameServer)
        && m_controller.setNtpServer(ntpServer);
}

bool FullBackup::readConfigurations(QStringList *list)
{
    const std::optional<int> count = m_controller.numberOfConfigurations();
    if (!count) {
        return false;
    }
    for (int slot = 1; slot <= *count; ++slot) {
        ReplyBuffer identifier;
        if (!m_controller.identifierInSlot(slot, &identifier)) {
            return false;
        }
        list->append(identifier.utf8Text());
    }
    return true;
}

int FullBackup::uploadConfigData()
{
    constexpr int chunkSize = TransferEncoding::chunkSize;
    const int chunks = (configData.size() + chunkSize - 1) / chunkSize;
    m_controller.cancelUpload();
    QByteArray text;
    for (int chunk = 1; chunk <= chunks; ++chunk) {
        const int begin = (chunk - 1) * chunkSize;
        const int size = std::min(chunkSize, configData.size() - begin);
        TransferEncoding::encode(configData.constData() + begin, size, &text);
        if (!m_controller.uploadChunk(chunks, chunk, text)) {
            break;
        }
    }
    return 0; // a broken upload shows in the import items
}

bool FullBackup::readImportItems(QStringList *list)
{
    QVector<QByteArray> lines;
    if (queryImportItems(m_controller, &lines) != ImportOffer::Read) {
        return false;
    }
    list->clear();
    for (const QByteArray &line : qAsConst(lines)) {
        const QString identifier = parseImportItem(QString::fromUtf8(line)).identifier;
        if (identifier != QLatin1String(Identifiers::base)) {
            list->append(identifier);
        } else if (VersionGate::importsBaseItem(m_versions->interfaceVersion)) {
            list->prepend(identifier);
        }
    }
    return true;
}

bool FullBackup::importItems(const QStringList &items, const QStringList &existing)
{
    for (const QString &item : items) {
        if (existing.contains(item)) {
            m_controller.setTimeout(importTimeoutMs, 1);
            if (m_controller.deleteConfiguration(item) != Controller::Answer::Ok) {
                return false;
            }
        }
        // The controller wants flag 0 here, unlike before every other command of a restore.
        m_controller.setTimeout(importTimeoutMs, 0);
        if (!m_controller.importConfiguration(item)) {
            return false;
        }
    }
    return true;
}

bool FullBackup::removeForeignSlaves(const QStringList &connected)
{
    for (const QString &slave : connected) {
        if (slaves.contains(slave)) {
            continue;
        }
        m_controller.setTimeout(cascadeTimeoutMs, 1);
        if (m_controller.removeSlave(slave) != Controller::Answer::Ok) {
            return false;
        }
    }
    return true;
}

// A slave that the controller refuses may have to be found first. Whether that helped does not show
// in the answers, but when the slave is checked.
bool FullBackup::addSlave(const QString &slave)
{
    using Answer = Controller::Answer;
    m_controller.setTimeout(cascadeTimeoutMs, 1);
    const Answer answer = m_controller.addSlave(slave);
    if (answer != Answer::Refusal) {
        return answer == Answer::Ok;
    }
    m_controller.setTimeout(cascadeTimeoutMs, 1);
    if (m_controller.addScannedSlave(slave) == Answer::None) {
        return false;
    }
    m_controller.setTimeout(cascadeTimeoutMs, 1);
    return m_controller.addSlave(slave) != Answer::None;
}

bool FullBackup::isSlaveBack(const QString &slave)
{
    m_controller.setTimeout(availabilityTimeoutMs, 1);
    const bool isBack = m_controller.isSlaveAvailable(slave).value_or(false);
    if (!isBack) {
        m_controller.report(QStringLiteral("unable to reconnect slave '%1'").arg(slave));
    }
    return isBack;
}

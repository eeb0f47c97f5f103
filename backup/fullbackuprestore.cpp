#include "backup/fullbackup.h"

#include "backup/restoreprocedure.h"
#include "channel/identifiers.h"
#include "channel/replybuffer.h"
#include "channel/transferencoding.h"
#include "channel/versiongate.h"
#include "hostapi/backendversions.h"
#include "hostapi/iomanager.h"

bool FullBackup::restoreToController(bool restoreNetwork, QStringList *failedSlaves,
                                     QStringList *reconnectedSlaves)
{
    return RestoreProcedure(this, m_channel, failedSlaves, reconnectedSlaves).run(restoreNetwork);
}

int FullBackup::uploadConfigData()
{
    constexpr int chunkSize = TransferEncoding::chunkSize;
    const int chunks = (configData.size() + chunkSize - 1) / chunkSize;
    m_channel->sendCommand("system upload cancel");
    for (int chunk = 1; chunk <= chunks; ++chunk) {
        const QByteArray bytes = configData.mid((chunk - 1) * chunkSize, chunkSize);
        if (m_channel->sendCommand("system upload %d %d %s", chunks, chunk,
                                   TransferEncoding::encode(bytes).constData())
            != 0) {
            break;
        }
    }
    return 0; // a broken upload shows in the import items
}

bool FullBackup::readImportItems(QStringList *list)
{
    ReplyBuffer available;
    if (m_channel->queryString(available.data(), "system import available") != 0) {
        return false;
    }
    const QStringList words = available.utf8Text().split(QLatin1Char(' '));
    const int number = words.first().toInt();
    if (words.value(1) != QLatin1String("config") || number > maxAnsweredNumber) {
        return false;
    }
    list->clear();
    for (int i = 1; i <= number; ++i) {
        ReplyBuffer item;
        m_channel->queryString(item.data(), "system import item i%02d", i);
        const QString identifier = item.utf8Text().section(QStringLiteral(" '"), 0, 0);
        if (identifier != QLatin1String(Identifiers::base)) {
            list->append(identifier);
        } else if (VersionGate::importsBaseItem(m_versions->interfaceVersion)) {
            list->prepend(identifier);
        }
    }
    return true;
}

#include "backup/fullbackup.h"

#include "backup/restoreprocedure.h"
#include "channel/identifiers.h"
#include "channel/importitem.h"
#include "channel/transferencoding.h"
#include "channel/versiongate.h"
#include "hostapi/backendversions.h"
#include "hostapi/iomanager.h"

#include <algorithm>

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
    QByteArray text;
    for (int chunk = 1; chunk <= chunks; ++chunk) {
        const int begin = (chunk - 1) * chunkSize;
        const int size = std::min(chunkSize, configData.size() - begin);
        TransferEncoding::encode(configData.constData() + begin, size, &text);
        if (m_channel->sendCommand("system upload %d %d %s", chunks, chunk, text.constData())
            != 0) {
            break;
        }
    }
    return 0; // a broken upload shows in the import items
}

bool FullBackup::readImportItems(QStringList *list)
{
    ImportItemList items;
    if (queryImportItems(m_channel, &items) != ImportOffer::Read) {
        return false;
    }
    list->clear();
    for (const ImportItem &item : qAsConst(items)) {
        // Decoded like the identifiers in the record, with which they are compared.
        const QString identifier = QString::fromUtf8(item.identifier.toLatin1());
        if (identifier != QLatin1String(Identifiers::base)) {
            list->append(identifier);
        } else if (VersionGate::importsBaseItem(m_versions->interfaceVersion)) {
            list->prepend(identifier);
        }
    }
    return true;
}

// The reader and the writer of backup documents.

#include "backup/fullbackup.h"

#include "backup/version.h"
#include "fuzz/scratchfile.h"
#include "fuzz/target.h"

#include <algorithm>

namespace {

QStringList textsOf(const FullBackup &backup)
{
    return QStringList{backup.name,   backup.serial,     backup.systemModel, backup.net,
                       backup.domain, backup.nameServer, backup.ntpServer,   backup.activeConfig}
    + backup.slaves;
}

// The writer makes an empty element of what is not there, and the reader refuses it.
bool hasEverything(const FullBackup &backup)
{
    const QStringList texts = textsOf(backup);
    return std::none_of(texts.begin(), texts.end(),
                        [](const QString &text) { return text.isEmpty(); })
        && backup.ptVersion.major >= 0 && backup.ctVersion.major >= 0;
}

void writeAndRead(const FullBackup &backup)
{
    const QString path = ScratchFile::path("written.xml");
    Fuzz::demand(backup.writeToFile(path), "what was read can be written");
    FullBackup readBack(nullptr, nullptr);
    const bool isReadBack = readBack.readFromFile(path);
    Fuzz::demand(isReadBack == hasEverything(backup),
                 "what is written is read if nothing is missing");
    if (isReadBack) {
        Fuzz::demand(textsOf(readBack) == textsOf(backup), "the texts are the same");
        Fuzz::demand(readBack.ptVersion == backup.ptVersion
                         && readBack.ctVersion == backup.ctVersion,
                     "the versions are the same");
        Fuzz::demand(readBack.configData == backup.configData, "the data is the same");
    }
}

} // namespace

void fuzz(const QByteArray &input)
{
    FullBackup backup(nullptr, nullptr);
    if (backup.readFromFile(ScratchFile::make("document.xml", input))) {
        writeAndRead(backup);
    }
}

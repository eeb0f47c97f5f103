// The decision whether a file is a backup document.

#include "backup/backupschema.h"

#include "backup/documentguard.h"
#include "fuzz/scratchfile.h"
#include "fuzz/target.h"

#include <QXmlStreamReader>

namespace {

using BackupSchema::Verdict;

// What every backup has, whatever a validator may think.
bool looksLikeABackup(const QByteArray &document)
{
    QXmlStreamReader xml(document);
    const bool hasRoot = xml.readNextStartElement() && xml.name() == QLatin1String("ZOR")
        && xml.namespaceUri().isEmpty();
    while (!xml.atEnd()) {
        xml.readNext();
    }
    return hasRoot && !xml.hasError();
}

} // namespace

void fuzz(const QByteArray &input)
{
    const QString path = ScratchFile::make("document.xml", input);
    const Verdict verdict = BackupSchema::validate(path);
    const std::optional<QByteArray> admitted = DocumentGuard::admit(input);
    if (!admitted || !looksLikeABackup(*admitted)) {
        Fuzz::demand(verdict == Verdict::NoBackup, "a backup looks like one");
        return;
    }
    Fuzz::demand(verdict == BackupSchema::validate(path, BackupSchema::embedded()),
                 "the verdict does not depend on what was validated before");
    Fuzz::demand(verdict != Verdict::SchemaUnusable, "the schema stays usable");
}

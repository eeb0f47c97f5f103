#include "tool/backupfile.h"

#include "backup/backupschema.h"
#include "backup/documentguard.h"
#include "backup/documentproblem.h"
#include "tool/documentoutline.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <utility>

namespace {

using Stage = Refusal::Stage;

QString creationDateOf(const QByteArray &document)
{
    QXmlStreamReader xml(document);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("creationDate")) {
            return xml.readElementText();
        }
    }
    return {};
}

} // namespace

BackupFile::BackupFile(QString path)
    : m_path(std::move(path))
    , m_record(nullptr, nullptr) // it never meets a controller
{
    m_refusal = open();
    if (!m_refusal) {
        m_refusal = validate();
    }
    if (!m_refusal) {
        m_refusal = read();
    }
}

QStringList BackupFile::warnings() const
{
    if (!m_refusal && m_record.configData.isEmpty()) {
        return {QStringLiteral("It holds no configurations: a restore would only bring back the "
                               "settings and the cascade.")};
    }
    return {};
}

std::optional<Refusal> BackupFile::open()
{
    QFile file(m_path);
    if (QFileInfo::exists(m_path) && !QFileInfo(m_path).isFile()) {
        return Refusal{Stage::File, QStringLiteral("This is not a regular file."), {}, 0, 0};
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return Refusal{Stage::File, file.errorString() + QLatin1Char('.'), {}, 0, 0};
    }
    const std::optional<QByteArray> document = DocumentGuard::read(&file);
    if (!document) {
        return Refusal{Stage::Guard,
                       QStringLiteral("The file is larger than %1 MiB, has more markup than any "
                                      "backup, or has a document type declaration.")
                           .arg(DocumentGuard::maxSize / (1024 * 1024)),
                       {},
                       0,
                       0};
    }
    m_document = *document;
    return std::nullopt;
}

std::optional<Refusal> BackupFile::validate() const
{
    DocumentProblem problem;
    switch (BackupSchema::validate(m_path, &problem)) {
    case BackupSchema::Verdict::SchemaUnusable:
        return Refusal{Stage::File, QStringLiteral("This program's schema is broken."), {}, 0, 0};
    case BackupSchema::Verdict::NoBackup:
        return refusalBySchema(problem);
    case BackupSchema::Verdict::Backup:
        break;
    }
    return std::nullopt;
}

// The validator says which element it stumbled over, which is the one after a missing one.
Refusal BackupFile::refusalBySchema(const DocumentProblem &problem) const
{
    const QString missing = DocumentOutline::missingElement(m_document);
    if (missing.isEmpty()) {
        return {Stage::Schema, problem.text,
                DocumentOutline::elementAt(m_document, problem.line, problem.column), problem.line,
                problem.column};
    }
    return {Stage::Schema, problem.text + QStringLiteral(" %1 is missing.").arg(missing), missing,
            problem.line, problem.column};
}

std::optional<Refusal> BackupFile::read()
{
    DocumentProblem problem;
    if (!m_record.readFromFile(m_path, &problem)) {
        return Refusal{Stage::Reader, problem.text,
                       DocumentOutline::elementAt(m_document, problem.line, problem.column),
                       problem.line, problem.column};
    }
    m_creationDate = creationDateOf(m_document);
    // The schema knows all sections or none. Without them the document names no model, and so fits
    // no controller.
    if (m_creationDate.isEmpty()) {
        return Refusal{Stage::Content, QStringLiteral("The document is empty."), {}, 0, 0};
    }
    return std::nullopt;
}

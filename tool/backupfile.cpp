#include "tool/backupfile.h"

#include "backup/backupschema.h"
#include "backup/documentguard.h"
#include "backup/documentproblem.h"
#include "tool/documentoutline.h"
#include "tool/likelykind.h"

#include <QDateTime>
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

// A file that is written to gets another one.
std::pair<qint64, QDateTime> stampOf(const QString &path)
{
    const QFileInfo file(path);
    return {file.size(), file.lastModified()};
}

QString reasonAgainstFolder(const QFileInfo &folder)
{
    return folder.isReadable() && folder.isExecutable()
        ? QStringLiteral("This is a folder in which there are no *.xml files.")
        : QStringLiteral("This folder cannot be read.");
}

} // namespace

BackupFile::BackupFile(QString path)
    : m_path(std::move(path))
    , m_record(nullptr, nullptr) // it never meets a controller
{
    const auto stamp = stampOf(m_path);
    m_refusal = open();
    if (!m_refusal) {
        m_refusal = validate();
    }
    if (!m_refusal) {
        m_refusal = read();
    }
    if (stampOf(m_path) != stamp) {
        m_refusal =
            Refusal{Stage::File, QStringLiteral("The file changed while it was read."), {}, 0, 0};
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
    const QFileInfo info(m_path);
    if (info.isDir()) {
        return Refusal{Stage::File, reasonAgainstFolder(info), {}, 0, 0};
    }
    if (info.exists() && !info.isFile()) {
        return Refusal{Stage::File, QStringLiteral("This is not a regular file."), {}, 0, 0};
    }
    QFile file(m_path);
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
    constexpr int enough = 1024;
    file.seek(0);
    m_beginning = file.read(enough);
    return std::nullopt;
}

std::optional<Refusal> BackupFile::validate() const
{
    // Files are judged in several threads, none of which may use the schema of another.
    static const QByteArray schema = BackupSchema::embedded();
    DocumentProblem problem;
    switch (BackupSchema::validate(m_path, schema, &problem)) {
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
        const QString text = problem.text + QLatin1Char(' ')
            + likelyKind(m_document, m_beginning, QFileInfo(m_path).fileName());
        return {Stage::Schema, text.trimmed(),
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

#include "backup/backupschema.h"

#include "backup/documentguard.h"
#include "backup/documentproblem.h"
#include "backup/markupmeter.h"
#include "backup/refusingnetwork.h"
#include "resources/resources.h"

#include <QAbstractMessageHandler>
#include <QFile>
#include <QFileInfo>
#include <QResource>
#include <QSourceLocation>
#include <QUrl>
#include <QXmlSchema>
#include <QXmlSchemaValidator>
#include <QXmlStreamReader>

#include <algorithm>
#include <optional>

namespace {

// The reasons come as small pages for a browser.
QString plainText(const QString &page)
{
    QXmlStreamReader xml(page);
    QString text;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::Characters) {
            text += xml.text();
        }
    }
    // A reason that quotes another one ends in the full stops of both.
    return text.endsWith(QLatin1String("..")) ? text.chopped(1) : text;
}

// Keeps the first reason, which is all that anybody wants: by default the reasons would go to the
// user's terminal.
class ReasonKeeper : public QAbstractMessageHandler
{
public:
    DocumentProblem problem() const
    {
        return {plainText(m_description), m_location.line(), m_location.column()};
    }

protected:
    void handleMessage(QtMsgType /*type*/, const QString &description, const QUrl & /*identifier*/,
                       const QSourceLocation &location) override
    {
        if (m_description.isEmpty()) {
            m_description = description;
            m_location = location;
        }
    }

private:
    QString m_description;
    QSourceLocation m_location;
};

const QLatin1String instanceNamespace("http://www.w3.org/2001/XMLSchema-instance");

std::optional<QByteArray> documentAt(const QString &path, MarkupMeter *meter)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? DocumentGuard::read(&file, meter) : std::nullopt;
}

// Nothing in a backup is in a namespace, but an element may have hints for a validator.
bool hasForeignNames(const QXmlStreamReader &xml)
{
    const QXmlStreamAttributes attributes = xml.attributes();
    return !xml.namespaceUri().isEmpty()
        || std::any_of(attributes.begin(), attributes.end(),
                       [](const QXmlStreamAttribute &attribute) {
                           return attribute.namespaceUri() != instanceNamespace;
                       });
}

// Whether no element has a name, or an attribute, that belongs to another kind of document; tells
// otherwise where. False as well if the document is not well-formed.
bool hasOwnNamesOnly(const QByteArray &document, DocumentProblem *problem)
{
    QXmlStreamReader xml(document);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && hasForeignNames(xml)) {
            xml.raiseError(QStringLiteral("Element %1 has names that no backup has.")
                               .arg(xml.qualifiedName().toString()));
        }
    }
    if (xml.hasError()) {
        *problem = {xml.errorString(), xml.lineNumber(), xml.columnNumber()};
    }
    return !xml.hasError();
}

class LoadedSchema
{
public:
    explicit LoadedSchema(const QByteArray &schema)
    {
        m_schema.setMessageHandler(&m_reasons);
        m_schema.setNetworkAccessManager(&m_network);
        m_isUsable = m_schema.load(schema, QUrl()) && m_schema.isValid();
    }

    BackupSchema::Verdict judge(const QString &path, DocumentProblem *problem);

    /// How many characters that may be names it has been given so far.
    qint64 markupSeen() const { return m_markupSeen; }

private:
    bool isValid(const QByteArray &document, const QUrl &address, DocumentProblem *problem);

    ReasonKeeper m_reasons;
    RefusingNetwork m_network;
    QXmlSchema m_schema;
    bool m_isUsable = false;
    qint64 m_markupSeen = 0;
};

BackupSchema::Verdict LoadedSchema::judge(const QString &path, DocumentProblem *problem)
{
    using BackupSchema::Verdict;
    if (!m_isUsable) {
        return Verdict::SchemaUnusable;
    }
    MarkupMeter meter;
    const std::optional<QByteArray> document = documentAt(path, &meter);
    if (!document) {
        *problem = {QStringLiteral("Cannot be read, or costs too much to be read."), 0, 0};
        return Verdict::NoBackup;
    }
    m_markupSeen += meter.markup();
    // The validator hashes the namespace of each element and attribute anew. Where that would take
    // its time, it is not to see any but those of a backup, which are short.
    constexpr qint64 bearable = 64LL * 1024 * 1024; // characters, less than a second
    if (meter.costOfNames() > bearable && !hasOwnNamesOnly(*document, problem)) {
        return Verdict::NoBackup;
    }
    const QUrl address = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    return isValid(*document, address, problem) ? Verdict::Backup : Verdict::NoBackup;
}

bool LoadedSchema::isValid(const QByteArray &document, const QUrl &address,
                           DocumentProblem *problem)
{
    ReasonKeeper reasons;
    RefusingNetwork network; // takes the replies with it
    QXmlSchemaValidator validator(m_schema);
    validator.setMessageHandler(&reasons);
    validator.setNetworkAccessManager(&network);
    const bool isValid = validator.validate(document, address);
    if (!isValid) {
        *problem = reasons.problem();
    }
    return isValid;
}

// Qt loses some 9 KB with each schema, so one is kept, to the end of the process: at its very end
// there is no application any more for what it holds. But a schema never forgets a name that it was
// given; after too many another takes its place.
LoadedSchema &keptSchema()
{
    constexpr int mostMarkup = 1024 * 1024; // some thousand backups
    static LoadedSchema *kept = nullptr;
    if (!kept || kept->markupSeen() > mostMarkup) {
        delete kept;
        kept = new LoadedSchema(BackupSchema::embedded());
    }
    return *kept;
}

} // namespace

QByteArray BackupSchema::embedded()
{
    initializeResources();
    const QResource resource(QStringLiteral(":/XMLSchema_backup_xsd"));
    return qUncompress(resource.data(), static_cast<int>(resource.size()));
}

BackupSchema::Verdict BackupSchema::validate(const QString &path)
{
    DocumentProblem unwanted;
    return validate(path, &unwanted);
}

BackupSchema::Verdict BackupSchema::validate(const QString &path, DocumentProblem *problem)
{
    return keptSchema().judge(path, problem);
}

BackupSchema::Verdict BackupSchema::validate(const QString &path, const QByteArray &schema,
                                             DocumentProblem *problem)
{
    DocumentProblem unwanted;
    return LoadedSchema(schema).judge(path, problem ? problem : &unwanted);
}

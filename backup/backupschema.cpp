#include "backup/backupschema.h"

#include "backup/documentguard.h"
#include "backup/documentproblem.h"
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

std::optional<QByteArray> documentAt(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? DocumentGuard::read(&file) : std::nullopt;
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

    BackupSchema::Verdict judge(const QString &path, DocumentProblem *problem) const;

private:
    bool isValid(const QByteArray &document, const QUrl &address, DocumentProblem *problem) const;

    ReasonKeeper m_reasons;
    RefusingNetwork m_network;
    QXmlSchema m_schema;
    bool m_isUsable = false;
};

BackupSchema::Verdict LoadedSchema::judge(const QString &path, DocumentProblem *problem) const
{
    using BackupSchema::Verdict;
    if (!m_isUsable) {
        return Verdict::SchemaUnusable;
    }
    const std::optional<QByteArray> document = documentAt(path);
    if (!document) {
        *problem = {QStringLiteral("Cannot be read, or costs too much to be read."), 0, 0};
        return Verdict::NoBackup;
    }
    const QUrl address = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    return isValid(*document, address, problem) ? Verdict::Backup : Verdict::NoBackup;
}

bool LoadedSchema::isValid(const QByteArray &document, const QUrl &address,
                           DocumentProblem *problem) const
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
// given; after some documents another takes its place.
const LoadedSchema &keptSchema()
{
    constexpr int mostDocuments = 1000;
    static LoadedSchema *kept = nullptr;
    static int documents = 0;
    if (documents++ % mostDocuments == 0) {
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

BackupSchema::Verdict BackupSchema::validate(const QString &path, const QByteArray &schema)
{
    DocumentProblem unwanted;
    return LoadedSchema(schema).judge(path, &unwanted);
}

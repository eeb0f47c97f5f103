#include "backup/backupschema.h"

#include "backup/documentguard.h"
#include "resources/resources.h"

#include <QAbstractMessageHandler>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QResource>
#include <QUrl>
#include <QXmlSchema>
#include <QXmlSchemaValidator>
#include <QXmlStreamReader>

#include <algorithm>
#include <optional>

namespace {

// A verdict is all that is wanted: by default the reasons would go to the user's terminal.
class SilentMessageHandler : public QAbstractMessageHandler
{
protected:
    void handleMessage(QtMsgType /*type*/, const QString & /*description*/,
                       const QUrl & /*identifier*/, const QSourceLocation & /*location*/) override
    {
    }
};

// Has failed already: the validator does not wait for it in an event loop of its own, in which
// anything could happen to the dialog that called it.
class RefusedReply : public QNetworkReply
{
public:
    RefusedReply(const QNetworkRequest &request, QNetworkAccessManager::Operation operation,
                 QObject *parent)
        : QNetworkReply(parent)
    {
        setRequest(request);
        setUrl(request.url());
        setOperation(operation);
        setError(ContentAccessDenied, QStringLiteral("refused"));
        setFinished(true);
        QMetaObject::invokeMethod(this, &RefusedReply::notify, Qt::QueuedConnection);
    }

    void abort() override { }

protected:
    qint64 readData(char * /*data*/, qint64 /*maxSize*/) override { return -1; }

private:
    void notify()
    {
        emit errorOccurred(error());
        emit finished();
    }
};

// The validator follows every schema that a document names, from the network and from the disk;
// setting a URI resolver does not stop it.
class RefusingNetwork : public QNetworkAccessManager
{
protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice * /*outgoingData*/) override
    {
        return new RefusedReply(request, operation, this);
    }
};

const QLatin1String instanceNamespace("http://www.w3.org/2001/XMLSchema-instance");

std::optional<QByteArray> documentAt(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? DocumentGuard::read(&file) : std::nullopt;
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

// Walks over the document before the validator does, which takes its time: it hashes the namespace
// of each element and attribute anew, so that a long one of many of them is not to be borne.
// @return how many characters of the document are markup; nothing if it cannot be a backup because
// it is not well-formed or has names of other documents
std::optional<qint64> markupOfCandidate(const QByteArray &document)
{
    qint64 markup = 0;
    QXmlStreamReader xml(document);
    while (!xml.atEnd()) {
        const qint64 begin = xml.characterOffset();
        xml.readNext();
        if (xml.isStartElement() && hasForeignNames(xml)) {
            return std::nullopt;
        }
        markup += xml.isCharacters() ? 0 : xml.characterOffset() - begin;
    }
    return xml.hasError() ? std::nullopt : std::optional<qint64>(markup);
}

class LoadedSchema
{
public:
    explicit LoadedSchema(const QByteArray &schema)
    {
        m_schema.setMessageHandler(&m_silence);
        m_schema.setNetworkAccessManager(&m_network);
        m_isUsable = m_schema.load(schema, QUrl()) && m_schema.isValid();
    }

    BackupSchema::Verdict judge(const QString &path);

    /// How many characters of markup it has been given so far.
    qint64 markupSeen() const { return m_markupSeen; }

private:
    bool isValid(const QByteArray &document, const QUrl &address);

    SilentMessageHandler m_silence;
    RefusingNetwork m_network;
    QXmlSchema m_schema;
    bool m_isUsable = false;
    qint64 m_markupSeen = 0;
};

BackupSchema::Verdict LoadedSchema::judge(const QString &path)
{
    using BackupSchema::Verdict;
    if (!m_isUsable) {
        return Verdict::SchemaUnusable;
    }
    const std::optional<QByteArray> document = documentAt(path);
    const std::optional<qint64> markup = document ? markupOfCandidate(*document) : std::nullopt;
    if (!markup) {
        return Verdict::NoBackup;
    }
    m_markupSeen += *markup;
    const QUrl address = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    return isValid(*document, address) ? Verdict::Backup : Verdict::NoBackup;
}

bool LoadedSchema::isValid(const QByteArray &document, const QUrl &address)
{
    RefusingNetwork network; // takes the replies with it
    QXmlSchemaValidator validator(m_schema);
    validator.setMessageHandler(&m_silence);
    validator.setNetworkAccessManager(&network);
    return validator.validate(document, address);
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
    return keptSchema().judge(path);
}

BackupSchema::Verdict BackupSchema::validate(const QString &path, const QByteArray &schema)
{
    return LoadedSchema(schema).judge(path);
}

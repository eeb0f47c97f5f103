#include "backup/backupschema.h"

#include "backup/documentguard.h"
#include "backup/documentproblem.h"
#include "resources/resources.h"

#include <QAbstractMessageHandler>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
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

std::optional<QByteArray> documentAt(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? DocumentGuard::read(&file) : std::nullopt;
}

BackupSchema::Verdict judge(const QString &path, const QByteArray &schema, DocumentProblem *problem)
{
    using Verdict = BackupSchema::Verdict;
    ReasonKeeper reasons;
    RefusingNetwork network;
    QXmlSchema xmlSchema;
    xmlSchema.setMessageHandler(&reasons);
    xmlSchema.setNetworkAccessManager(&network);
    if (!xmlSchema.load(schema, QUrl()) || !xmlSchema.isValid()) {
        return Verdict::SchemaUnusable;
    }
    const std::optional<QByteArray> document = documentAt(path);
    if (!document) {
        *problem = {QStringLiteral("Cannot be read, or costs too much to be read."), 0, 0};
        return Verdict::NoBackup;
    }
    QXmlSchemaValidator validator(xmlSchema);
    validator.setMessageHandler(&reasons);
    validator.setNetworkAccessManager(&network);
    const QUrl address = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    if (validator.validate(*document, address)) {
        return Verdict::Backup;
    }
    *problem = reasons.problem();
    return Verdict::NoBackup;
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
    return validate(path, embedded());
}

BackupSchema::Verdict BackupSchema::validate(const QString &path, DocumentProblem *problem)
{
    return judge(path, embedded(), problem);
}

BackupSchema::Verdict BackupSchema::validate(const QString &path, const QByteArray &schema)
{
    DocumentProblem unwanted;
    return judge(path, schema, &unwanted);
}

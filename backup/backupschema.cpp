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

std::optional<QByteArray> documentAt(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? DocumentGuard::read(&file) : std::nullopt;
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

BackupSchema::Verdict BackupSchema::validate(const QString &path, const QByteArray &schema)
{
    SilentMessageHandler silence;
    RefusingNetwork network;
    QXmlSchema xmlSchema;
    xmlSchema.setMessageHandler(&silence);
    xmlSchema.setNetworkAccessManager(&network);
    if (!xmlSchema.load(schema, QUrl()) || !xmlSchema.isValid()) {
        return Verdict::SchemaUnusable;
    }
    const std::optional<QByteArray> document = documentAt(path);
    if (!document) {
        return Verdict::NoBackup;
    }
    QXmlSchemaValidator validator(xmlSchema);
    validator.setMessageHandler(&silence);
    validator.setNetworkAccessManager(&network);
    const QUrl address = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    return validator.validate(*document, address) ? Verdict::Backup : Verdict::NoBackup;
}

#include "backup/refusingnetwork.h"

#include <QNetworkReply>
#include <QNetworkRequest>

namespace {

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

} // namespace

QNetworkReply *RefusingNetwork::createRequest(Operation operation, const QNetworkRequest &request,
                                              QIODevice * /*outgoingData*/)
{
    return new RefusedReply(request, operation, this);
}

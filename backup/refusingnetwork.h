#pragma once

#include <QNetworkAccessManager>

/// A network without anything in it: every request has failed as soon as it is made.
///
/// The schema validator follows every schema that a document names, from the network and from the
/// disk, and setting a URI resolver does not stop it. With this it opens nothing, nor does it wait
/// for an answer in an event loop of its own, in which anything could happen to its caller.
class RefusingNetwork : public QNetworkAccessManager
{
protected:
    /// @return a finished reply with the error QNetworkReply::ContentAccessDenied; this object
    /// owns it
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;
};

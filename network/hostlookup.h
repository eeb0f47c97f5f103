#pragma once

#include <QHostAddress>
#include <QList>

class QDeadlineTimer;
class QString;

/// The addresses of @p host, a name or an address, looked up without waiting beyond @p deadline;
/// empty if there are none until then.
///
/// A name server that does not answer keeps a thread of its own busy, which ends by itself.
QList<QHostAddress> addressesOf(const QString &host, const QDeadlineTimer &deadline);

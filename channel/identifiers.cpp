#include "channel/identifiers.h"

#include <QDateTime>
#include <QThread>

QString Identifiers::newStamp()
{
    // Two stamps of one millisecond would name the same configuration, and the later would
    // overwrite the earlier.
    static QString previous;
    const auto now = [] {
        return QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmssz"));
    };
    QString stamp = now();
    while (stamp == previous) {
        QThread::usleep(100);
        stamp = now();
    }
    previous = stamp;
    return stamp;
}

QString Identifiers::newIdentifier()
{
    return QStringLiteral("config") + newStamp();
}

#include "channel/identifiers.h"

#include <QDateTime>
#include <QLocale>
#include <QThread>

QString Identifiers::newStamp()
{
    // Two stamps of one millisecond would name the same configuration, and the later would
    // overwrite the earlier.
    static QString previous;
    const auto now = [] {
        // In plain digits: some users' locales write others, which no identifier can hold.
        return QLocale::c().toString(QDateTime::currentDateTime(),
                                     QStringLiteral("yyyyMMddHHmmssz"));
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

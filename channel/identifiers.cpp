#include "channel/identifiers.h"

#include <QDateTime>
#include <QLocale>
#include <QThread>

namespace {

QString currentStamp()
{
    const QDateTime now = QDateTime::currentDateTime();
    // In plain digits: some users' locales write others, which no identifier can hold.
    const QString seconds = QLocale::c().toString(now, QStringLiteral("yyyyMMddHHmmss"));
    // Not with Qt's own "z": that is the fraction of a second, "005" for 5 ms and "5" for 500 ms.
    return seconds + QString::number(now.time().msec());
}

} // namespace

QString Identifiers::newStamp()
{
    // Two stamps of one millisecond would name the same configuration, and the later would
    // overwrite the earlier.
    static QString previous;
    QString stamp = currentStamp();
    while (stamp == previous) {
        QThread::usleep(100);
        stamp = currentStamp();
    }
    previous = stamp;
    return stamp;
}

#include "tool/judgement.h"

#include "backup/refusingnetwork.h"
#include "tool/backupfile.h"
#include "tool/outcome.h"
#include "tool/progress.h"

#include <QEventLoop>
#include <QFutureWatcher>
#include <QtConcurrentMap>

Judgement judge(const QString &path)
{
    const BackupFile file(path);
    Judgement judgement{path, file.refusal(), file.warnings(), {}};
    if (!file.refusal()) {
        judgement.fields = fieldsOf(file);
    }
    return judgement;
}

QVector<Judgement> judgeAll(const QStringList &paths)
{
    // The first network of a process makes Qt's types known; two threads that do so at once are
    // told off on the standard error output.
    const RefusingNetwork first;
    const Progress progress(paths.size());
    QEventLoop loop;
    QFutureWatcher<Judgement> watcher;
    QObject::connect(&watcher, &QFutureWatcherBase::progressValueChanged, &loop,
                     [&progress](int done) { progress.show(done); });
    QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop, &QEventLoop::quit);
    watcher.setFuture(QtConcurrent::mapped(paths, judge));
    loop.exec();
    return watcher.future().results().toVector();
}

int exitCodeOf(const Judgement &judgement)
{
    if (!judgement.refusal) {
        return ExitCode::good;
    }
    return judgement.refusal->stage == Refusal::Stage::File ? ExitCode::trouble : ExitCode::notGood;
}

QString controllerOf(const Judgement &judgement)
{
    return valueAt(judgement.fields, FieldPath::name).toString();
}

QDateTime timeOf(const Judgement &judgement)
{
    return QDateTime::fromString(valueAt(judgement.fields, FieldPath::creationDate).toString(),
                                 Qt::ISODate);
}

QString timeTextOf(const Judgement &judgement)
{
    return timeOf(judgement).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

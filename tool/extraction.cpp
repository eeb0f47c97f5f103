#include "tool/extraction.h"

#include "tool/backupfile.h"
#include "tool/judgement.h"
#include "tool/toolarguments.h"

#include <QFileInfo>
#include <QSaveFile>

namespace {

using Stage = Refusal::Stage;

QString nameBeside(const QString &backup)
{
    const QString extension = QStringLiteral(".xml");
    const bool isUsual = backup.endsWith(extension, Qt::CaseInsensitive);
    return backup.chopped(isUsual ? extension.size() : 0) + QStringLiteral(".dat");
}

// Nothing is said of what goes well.
QString reasonAgainst(const QString &target, const QString &backup, bool isForced)
{
    const QFileInfo file(target);
    if (file.isDir()) {
        return QStringLiteral("This is a folder.");
    }
    if (file.exists() && file.canonicalFilePath() == QFileInfo(backup).canonicalFilePath()) {
        return QStringLiteral("This is the backup itself.");
    }
    if (!isForced && (file.exists() || file.isSymLink())) {
        return QStringLiteral("This file exists already; --force replaces it.");
    }
    return {};
}

// A disk that becomes full takes a part; why it takes no more, it tells the next time.
bool writeAll(const QByteArray &data, QIODevice *device)
{
    qint64 done = 0;
    while (done < data.size()) {
        const qint64 taken = device->write(data.constData() + done, data.size() - done);
        if (taken <= 0) {
            return false;
        }
        done += taken;
    }
    return true;
}

QString write(const QByteArray &data, const QString &path)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && writeAll(data, &file) && file.flush() && file.commit()) {
        return {};
    }
    return file.errorString() + QLatin1Char('.');
}

Outcome refuse(const QString &backup, const QString &file, const Refusal &reason)
{
    const Judgement judgement{file, reason, {}, {}};
    Outcome outcome;
    outcome.exitCode = exitCodeOf(judgement);
    outcome.complaint = complaintAbout(judgement);
    outcome.json = QJsonDocument(QJsonObject{{QStringLiteral("command"), QStringLiteral("extract")},
                                             {QStringLiteral("file"), backup},
                                             {QStringLiteral("problem"), refusalJson(judgement)}});
    return outcome;
}

Outcome report(const QString &backup, const QString &target, const QJsonValue &summary)
{
    Outcome outcome;
    outcome.output = lineAbout(target, textOf(summary))
        + QStringLiteral("Restore in the list of configurations opens this file.\n");
    QJsonObject json = summary.toObject();
    json.insert(QStringLiteral("command"), QStringLiteral("extract"));
    json.insert(QStringLiteral("file"), backup);
    json.insert(QStringLiteral("written"), target);
    outcome.json = QJsonDocument(json);
    return outcome;
}

} // namespace

Outcome extract(const ToolArguments &arguments)
{
    const QString &backup = arguments.paths.at(0);
    const BackupFile file(backup);
    if (file.refusal()) {
        return refuse(backup, backup, *file.refusal());
    }
    const QByteArray &data = file.record().configData;
    if (data.isEmpty()) {
        return refuse(backup, backup,
                      {Stage::Content, QStringLiteral("It holds no configurations."), {}, 0, 0});
    }
    const QString target = arguments.paths.value(1, nameBeside(backup));
    QString problem = reasonAgainst(target, backup, arguments.isForced);
    if (problem.isEmpty()) {
        problem = write(data, target);
    }
    if (!problem.isEmpty()) {
        return refuse(backup, target, {Stage::File, problem, {}, 0, 0});
    }
    return report(backup, target, valueAt(fieldsOf(file), FieldPath::configData));
}

#include "tool/judgement.h"

#include "tool/backupfile.h"
#include "tool/fields.h"

#include <QJsonArray>

namespace {

int exitCodeOf(const BackupFile &file)
{
    if (!file.refusal()) {
        return ExitCode::good;
    }
    return file.refusal()->stage == Refusal::Stage::File ? ExitCode::trouble : ExitCode::notGood;
}

Outcome judgementOf(const BackupFile &file, const QString &command)
{
    Outcome outcome;
    outcome.exitCode = exitCodeOf(file);
    outcome.json = {{QStringLiteral("command"), command},
                    {QStringLiteral("file"), file.path()},
                    {QStringLiteral("accepted"), !file.refusal()},
                    {QStringLiteral("warnings"), QJsonArray::fromStringList(file.warnings())}};
    if (file.refusal()) {
        outcome.json.insert(QStringLiteral("problem"), refusalJson(file));
        outcome.complaint = refusalLine(file);
    }
    const QStringList warnings = file.warnings();
    for (const QString &warning : warnings) {
        outcome.complaint += lineAbout(file, warning);
    }
    return outcome;
}

// "section/element" becomes an object within an object.
QJsonObject toJson(const QVector<Field> &fields)
{
    QJsonObject sections;
    for (const Field &field : fields) {
        const QString name = field.path.section(QLatin1Char('/'), 0, 0);
        QJsonObject section = sections[name].toObject();
        section.insert(field.path.section(QLatin1Char('/'), 1), field.value);
        sections.insert(name, section);
    }
    return sections;
}

QString tableOf(const QVector<Field> &fields)
{
    constexpr int titleWidth = 22; // the longest title and two spaces
    QString table;
    for (const Field &field : fields) {
        table += field.title.leftJustified(titleWidth) + textOf(field.value) + QLatin1Char('\n');
    }
    return table;
}

} // namespace

Outcome Judgement::verify(const QString &path)
{
    const BackupFile file(path);
    Outcome outcome = judgementOf(file, QStringLiteral("verify"));
    if (!file.refusal()) {
        outcome.output = lineAbout(file, QStringLiteral("A restore would accept this backup."));
    }
    return outcome;
}

Outcome Judgement::show(const QString &path)
{
    const BackupFile file(path);
    Outcome outcome = judgementOf(file, QStringLiteral("show"));
    if (!file.refusal()) {
        const QVector<Field> fields = fieldsOf(file);
        outcome.output = tableOf(fields);
        outcome.json.insert(QStringLiteral("backup"), toJson(fields));
    }
    return outcome;
}

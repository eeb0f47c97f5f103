#include "tool/outcome.h"

#include "tool/backupfile.h"
#include "tool/printable.h"

namespace {

QString nameOf(Refusal::Stage stage)
{
    switch (stage) {
    case Refusal::Stage::File:
        return QStringLiteral("file");
    case Refusal::Stage::Guard:
        return QStringLiteral("guard");
    case Refusal::Stage::Schema:
        return QStringLiteral("schema");
    case Refusal::Stage::Reader:
        return QStringLiteral("reader");
    case Refusal::Stage::Content:
        return QStringLiteral("content");
    }
    return {};
}

} // namespace

QString lineAbout(const BackupFile &file, const QString &text)
{
    return QStringLiteral("%1: %2\n").arg(printable(file.path()), printable(text));
}

QString refusalLine(const BackupFile &file)
{
    const Refusal &refusal = *file.refusal();
    QString place;
    if (refusal.line > 0) {
        place = QStringLiteral("line %1, column %2: ").arg(refusal.line).arg(refusal.column);
    }
    if (!refusal.field.isEmpty()) {
        place += refusal.field + QStringLiteral(": ");
    }
    return lineAbout(file, place + refusal.text);
}

QJsonObject refusalJson(const BackupFile &file)
{
    const Refusal &refusal = *file.refusal();
    return {{QStringLiteral("file"), file.path()},
            {QStringLiteral("stage"), nameOf(refusal.stage)},
            {QStringLiteral("field"), refusal.field},
            {QStringLiteral("line"), refusal.line},
            {QStringLiteral("column"), refusal.column},
            {QStringLiteral("text"), printable(refusal.text)}};
}

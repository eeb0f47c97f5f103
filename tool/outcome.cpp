#include "tool/outcome.h"

#include "tool/judgement.h"
#include "tool/printable.h"

#include <QFileInfo>

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

QString refusalText(const Refusal &refusal)
{
    QString place;
    if (refusal.line > 0) {
        place = QStringLiteral("line %1, column %2: ").arg(refusal.line).arg(refusal.column);
    }
    if (!refusal.field.isEmpty()) {
        place += refusal.field + QStringLiteral(": ");
    }
    return place + refusal.text;
}

} // namespace

QString lineAbout(const QString &path, const QString &text)
{
    return QStringLiteral("%1: %2\n").arg(printable(path), printable(text));
}

QString complaintAbout(const Judgement &judgement)
{
    QString lines;
    if (judgement.refusal) {
        lines = lineAbout(judgement.path, refusalText(*judgement.refusal));
    }
    for (const QString &warning : judgement.warnings) {
        lines += lineAbout(judgement.path, warning);
    }
    return lines;
}

QJsonObject toJson(const Judgement &judgement, const QString &command)
{
    QJsonObject object{
        {QStringLiteral("command"), command},
        {QStringLiteral("file"), judgement.path},
        {QStringLiteral("accepted"), !judgement.refusal},
        {QStringLiteral("warnings"), QJsonArray::fromStringList(judgement.warnings)}};
    if (judgement.refusal) {
        object.insert(QStringLiteral("problem"), refusalJson(judgement));
    }
    return object;
}

QJsonObject refusalJson(const Judgement &judgement)
{
    const Refusal &refusal = *judgement.refusal;
    return {{QStringLiteral("file"), judgement.path},
            {QStringLiteral("stage"), nameOf(refusal.stage)},
            {QStringLiteral("field"), refusal.field},
            {QStringLiteral("line"), refusal.line},
            {QStringLiteral("column"), refusal.column},
            {QStringLiteral("text"), printable(refusal.text)}};
}

QJsonDocument toDocument(const QJsonArray &objects, const QStringList &paths)
{
    const bool isAboutOneFile = paths.size() == 1 && !QFileInfo(paths.at(0)).isDir();
    return isAboutOneFile ? QJsonDocument(objects.at(0).toObject()) : QJsonDocument(objects);
}

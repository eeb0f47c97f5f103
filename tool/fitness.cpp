#include "tool/fitness.h"

#include "backup/version.h"
#include "tool/judgement.h"

namespace {

QString textAt(const Judgement &judgement, const char *path)
{
    return valueAt(judgement.fields, path).toString();
}

QString misfit(const QString &what, const std::optional<Version> &version, const QString &wanted)
{
    if (!version || !(*version < parseVersion(wanted))) {
        return {};
    }
    return QStringLiteral("It does not fit %1 %2: it wants %3 or newer.")
        .arg(what, versionToString(*version), wanted);
}

} // namespace

QString Fitness::textFor(const Judgement &judgement)
{
    return QStringLiteral("It fits the model \"%1\" with tracking software %2 or newer and, if it "
                          "is an embedded controller, firmware %3 or newer.")
        .arg(textAt(judgement, FieldPath::systemModel), textAt(judgement, FieldPath::ptVersion),
             textAt(judgement, FieldPath::ctVersion));
}

QJsonObject Fitness::jsonFor(const Judgement &judgement)
{
    return {{QStringLiteral("systemModel"), textAt(judgement, FieldPath::systemModel)},
            {QStringLiteral("ptVersion"), textAt(judgement, FieldPath::ptVersion)},
            {QStringLiteral("ctVersion"), textAt(judgement, FieldPath::ctVersion)}};
}

QStringList Fitness::misfits(const Judgement &judgement, const ControllerTraits &controller)
{
    QStringList reasons;
    const QString model = textAt(judgement, FieldPath::systemModel);
    if (!controller.model.isEmpty() && controller.model != model) {
        reasons << QStringLiteral("It does not fit the model \"%1\": it is of the model \"%2\".")
                       .arg(controller.model, model);
    }
    reasons << misfit(QStringLiteral("tracking software"), controller.tracking,
                      textAt(judgement, FieldPath::ptVersion))
            << misfit(QStringLiteral("an embedded controller's firmware"), controller.firmware,
                      textAt(judgement, FieldPath::ctVersion));
    reasons.removeAll(QString());
    return reasons;
}

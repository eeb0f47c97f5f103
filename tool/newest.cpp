#include "tool/newest.h"

QMap<QString, Judgement> newestByController(const QVector<Judgement> &judgements)
{
    QMap<QString, Judgement> newest;
    for (const Judgement &judgement : judgements) {
        const QString controller = controllerOf(judgement);
        if (!judgement.refusal
            && (!newest.contains(controller) || timeOf(newest[controller]) < timeOf(judgement))) {
            newest.insert(controller, judgement);
        }
    }
    return newest;
}

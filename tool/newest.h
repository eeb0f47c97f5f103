#pragma once

#include "tool/judgement.h"

#include <QMap>

/// The newest accepted backup of each controller, by its host name.
QMap<QString, Judgement> newestByController(const QVector<Judgement> &judgements);

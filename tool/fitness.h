#pragma once

#include "hostapi/version.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

struct Judgement;

/// What somebody has told of a controller.
struct ControllerTraits
{
    QString model;                   ///< empty if not told
    std::optional<Version> tracking; ///< version of its tracking software
    std::optional<Version> firmware; ///< for an embedded controller only: no other one minds
};

/// For which controllers an accepted backup fits.
namespace Fitness {

/// In a sentence.
QString textFor(const Judgement &judgement);

/// For programs, by the names of the document's elements.
QJsonObject jsonFor(const Judgement &judgement);

/// Why a restore onto that controller would refuse the backup, one sentence each; empty if it would
/// not, as far as is known.
QStringList misfits(const Judgement &judgement, const ControllerTraits &controller);

} // namespace Fitness

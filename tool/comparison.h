#pragma once

#include <QJsonArray>
#include <QString>
#include <QStringList>

struct Judgement;

/// In which fields two accepted backups differ.
struct Comparison
{
    QString text;    ///< for people: some lines for each difference; empty if there is none
    QJsonArray json; ///< the same for programs
    bool isSame() const { return json.isEmpty(); } ///< whether there is none
};

/// Compares two accepted backups in all fields but those that are @p ignored.
Comparison compare(const Judgement &first, const Judgement &second, const QStringList &ignored);

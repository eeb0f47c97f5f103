#pragma once

#include "tool/fields.h"

#include <QJsonObject>

/// All fields of one backup.
namespace FieldTable {

/// A line for each, its title first.
QString text(const QVector<Field> &fields);

/// An object for each section of the document, with its fields.
QJsonObject json(const QVector<Field> &fields);

} // namespace FieldTable

#pragma once

#include "simulator/archive.h"
#include "simulator/controllerstate.h"

#include <QByteArray>
#include <QString>

/// The files that the plug-in writes and reads, made by hand.
namespace TransferFiles {

Archive::Item item(const Configuration &configuration);
/// The base item, as it is in every backup.
Archive::Item baseItem(const ControllerState &state);
/// What a backup of @p state carries: the base item and all configurations.
QByteArray wholeArchive(const ControllerState &state);

/// "(no file)" if there is none.
QByteArray contentsOf(const QString &path);
/// Ends the test program if it cannot. @return @p path
QString write(const QString &path, const QByteArray &contents);

} // namespace TransferFiles

#pragma once

#include "host/tour/tour.h"

/// What all chapters need around the list of configurations.
namespace ListVisit {

/// What opens on "pushButton_save".
constexpr char saveDialog[] = "ConfigSaveDlgClass";

/// Opens the list from the host's menu.
void open(Tour &tour, const Tour::Visit &visit, const QString &menuPictureName = {});

/// Closes the list.
void exit(DialogDriver &list);

/// Begins with a fresh sample controller.
void startOver(Tour &tour);

/// The identifier of the controller's active configuration.
QString active(const Tour &tour);
/// A locked configuration of the sample.
QString locked(const Tour &tour);
/// A configuration of the sample that is neither active nor locked nor the standard one.
QString spare(const Tour &tour);

bool contains(const Tour &tour, const QString &identifier);
QString description(const Tour &tour, const QString &identifier);
QString owner(const Tour &tour, const QString &identifier);
QByteArray data(const Tour &tour, const QString &identifier);

} // namespace ListVisit

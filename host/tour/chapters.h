#pragma once

class Tour;

/// The chapters of the tour. Each leaves all dialogs closed.
namespace Chapters {

/// The host's own window.
void host(Tour &tour);
/// The list of configurations: shows, activates, deletes.
void list(Tour &tour);
/// Creating a configuration, cloned and with default values.
void create(Tour &tour);
/// Editing owner and description.
void edit(Tour &tour);
/// Locking and unlocking, with password and super password.
void lock(Tour &tour);

} // namespace Chapters

#pragma once

class Tour;

/// The chapters of the tour. Each leaves all dialogs closed.
namespace Chapters {

/// The host's own window and the automatic backup; the first one, since the backup comes when it
/// wants.
void host(Tour &tour);
/// The list of configurations: shows, activates, deletes.
void list(Tour &tour);
/// Creating a configuration, cloned and with default values.
void create(Tour &tour);
/// Editing owner and description.
void edit(Tour &tour);
/// Locking and unlocking, with password and super password.
void lock(Tour &tour);
/// Configuration files and backups, and how they come back.
void files(Tour &tour);
/// One configuration out of a backup.
void extract(Tour &tour);
/// The dialogs with nothing, with very much, and with very long texts in them.
void extremes(Tour &tour);

} // namespace Chapters

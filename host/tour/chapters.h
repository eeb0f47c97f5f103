#pragma once

class Tour;

/// The chapters of the tour. Each leaves all dialogs closed.
namespace Chapters {

/// The host's own window.
void host(Tour &tour);
/// The list of configurations: shows, activates, deletes.
void list(Tour &tour);

} // namespace Chapters

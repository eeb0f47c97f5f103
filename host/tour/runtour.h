#pragma once

class HostSession;
class QDir;
class QString;
class SimulatedLink;

/// Makes @p folder ready for a tour: creates it, removes what a former tour has left, and makes a
/// home of its own in it, so that no file of the user is touched. To be called before any window is
/// made and the module is loaded.
/// @return whether the folder is usable; if not, @p problem says why in one line
bool prepareTour(const QString &folder, QString *problem);

/// Drives the dialogs through all chapters and leaves numbered pictures and "transcript.txt" in @p
/// folder. What came of it is printed in one line, with the step that failed if there was one.
/// @return the program's exit code: 0 when every outcome was as expected, 1 otherwise
int runTour(HostSession &session, SimulatedLink &link, const QDir &folder);

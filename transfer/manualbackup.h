#pragma once

class Controller;
class QWidget;
struct BackendVersions;

/// Backs up the whole controller into a file that the user chooses.
///
/// Does nothing when the user cancels. Once a file is chosen, whatever happens ends in exactly one
/// message box; the host is told nothing.
/// @param versions  not owned
/// @param dialog    the parent of the file chooser and of the boxes; may be destroyed while one of
///                  them is open
void backUpByHand(const Controller &controller, BackendVersions *versions, QWidget *dialog);

#pragma once

#include "transfer/lockstates.h"

#include <QStringList>

class Controller;
class QWidget;

/// Imports configurations that were uploaded before, in the given order and in place of those of
/// the same identifier; tells the rest of the host, and shows the user how it went.
///
/// A configuration that is on the controller already is deleted first; a locked one is left alone,
/// and the one that was uploaded is not imported. The first import that fails ends the rest.
/// Nothing is rolled back: what had to give way to an import that failed or was never reached is
/// gone from the controller, but the file still holds what should have replaced it.
/// @param existing  what is on the controller
/// @param dialog    the parent of the boxes; it may be destroyed while one is open, which is always
///                  the last step
void importConfigurations(const Controller &controller, const QStringList &identifiers,
                          const LockStates &existing, QWidget *dialog);

#pragma once

class Controller;
class QString;
class QStringList;
class QWidget;

/// Saves configurations of the controller into one file.
///
/// The controller makes the file's contents: each configuration is cloned, its copy gets today's
/// date into the description and is prepared for download; what was prepared is fetched into the
/// file, the copies are deleted, and the configuration that was active before is made active again.
/// The user learns the outcome from a box, the host learns each single failure as a message.
///
/// A configuration that cannot be cloned or dated is missing from the file, even though the outcome
/// may be called a success. When one cannot be prepared, the save ends at once and leaves the
/// copies made so far on the controller, the last of them active.
/// @param identifiers  the configurations, in the order in which they are saved
/// @param fileName     a file that is there already is kept under its name with ".bak" appended
/// @param dialog       the parent of the boxes; may be destroyed while one of them is open, which
/// is
///                     always the last step
void saveConfigurations(const Controller &controller, const QStringList &identifiers,
                        const QString &fileName, QWidget *dialog);

#pragma once

class QString;
struct ControllerState;

/// A controller's state on disk: one JSON document, readable and editable by hand; texts are
/// Latin-1, data and hashes Base64.
///
/// Functions return whether they succeeded; if not, @p error tells why in one line that names the
/// file, and nothing else has changed.
namespace StateFile {

/// Reads the whole file and checks it: every member present and of its type, identifiers valid and
/// unique, limits kept, "standard" and the active configuration among the stored ones.
bool load(const QString &path, ControllerState *state, QString *error);

/// Takes up what the file holds; where there is none, makes one that holds @p state.
bool takeUp(const QString &path, ControllerState *state, QString *error);

/// Writes the file anew; whoever reads it, also after a crash, finds either the old content or the
/// new.
bool save(const QString &path, const ControllerState &state, QString *error);

} // namespace StateFile

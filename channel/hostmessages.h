#pragma once

class IOManager;
class QString;

/// What the plug-in says to the rest of the host: these two messages and no other.
namespace HostMessages {

/// Reports that something failed; the host shows it among its events. @p text is English,
/// untranslated, and reaches the host as Latin-1.
void reportError(IOManager *channel, const QString &text);

/// Reports @p text, in Latin-1, if @p result, that of a command, is a failure.
/// @return whether the command succeeded
bool succeededOrReported(int result, IOManager *channel, const char *text);

/// Announces that the set of configurations or the active one may have changed, so that other
/// modules read again what they show.
void announceActiveConfigurationChanged(IOManager *channel);

} // namespace HostMessages

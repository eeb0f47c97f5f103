#pragma once

/// Receives the messages that the host forwards, once registered with
/// IOManager::addMessageReceiver().
///
/// The host calls it in the GUI thread and never deletes it; whoever registered it unregisters it
/// before destroying it.
class MessageReceiver
{
public:
    /// @param id      the host's own number of the message; receivers are free to ignore it
    /// @param source  who sent it, NUL-terminated; may be null
    /// @param text    the message, NUL-terminated; may be null
    /// @return 0
    virtual int receiveMessage(int id, const char *source, const char *text) = 0;

protected:
    ~MessageReceiver() = default;
};

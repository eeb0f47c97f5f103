#pragma once

#include <QMetaType>

class MessageReceiver;

/// The host's command channel to the tracking controller, together with the host's message system.
///
/// Handed to the plug-in under the property name "CommandManager"; the host owns it and keeps it
/// alive until the plug-in has been released. Every operation is called from the GUI thread, blocks
/// until the controller has answered or the time-out has expired, and returns 0 for success and any
/// other value for failure.
///
/// Formats and their "%s" arguments are Latin-1. A reply buffer given by the caller holds at least
/// 200 bytes; the channel writes at most that many, the terminating NUL included, and leaves buffer
/// and value untouched when the command fails.
///
/// The order of the operations is the binary contract between host and plug-in: never reorder,
/// never insert. That they are printf-like lets the compiler check every command against its
/// arguments.
class IOManager
{
public:
    /// Sets how long the following commands may take.
    /// @param channel       always 0
    /// @param milliseconds  the limit
    /// @param flag          0 or 1; its meaning is the host's
    virtual int setTimeout(int channel, int milliseconds, int flag) = 0;

    /// Sends a command that begins with "veltra2 " and copies the controller's raw answer line into
    /// @p reply; a structural command that succeeded answers "veltra2 ok".
    [[gnu::format(printf, 3, 4)]] virtual int sendCommandReply(char *reply, const char *format,
                                                               ...) = 0;

    /// Sends a query and copies its textual value into @p reply.
    [[gnu::format(printf, 3, 4)]] virtual int queryString(char *reply, const char *format, ...) = 0;
    /// Sends a query and stores its integer value.
    [[gnu::format(printf, 3, 4)]] virtual int queryInt(int *value, const char *format, ...) = 0;
    /// Sends a query and stores its floating value.
    [[gnu::format(printf, 3, 4)]] virtual int queryDouble(double *value, const char *format,
                                                          ...) = 0;
    /// Sends a query and stores its truth value.
    [[gnu::format(printf, 3, 4)]] virtual int queryBool(bool *value, const char *format, ...) = 0;

    /// Sends a command that yields no value.
    [[gnu::format(printf, 2, 3)]] virtual int sendCommand(const char *format, ...) = 0;

    /// Hands a message or an event to the host's message system.
    virtual int postMessage(const char *category, const char *source, int level,
                            const char *text) = 0;

    /// Registers @p receiver for the messages that the host forwards; the host does not own it.
    virtual int addMessageReceiver(const char *name, MessageReceiver *receiver) = 0;
    /// Unregisters @p receiver. Hosts go by the receiver: the name may differ from the one it was
    /// added under.
    virtual int removeMessageReceiver(const char *name, MessageReceiver *receiver) = 0;

protected:
    ~IOManager() = default;
};

Q_DECLARE_METATYPE(IOManager *)

#pragma once

#include <QPointer>

// The host may release the module or destroy its window at any time that it gets to run: while
// something modal is open, and within a command or a message that it is being sent.

/// Thrown by a GuardedChannel out of the call that has cost its owner the life. It leaves
/// everything that the owner was doing; survives() is where it ends. No std::exception, lest it be
/// taken for a failure.
class OwnerDestroyed
{ };

/// Runs @p action, which may open modal windows and, through a GuardedChannel, send commands. It
/// ends early when a command has destroyed the channel's owner. Every slot that does such things
/// does them in here, and returns at once without touching any member when it learns that it is
/// gone.
/// @return whether @p object still exists afterwards; false as well if the action ended early
template <typename Action>
bool survives(const QObject *object, Action action)
{
    const QPointer<const QObject> watched(object);
    try {
        action();
    } catch (const OwnerDestroyed &) {
        return false;
    }
    return !watched.isNull();
}

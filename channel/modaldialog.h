#pragma once

#include <QPointer>

#include <optional>

// The host may release the module or destroy its window while something modal is open. Whoever goes
// on after a modal window runs it through one of these, and returns at once without touching any
// member when it learns that it is gone.

/// Runs @p action, which may open modal windows.
/// @return whether @p object still exists afterwards
template <typename Action>
bool survives(const QObject *object, Action action)
{
    const QPointer<const QObject> watched(object);
    action();
    return !watched.isNull();
}

/// Runs @p dialog through @p run, a call of its update_and_exec(), and deletes it afterwards.
/// @return the result; nothing if the dialog was destroyed meanwhile, along with its parent
template <typename Dialog, typename Run>
std::optional<int> runModalDialog(Dialog *dialog, Run run)
{
    int result = 0;
    if (!survives(dialog, [&] { result = run(*dialog); })) {
        return std::nullopt;
    }
    delete dialog;
    return result;
}

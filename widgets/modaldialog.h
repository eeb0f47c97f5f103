#pragma once

#include <QPointer>

#include <optional>

/// Runs @p dialog through @p run, a call of its update_and_exec(), and deletes it afterwards.
/// @return the result; nothing if the dialog was destroyed meanwhile, along with its parent
template <typename Dialog, typename Run>
std::optional<int> runModalDialog(Dialog *dialog, Run run)
{
    const QPointer<Dialog> watched(dialog);
    const int result = run(*dialog);
    if (!watched) {
        return std::nullopt;
    }
    delete dialog;
    return result;
}

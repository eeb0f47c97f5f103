#pragma once

#include <QPointer>

#include <optional>

/// Runs @p dialog through @p run, a call of its update_and_exec(), and deletes it afterwards.
///
/// While the dialog is open the host may destroy its parent, and the dialog with it. The result is
/// then empty, and the caller returns at once without touching any member of the parent.
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

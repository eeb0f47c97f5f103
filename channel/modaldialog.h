#pragma once

#include "channel/survives.h"

#include <optional>

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

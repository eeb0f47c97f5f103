#pragma once

#include "backup/fullbackup.h"

#include <stdexcept>

/// Fills @p backup from the controller. A connection that breaks meanwhile counts as a failure: its
/// exception must not reach Qt's event loop, which cannot pass one on.
/// @return true if the record was filled completely
inline bool isCollected(FullBackup *backup)
{
    try {
        return backup->collectFromController() != 0;
    } catch (const std::runtime_error &) {
        return false;
    }
}

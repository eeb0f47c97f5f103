#include "transfer/collecting.h"

#include "backup/fullbackup.h"

#include <stdexcept>

bool isCollected(FullBackup *backup)
{
    try {
        return backup->collectFromController() != 0;
    } catch (const std::runtime_error &) {
        return false;
    }
}

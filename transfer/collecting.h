#pragma once

class FullBackup;

/// Fills @p backup from the controller. A connection that breaks meanwhile counts as a failure: its
/// exception must not reach Qt's event loop, which cannot pass one on.
/// @return true if the record was filled completely
bool isCollected(FullBackup *backup);

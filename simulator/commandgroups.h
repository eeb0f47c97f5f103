#pragma once

#include "simulator/commandtable.h"

/// The controller's commands by concern; each function adds its group to the table.
namespace CommandGroups {

void addConfigurationQueries(CommandTable &table);
void addConfigurationCommands(CommandTable &table);
void addPasswordCommands(CommandTable &table);
void addSystemCommands(CommandTable &table);
void addCascadeCommands(CommandTable &table);
void addDownloadCommands(CommandTable &table);
void addUploadCommands(CommandTable &table);

/// The whole vocabulary.
CommandTable all();

} // namespace CommandGroups

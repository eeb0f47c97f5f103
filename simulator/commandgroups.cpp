#include "simulator/commandgroups.h"

CommandTable CommandGroups::all()
{
    CommandTable table;
    addConfigurationQueries(table);
    addConfigurationCommands(table);
    addPasswordCommands(table);
    addSystemCommands(table);
    addCascadeCommands(table);
    addDownloadCommands(table);
    addUploadCommands(table);
    return table;
}

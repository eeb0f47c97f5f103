#pragma once

#include "tool/outcome.h"

#include <QStringList>
#include <QVector>

class QCommandLineOption;
struct ToolArguments;

/// The commands of the program, and what each wants.
namespace ToolCommands {

/// One of them.
struct Command
{
    QString name;                          ///< as it is typed
    QString syntax;                        ///< of what follows the name
    QString description;                   ///< for the help
    QStringList options;                   ///< that go with it, besides those that go with all
    int fewestPaths;                       ///< that may follow
    int mostPaths;                         ///< likewise
    Outcome (*run)(const ToolArguments &); ///< carries it out
};

/// All of them, in the order of the help.
const QVector<Command> &all();

/// The command of that name; null if there is none.
const Command *find(const QString &name);

/// All options that there are. "json", "help" and "version" go with every command.
const QList<QCommandLineOption> &options();

/// Prints the help: about one command, or all if it is null.
void printHelp(const Command *command);

} // namespace ToolCommands

#include "tool/toolcommands.h"

#include <QCommandLineOption>
#include <QCommandLineParser>

#include <cstdio>

namespace {

const char *const exitCodes =
    "\nExit status:\n"
    "  0  all backups are good; diff: the two are the same\n"
    "  1  a restore would refuse one, or it does not fit, or there is none that young; diff: they\n"
    "     differ\n"
    "  2  a file cannot be read or written, or the command line is wrong; diff: a restore would\n"
    "     refuse one\n";

const char *const notes =
    "\nA PATH is a file or a folder, which stands for all *.xml in it and below. Without one, list "
    "and\nverify look where automatic backups go.\n"
    "\nA backup that is accepted here can still be refused by a controller: while one of its\n"
    "configurations is locked, or where the configurations in the backup are not whole.\n";

// The parser prints what belongs together: the usage, and the options.
QString optionsHelp(QCommandLineParser &parser, const QString &description,
                    const QStringList &names)
{
    parser.setApplicationDescription(description);
    for (const QCommandLineOption &option : ToolCommands::options()) {
        if (names.isEmpty() || names.contains(option.names().constLast())) {
            parser.addOption(option);
        }
    }
    return parser.helpText();
}

QString helpOn(const ToolCommands::Command &command)
{
    QCommandLineParser parser;
    parser.addPositionalArgument(QString(), QString(),
                                 command.name + QLatin1Char(' ') + command.syntax);
    const QStringList always{QStringLiteral("help"), QStringLiteral("version"),
                             QStringLiteral("json")};
    const QString text = optionsHelp(parser, command.description, command.options + always);
    return text.left(text.indexOf(QStringLiteral("\nArguments:")));
}

QString helpOnAll()
{
    QCommandLineParser parser;
    QString usage = QStringLiteral("COMMAND [PATH]...");
    for (const ToolCommands::Command &command : ToolCommands::all()) {
        parser.addPositionalArgument(command.name, command.description, usage);
        usage = QStringLiteral(" "); // all of it is said with the first one
    }
    return optionsHelp(parser,
                       QStringLiteral("Finds, judges, compares and opens the backup documents of "
                                      "VELTRA4 controllers."),
                       {})
        .replace(QStringLiteral("\nArguments:"), QStringLiteral("\nCommands:"));
}

} // namespace

void ToolCommands::printHelp(const Command *command)
{
    std::fputs(qPrintable(command ? helpOn(*command) : helpOnAll()), stdout);
    std::fputs(exitCodes, stdout);
    std::fputs(notes, stdout);
}

#include "tool/toolcommands.h"

#include "tool/diff.h"
#include "tool/extraction.h"
#include "tool/list.h"
#include "tool/show.h"
#include "tool/verification.h"

#include <QCommandLineOption>

#include <algorithm>
#include <limits>

namespace {

constexpr int any = std::numeric_limits<int>::max();

QCommandLineOption option(const QStringList &names, const char *description,
                          const QString &value = {})
{
    return {names, QString::fromLatin1(description), value};
}

} // namespace

const QVector<ToolCommands::Command> &ToolCommands::all()
{
    static const QVector<Command> commands{
        {QStringLiteral("verify"),
         QStringLiteral("[PATH]..."),
         QStringLiteral("Tell whether a restore would accept the backups and, if not, which field "
                        "is why; and onto which controllers they fit."),
         {QStringLiteral("controller"), QStringLiteral("newer-than"), QStringLiteral("model"),
          QStringLiteral("tracking"), QStringLiteral("firmware")},
         0,
         any,
         verify},
        {QStringLiteral("list"),
         QStringLiteral("[PATH]..."),
         QStringLiteral("Print a table of the backups, the newest first."),
         {QStringLiteral("controller")},
         0,
         any,
         list},
        {QStringLiteral("show"),
         QStringLiteral("PATH..."),
         QStringLiteral("Print what the backups hold; of the configurations, size and SHA-256."),
         {},
         1,
         any,
         show},
        {QStringLiteral("diff"),
         QStringLiteral("FILE FILE | FOLDER FOLDER"),
         QStringLiteral("Print the fields in which two backups differ: two files, the newest of "
                        "each controller in two folders, or the newest of two controllers."),
         {QStringLiteral("ignore"), QStringLiteral("controller")},
         2,
         2,
         diff},
        {QStringLiteral("extract"),
         QStringLiteral("BACKUP [FILE.dat]"),
         QStringLiteral("Write the configurations of a backup into a file that the load dialog "
                        "opens; beside the backup, if no other place is named."),
         {QStringLiteral("force")},
         1,
         2,
         extract},
    };
    return commands;
}

const ToolCommands::Command *ToolCommands::find(const QString &name)
{
    const QVector<Command> &commands = all();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&name](const Command &one) { return one.name == name; });
    return found == commands.end() ? nullptr : &*found;
}

const QList<QCommandLineOption> &ToolCommands::options()
{
    static const QList<QCommandLineOption> all{
        option({QStringLiteral("h"), QStringLiteral("help")},
               "Print this help; after a command, what there is to say of it."),
        option({QStringLiteral("v"), QStringLiteral("version")}, "Print the program's version."),
        option({QStringLiteral("json")}, "Print JSON instead of text."),
        option({QStringLiteral("controller")},
               "Only backups of the controller with this host name; diff wants it twice, or not at "
               "all.",
               QStringLiteral("name")),
        option({QStringLiteral("newer-than")},
               "Fail unless there is a good backup that is younger: 30m, 12h, 2d or 1w.",
               QStringLiteral("age")),
        option({QStringLiteral("model")}, "Fail if a backup does not fit this controller model.",
               QStringLiteral("model")),
        option({QStringLiteral("tracking")},
               "Fail if a backup wants newer tracking software than this, \"4.2.0\" for example.",
               QStringLiteral("version")),
        option({QStringLiteral("firmware")},
               "Fail if a backup wants newer firmware than this; for an embedded controller only, "
               "as no other one minds.",
               QStringLiteral("version")),
        option({QStringLiteral("ignore")},
               "Pass over this field, \"creationDate\" for example; may be given several times.",
               QStringLiteral("field")),
        option({QStringLiteral("force")}, "Replace the file if it is there already."),
    };
    return all;
}

#include "tool/toolarguments.h"

#include "backup/version.h"
#include "tool/age.h"
#include "tool/fields.h"
#include "tool/toolcommands.h"

#include <QCommandLineOption>
#include <QCommandLineParser>

#include <algorithm>
#include <cstdlib>

namespace {

using ToolCommands::Command;

bool isField(const QString &name)
{
    const QStringList paths = fieldPaths();
    return std::any_of(paths.begin(), paths.end(),
                       [&name](const QString &path) { return isNamed(path, name); });
}

/// Reads the values and what may be combined with what; the first problem is remembered.
class ToolCommandLine
{
public:
    ToolCommandLine() { m_parser.addOptions(ToolCommands::options()); }

    std::optional<ToolArguments> read(const QStringList &arguments, QString *problem);

private:
    void printWhatIsAsked(const Command *command);
    ToolArguments readValues(const Command &command, const QStringList &paths);
    void checkOptions(const Command &command);
    void checkPaths(const Command &command, const ToolArguments &values);
    std::optional<qint64> readAge();
    std::optional<Version> readVersion(const QString &option);
    bool isSet(const char *option) const { return m_parser.isSet(QString::fromLatin1(option)); }
    void complain(const QString &problem);

    QCommandLineParser m_parser;
    QString m_problem;
};

std::optional<ToolArguments> ToolCommandLine::read(const QStringList &arguments, QString *problem)
{
    ToolArguments values;
    if (m_parser.parse(arguments)) {
        QStringList paths = m_parser.positionalArguments();
        const QString name = paths.isEmpty() ? QString() : paths.takeFirst();
        const Command *const command = ToolCommands::find(name);
        printWhatIsAsked(command);
        if (command) {
            values = readValues(*command, paths);
        } else {
            complain(QStringLiteral(
                "The first argument is verify, list, show, diff or extract; see --help."));
        }
    } else {
        complain(m_parser.errorText());
    }
    *problem = m_problem;
    return m_problem.isEmpty() ? std::make_optional(values) : std::nullopt;
}

void ToolCommandLine::printWhatIsAsked(const Command *command)
{
    if (isSet("help")) {
        ToolCommands::printHelp(command);
        std::exit(EXIT_SUCCESS);
    }
    if (isSet("version")) {
        m_parser.showVersion();
    }
}

ToolArguments ToolCommandLine::readValues(const Command &command, const QStringList &paths)
{
    ToolArguments values;
    values.command = command.name;
    values.paths = paths;
    values.ignored = m_parser.values(QStringLiteral("ignore"));
    values.controllers = m_parser.values(QStringLiteral("controller"));
    values.maxAge = readAge();
    values.maxAgeText = m_parser.value(QStringLiteral("newer-than"));
    values.traits = {m_parser.value(QStringLiteral("model")),
                     readVersion(QStringLiteral("tracking")),
                     readVersion(QStringLiteral("firmware"))};
    values.isJson = isSet("json");
    values.isForced = isSet("force");
    checkOptions(command);
    checkPaths(command, values);
    for (const QString &field : qAsConst(values.ignored)) {
        if (!isField(field)) {
            complain(QStringLiteral("There is no field \"%1\".").arg(field));
        }
    }
    return values;
}

void ToolCommandLine::checkOptions(const Command &command)
{
    const QStringList given = m_parser.optionNames();
    for (const QString &option : given) {
        if (option != QLatin1String("json") && !command.options.contains(option)) {
            complain(QStringLiteral("--%1 does not go with %2.").arg(option, command.name));
        }
    }
}

void ToolCommandLine::checkPaths(const Command &command, const ToolArguments &values)
{
    const bool isByController = values.command == QLatin1String("diff") && isSet("controller");
    if (isByController && values.controllers.size() != 2) {
        complain(QStringLiteral("diff wants two controllers, or none."));
    }
    const int count = values.paths.size();
    if (!isByController && (count < command.fewestPaths || count > command.mostPaths)) {
        complain(QStringLiteral("%1 wants %2.").arg(command.name, command.syntax));
    }
    if (values.paths.contains(QString())) {
        complain(QStringLiteral("A file has no name."));
    }
}

std::optional<qint64> ToolCommandLine::readAge()
{
    const QString text = m_parser.value(QStringLiteral("newer-than"));
    const std::optional<qint64> age = Age::parse(text);
    if (isSet("newer-than") && !age) {
        complain(QStringLiteral("\"%1\" is no age: 30m, 12h, 2d and 1w are some.").arg(text));
    }
    return age;
}

std::optional<Version> ToolCommandLine::readVersion(const QString &option)
{
    if (!m_parser.isSet(option)) {
        return std::nullopt;
    }
    const QString text = m_parser.value(option);
    bool isVersion = false;
    const Version version = parseVersion(text, &isVersion);
    if (!isVersion) {
        complain(QStringLiteral("\"%1\" is no version: \"4.2.0\" is one.").arg(text));
    }
    return version;
}

void ToolCommandLine::complain(const QString &problem)
{
    if (m_problem.isEmpty()) {
        m_problem = problem;
    }
}

} // namespace

std::optional<ToolArguments> parseToolArguments(const QStringList &arguments, QString *problem)
{
    return ToolCommandLine().read(arguments, problem);
}

#include "tool/toolarguments.h"

#include "tool/fields.h"

#include <QCommandLineParser>
#include <QMap>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

using Command = ToolArguments::Command;

const QMap<QString, Command> &commands()
{
    static const QMap<QString, Command> byName{{QStringLiteral("verify"), Command::Verify},
                                               {QStringLiteral("show"), Command::Show},
                                               {QStringLiteral("diff"), Command::Diff}};
    return byName;
}

bool isField(const QString &name)
{
    const QStringList paths = fieldPaths();
    return std::any_of(paths.begin(), paths.end(),
                       [&name](const QString &path) { return isNamed(path, name); });
}

/// The options and what may be combined with what; the first problem is remembered.
class ToolCommandLine
{
public:
    ToolCommandLine();

    std::optional<ToolArguments> read(const QStringList &arguments, QString *problem);

private:
    [[noreturn]] void help() const;
    ToolArguments readValues();
    void complain(const QString &problem);

    const QCommandLineOption m_help{{QStringLiteral("h"), QStringLiteral("help")},
                                    QStringLiteral("Print this help.")};
    const QCommandLineOption m_version{{QStringLiteral("v"), QStringLiteral("version")},
                                       QStringLiteral("Print the program's version.")};
    const QCommandLineOption m_json{QStringLiteral("json"),
                                    QStringLiteral("Print one JSON object instead of text.")};
    const QCommandLineOption m_ignore{
        QStringLiteral("ignore"),
        QStringLiteral("Let diff pass over this field, \"creationDate\" for example; may be given "
                       "several times."),
        QStringLiteral("field")};
    QCommandLineParser m_parser;
    QString m_problem;
};

ToolCommandLine::ToolCommandLine()
{
    m_parser.setApplicationDescription(
        QStringLiteral("Tells what the backup documents of VELTRA4 controllers are worth, before "
                       "they are needed."));
    m_parser.addOptions({m_help, m_version, m_json, m_ignore});
    m_parser.addPositionalArgument(
        QStringLiteral("verify"),
        QStringLiteral("Tell whether a restore would accept FILE and, if "
                       "not, which field is why."),
        QStringLiteral("verify FILE"));
    m_parser.addPositionalArgument(
        QStringLiteral("show"),
        QStringLiteral("Print what FILE holds; of the configurations, size and SHA-256."),
        QStringLiteral("| show FILE"));
    m_parser.addPositionalArgument(QStringLiteral("diff"),
                                   QStringLiteral("Print the fields in which the two differ."),
                                   QStringLiteral("| diff FILE FILE"));
}

void ToolCommandLine::help() const
{
    std::fputs(qPrintable(m_parser.helpText()), stdout);
    std::fputs("\nExit status:\n"
               "  0  the backup is good; diff: the two are the same\n"
               "  1  a restore would refuse it; diff: the two differ\n"
               "  2  a file cannot be read, or the command line is wrong; diff: one of the two is "
               "no\n"
               "     good\n"
               "\nA backup that is accepted here can still be refused by a controller: a restore "
               "wants the\n"
               "same model, and no version older than the backup's.\n",
               stdout);
    std::exit(EXIT_SUCCESS);
}

std::optional<ToolArguments> ToolCommandLine::read(const QStringList &arguments, QString *problem)
{
    ToolArguments values;
    if (m_parser.parse(arguments)) {
        if (m_parser.isSet(m_help)) {
            help();
        }
        if (m_parser.isSet(m_version)) {
            m_parser.showVersion();
        }
        values = readValues();
    } else {
        complain(m_parser.errorText());
    }
    if (!m_problem.isEmpty()) {
        *problem = m_problem;
        return std::nullopt;
    }
    return values;
}

ToolArguments ToolCommandLine::readValues()
{
    ToolArguments values;
    values.files = m_parser.positionalArguments();
    const QString name = values.files.isEmpty() ? QString() : values.files.takeFirst();
    if (!commands().contains(name)) {
        complain(QStringLiteral("The first argument is verify, show or diff; see --help."));
        return values;
    }
    values.command = commands().value(name);
    values.ignored = m_parser.values(m_ignore);
    values.isJson = m_parser.isSet(m_json);

    const bool isDiff = values.command == Command::Diff;
    if (values.files.size() != (isDiff ? 2 : 1)) {
        complain(QStringLiteral("%1 wants %2.").arg(name, isDiff ? "two files" : "one file"));
    }
    if (values.files.contains(QString())) {
        complain(QStringLiteral("A file has no name."));
    }
    if (!isDiff && !values.ignored.isEmpty()) {
        complain(QStringLiteral("--ignore goes with diff only."));
    }
    for (const QString &field : qAsConst(values.ignored)) {
        if (!isField(field)) {
            complain(QStringLiteral("There is no field \"%1\".").arg(field));
        }
    }
    return values;
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

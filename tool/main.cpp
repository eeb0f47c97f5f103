#include "projectversion.h"
#include "tool/printable.h"
#include "tool/toolarguments.h"
#include "tool/toolcommands.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <csignal>
#include <cstdio>

namespace {

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("veltra4-backup"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELTRA4_VERSION));
}

void complain(const QString &problem)
{
    std::fprintf(stderr, "veltra4-backup: %s\n", qPrintable(printable(problem.simplified())));
}

// A judgement that did not arrive, on a full disk for example, must not pass for a good one.
int print(const Outcome &outcome, bool isJson)
{
    const QByteArray output = isJson ? outcome.json.toJson() : outcome.output.toLocal8Bit();
    std::fputs(output.constData(), stdout);
    if (!isJson) {
        std::fputs(qPrintable(outcome.complaint), stderr);
    }
    if (!outcome.problem.isEmpty()) {
        complain(outcome.problem);
    }
    if (std::fflush(stdout) != 0) {
        complain(QStringLiteral("The output cannot be written."));
        return ExitCode::trouble;
    }
    return outcome.exitCode;
}

} // namespace

int main(int argc, char *argv[])
{
    std::signal(SIGPIPE, SIG_IGN); // to be told of a closed pipe
    nameApplication();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setLibraryPaths({}); // no plug-ins: with each schema Qt would load some
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false")); // the reader's own log
    QString problem;
    const std::optional<ToolArguments> arguments =
        parseToolArguments(QCoreApplication::arguments(), &problem);
    if (!arguments) {
        complain(problem);
        return ExitCode::trouble;
    }
    return print(ToolCommands::find(arguments->command)->run(*arguments), arguments->isJson);
}

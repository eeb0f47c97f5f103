#include "projectversion.h"
#include "tool/comparison.h"
#include "tool/judgement.h"
#include "tool/printable.h"
#include "tool/toolarguments.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QLoggingCategory>

#include <cstdio>

namespace {

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("veltra4-backup"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELTRA4_VERSION));
}

Outcome run(const ToolArguments &arguments)
{
    switch (arguments.command) {
    case ToolArguments::Command::Verify:
        return Judgement::verify(arguments.files.at(0));
    case ToolArguments::Command::Show:
        return Judgement::show(arguments.files.at(0));
    case ToolArguments::Command::Diff:
        break;
    }
    return compare(arguments.files.at(0), arguments.files.at(1), arguments.ignored);
}

int complain(const QByteArray &problem)
{
    std::fprintf(stderr, "veltra4-backup: %s\n", problem.constData());
    return ExitCode::trouble;
}

// A judgement that did not arrive, on a full disk for example, must not pass for a good one.
int print(const Outcome &outcome, bool isJson)
{
    const QByteArray output =
        isJson ? QJsonDocument(outcome.json).toJson() : outcome.output.toLocal8Bit();
    std::fputs(output.constData(), stdout);
    if (!isJson) {
        std::fputs(qPrintable(outcome.complaint), stderr);
    }
    if (std::fflush(stdout) != 0) {
        return complain("the output cannot be written");
    }
    return outcome.exitCode;
}

} // namespace

int main(int argc, char *argv[])
{
    nameApplication();
    const QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false")); // the reader's own log
    QString problem;
    const std::optional<ToolArguments> arguments =
        parseToolArguments(QCoreApplication::arguments(), &problem);
    if (!arguments) {
        return complain(printable(problem.simplified()).toLocal8Bit());
    }
    return print(run(*arguments), arguments->isJson);
}

#include "server/serveroptions.h"

#include "simulator/faultplan.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {

constexpr int longestLatencyMs = 600000;
constexpr int longestIdleSeconds = 7 * 24 * 3600;

/// The options and how their texts become values; the first one that is wrong is remembered.
class ServerCommandLine
{
    Q_DECLARE_TR_FUNCTIONS(ServerCommandLine)

public:
    ServerCommandLine();

    std::optional<ServerOptions> read(const QStringList &arguments, QString *problem);

private:
    void answerHelp();
    ServerOptions readValues();
    QHostAddress address();
    int number(const QCommandLineOption &option, int least, int most);
    void checkRest();
    void complain(const QString &problem);

    const ServerOptions m_defaults;
    const QCommandLineOption m_help{{QStringLiteral("h"), QStringLiteral("help")},
                                    tr("Print this help.")};
    const QCommandLineOption m_version{{QStringLiteral("v"), QStringLiteral("version")},
                                       tr("Print the program's version.")};
    const QCommandLineOption m_port{QStringLiteral("port"),
                                    tr("Port to serve on; 0 for any free one."), tr("number"),
                                    QString::number(m_defaults.port)};
    const QCommandLineOption m_listen{
        QStringLiteral("listen"),
        tr("Address to serve on; others than the default let other machines in."), tr("address"),
        m_defaults.address.toString()};
    const QCommandLineOption m_state{
        QStringLiteral("state"),
        tr("Keep the controller's state in this file; without it a sample is used and forgotten."),
        tr("file")};
    const QCommandLineOption m_latency{QStringLiteral("latency"),
                                       tr("Time the controller takes for each answer."), tr("ms"),
                                       QString::number(m_defaults.latencyMs)};
    const QCommandLineOption m_fail{QStringLiteral("fail"),
                                    tr("Let commands go wrong; may be given several times.")
                                        + QLatin1Char(' ') + FaultPlan::ruleHelp(),
                                    tr("rule")};
    const QCommandLineOption m_idleLimit{
        QStringLiteral("idle-limit"), tr("Send clients away that are silent for so long."),
        tr("seconds"), QString::number(m_defaults.idleLimitSeconds)};
    QCommandLineParser m_parser;
    QString m_problem;
};

ServerCommandLine::ServerCommandLine()
{
    m_parser.setApplicationDescription(tr("Serves a simulated tracking controller over TCP."));
    m_parser.addOptions(
        {m_help, m_version, m_port, m_listen, m_state, m_latency, m_fail, m_idleLimit});
}

std::optional<ServerOptions> ServerCommandLine::read(const QStringList &arguments, QString *problem)
{
    ServerOptions options;
    if (m_parser.parse(arguments)) {
        answerHelp();
        options = readValues();
        checkRest();
    } else {
        complain(m_parser.errorText());
    }
    if (!m_problem.isEmpty()) {
        *problem = m_problem;
        return std::nullopt;
    }
    return options;
}

void ServerCommandLine::answerHelp()
{
    if (m_parser.isSet(m_help)) {
        m_parser.showHelp();
    }
    if (m_parser.isSet(m_version)) {
        m_parser.showVersion();
    }
}

ServerOptions ServerCommandLine::readValues()
{
    ServerOptions options;
    options.address = address();
    options.port = static_cast<quint16>(number(m_port, 0, 0xffff));
    options.stateFile = m_parser.value(m_state);
    options.latencyMs = number(m_latency, 0, longestLatencyMs);
    options.failureRules = m_parser.values(m_fail);
    options.idleLimitSeconds = number(m_idleLimit, 1, longestIdleSeconds);
    return options;
}

QHostAddress ServerCommandLine::address()
{
    const QString text = m_parser.value(m_listen);
    const QHostAddress address(text);
    if (address.isNull()) {
        complain(tr("--listen wants an address such as 0.0.0.0 or ::1, not \"%1\".").arg(text));
    }
    return address;
}

int ServerCommandLine::number(const QCommandLineOption &option, int least, int most)
{
    bool ok = false;
    const QString text = m_parser.value(option);
    const int number = text.toInt(&ok);
    if (!ok || number < least || number > most) {
        complain(tr("--%1 wants a number from %2 to %3, not \"%4\".")
                     .arg(option.names().constFirst())
                     .arg(least)
                     .arg(most)
                     .arg(text));
    }
    return number;
}

void ServerCommandLine::checkRest()
{
    if (m_parser.isSet(m_state) && m_parser.value(m_state).isEmpty()) {
        complain(tr("--state wants a path."));
    }
    if (!m_parser.positionalArguments().isEmpty()) {
        complain(
            tr("Unexpected argument \"%1\".").arg(m_parser.positionalArguments().constFirst()));
    }
}

void ServerCommandLine::complain(const QString &problem)
{
    if (m_problem.isEmpty()) {
        m_problem = problem;
    }
}

} // namespace

std::optional<ServerOptions> parseServerOptions(const QStringList &arguments, QString *problem)
{
    return ServerCommandLine().read(arguments, problem);
}

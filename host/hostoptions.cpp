#include "host/hostoptions.h"

#include "host/versiontext.h"
#include "simulator/faultplan.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>

namespace {

constexpr int longestLatencyMs = 600000;
constexpr int largestFontSize = 72; // points

/// The options and how their texts become values; the first one that is wrong is remembered.
class HostCommandLine
{
    Q_DECLARE_TR_FUNCTIONS(HostCommandLine)

public:
    HostCommandLine();

    std::optional<HostOptions> read(const QStringList &arguments, QString *problem);

private:
    void answerHelp();
    HostOptions readValues();
    Version version(const QCommandLineOption &option);
    int latency();
    int fontSize();
    int number(const QCommandLineOption &option, const QString &unit, int least, int greatest);
    std::optional<HostPort> controller();
    void checkCombinations();
    void complain(const QString &problem);

    const HostOptions m_defaults;
    const QCommandLineOption m_help{{QStringLiteral("h"), QStringLiteral("help")},
                                    tr("Print this help.")};
    const QCommandLineOption m_version{{QStringLiteral("v"), QStringLiteral("version")},
                                       tr("Print the program's version.")};
    const QCommandLineOption m_observer{
        QStringLiteral("observer"), tr("Run in observer mode, in which modules offer no actions.")};
    const QCommandLineOption m_controller{
        QStringLiteral("controller"),
        tr("Connect to the controller at this address, instead of simulating one."),
        tr("host:port")};
    const QCommandLineOption m_interfaceVersion{
        QStringLiteral("interface-version"), tr("Version of the controller's command interface."),
        tr("version"), versionText(m_defaults.interfaceVersion)};
    const QCommandLineOption m_ptVersion{QStringLiteral("pt-version"),
                                         tr("Version of the controller's tracking software."),
                                         tr("version"), versionText(m_defaults.ptVersion)};
    const QCommandLineOption m_ctVersion{QStringLiteral("ct-version"),
                                         tr("Version of the controller's firmware."), tr("version"),
                                         versionText(m_defaults.ctVersion)};
    const QCommandLineOption m_model{
        QStringLiteral("model"),
        tr("Model designation told to modules instead of the controller's own."), tr("text")};
    const QCommandLineOption m_hostVersion{QStringLiteral("host-version"),
                                           tr("Version of the host told to modules."), tr("text"),
                                           m_defaults.hostVersion};
    const QCommandLineOption m_latency{QStringLiteral("latency"),
                                       tr("Time the controller takes for each answer."), tr("ms"),
                                       QStringLiteral("0")};
    const QCommandLineOption m_fail{QStringLiteral("fail"),
                                    tr("Let commands go wrong; may be given several times.")
                                        + QLatin1Char(' ') + FaultPlan::ruleHelp(),
                                    tr("rule")};
    const QCommandLineOption m_state{
        QStringLiteral("state"),
        tr("Keep the controller's state in this file; without it a sample is used and forgotten."),
        tr("file")};
    const QCommandLineOption m_dark{QStringLiteral("dark"), tr("Show everything in dark colours.")};
    const QCommandLineOption m_fontSize{
        QStringLiteral("font-size"), tr("Show everything in a font of this size."), tr("points")};
    const QCommandLineOption m_plugin{QStringLiteral("plugin"), tr("The module to load."),
                                      tr("path"),
                                      QDir(QCoreApplication::applicationDirPath())
                                          .filePath(QStringLiteral("ConfigurationsModule.so"))};
    const QCommandLineOption m_tour{
        QStringLiteral("tour"),
        tr("Drive all dialogs, leave pictures and a transcript in this folder, and quit."),
        tr("folder")};
    QCommandLineParser m_parser;
    QString m_problem;
};

HostCommandLine::HostCommandLine()
{
    m_parser.setApplicationDescription(tr("Shows modules of the VELTRA4 front end against a "
                                          "controller, which it simulates unless told otherwise."));
    m_parser.addOptions({m_help, m_version, m_plugin, m_controller, m_state, m_latency, m_fail,
                         m_observer, m_interfaceVersion, m_ptVersion, m_ctVersion, m_model,
                         m_hostVersion, m_dark, m_fontSize, m_tour});
}

std::optional<HostOptions> HostCommandLine::read(const QStringList &arguments, QString *problem)
{
    HostOptions options;
    if (m_parser.parse(arguments)) {
        answerHelp();
        options = readValues();
        checkCombinations();
    } else {
        complain(m_parser.errorText());
    }
    if (!m_problem.isEmpty()) {
        *problem = m_problem;
        return std::nullopt;
    }
    return options;
}

void HostCommandLine::answerHelp()
{
    if (m_parser.isSet(m_help)) {
        m_parser.showHelp();
    }
    if (m_parser.isSet(m_version)) {
        m_parser.showVersion();
    }
}

HostOptions HostCommandLine::readValues()
{
    HostOptions options;
    options.isObserver = m_parser.isSet(m_observer);
    options.interfaceVersion = version(m_interfaceVersion);
    options.ptVersion = version(m_ptVersion);
    options.ctVersion = version(m_ctVersion);
    options.systemModel = m_parser.value(m_model);
    options.hostVersion = m_parser.value(m_hostVersion);
    options.latencyMs = latency();
    options.controller = controller();
    options.failureRules = m_parser.values(m_fail);
    options.stateFile = m_parser.value(m_state);
    options.isDark = m_parser.isSet(m_dark);
    options.fontSize = fontSize();
    options.pluginFile = m_parser.value(m_plugin);
    options.tourDirectory = m_parser.value(m_tour);
    return options;
}

Version HostCommandLine::version(const QCommandLineOption &option)
{
    const QString text = m_parser.value(option);
    const std::optional<Version> version = versionFromText(text);
    if (!version) {
        complain(tr("--%1 wants a version such as 1.27.0, not \"%2\".")
                     .arg(option.names().constFirst(), text));
    }
    return version.value_or(Version());
}

int HostCommandLine::latency()
{
    return number(m_latency, tr("milliseconds"), 0, longestLatencyMs);
}

int HostCommandLine::fontSize()
{
    return m_parser.isSet(m_fontSize) ? number(m_fontSize, tr("points"), 1, largestFontSize) : 0;
}

int HostCommandLine::number(const QCommandLineOption &option, const QString &unit, int least,
                            int greatest)
{
    bool ok = false;
    const QString text = m_parser.value(option);
    const int value = text.toInt(&ok);
    if (!ok || value < least || value > greatest) {
        complain(tr("--%1 wants %2 from %3 to %4, not \"%5\".")
                     .arg(option.names().constFirst(), unit, QString::number(least),
                          QString::number(greatest), text));
    }
    return value;
}

std::optional<HostPort> HostCommandLine::controller()
{
    const QString text = m_parser.value(m_controller);
    std::optional<HostPort> controller = HostPort::fromText(text);
    if (m_parser.isSet(m_controller) && !controller) {
        complain(tr("--controller wants HOST:PORT, such as tracker:4711 or [::1]:4711, not \"%1\".")
                     .arg(text));
    }
    return controller;
}

void HostCommandLine::checkCombinations()
{
    for (const QCommandLineOption &option : {m_state, m_latency, m_fail, m_tour}) {
        if (m_parser.isSet(option) && m_parser.isSet(m_controller)) {
            complain(tr("--%1 is for the simulated controller in the host, so it goes without "
                        "--controller.")
                         .arg(option.names().constFirst()));
        }
    }
    for (const QCommandLineOption &option : {m_state, m_plugin, m_tour}) {
        if (m_parser.isSet(option) && m_parser.value(option).isEmpty()) {
            complain(tr("--%1 wants a path.").arg(option.names().constFirst()));
        }
    }
    if (m_parser.isSet(m_tour) && m_parser.isSet(m_state)) {
        complain(tr("--tour changes the controller's state, so it goes without --state."));
    }
    if (m_parser.isSet(m_tour) && m_parser.isSet(m_observer)) {
        complain(tr("--tour needs the modules' actions, so it goes without --observer."));
    }
    if (!m_parser.positionalArguments().isEmpty()) {
        complain(
            tr("Unexpected argument \"%1\".").arg(m_parser.positionalArguments().constFirst()));
    }
}

void HostCommandLine::complain(const QString &problem)
{
    if (m_problem.isEmpty()) {
        m_problem = problem;
    }
}

} // namespace

std::optional<HostOptions> parseHostOptions(const QStringList &arguments, QString *problem)
{
    return HostCommandLine().read(arguments, problem);
}

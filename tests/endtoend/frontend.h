#pragma once

#include "hostapi/backendversions.h"
#include "simulator/channelobserver.h"
#include "simulator/simulatedchannel.h"
#include "simulator/simulatedcontroller.h"
#include "tests/support/modaldriver.h"

#include <QAction>
#include <QByteArrayList>
#include <QPluginLoader>
#include <QPointer>
#include <QSet>
#include <QTemporaryDir>
#include <QWidget>

#include <functional>
#include <memory>

class ModuleInterface;

/// An empty home directory of a user, as long as it lives.
class TemporaryHome
{
public:
    TemporaryHome();
    ~TemporaryHome();

    QString filePath(const QString &name) const { return m_directory.filePath(name); }

private:
    const QTemporaryDir m_directory;
    const QByteArray m_previous;
};

/// What passed the channel of a front end.
class Record final : public ChannelObserver
{
public:
    /// Everything posted, as "category source level text", and forgets it.
    QStringList takeMessages();
    /// All commands that succeeded, and forgets them.
    QByteArrayList takeCommands();
    /// The operation and the format of each command that was ever sent, "queryString config desc"
    /// for example.
    QSet<QByteArray> formats() const { return m_formats; }
    /// Called after each command.
    std::function<void(const QByteArray &command)> onCommand;
    /// Called within each call of the channel: with a command's format, with nothing for a time-out
    /// or a message.
    std::function<void(const QByteArray &format)> onCall;

private:
    void exchanged(const Exchange &exchange) override;
    void timeoutSet(int channel, int milliseconds, int flag) override;
    void messagePosted(const QByteArray &category, const QByteArray &source, int level,
                       const QByteArray &text) override;

    QStringList m_messages;
    QByteArrayList m_commands;
    QSet<QByteArray> m_formats;
};

/// What a front end tells of its version when it has started.
namespace HostVersion {
inline constexpr int message = 1; // its identifier
inline constexpr char current[] = "v4.2.0";
inline constexpr char withoutAutomaticBackup[] = "v2.0.0";
} // namespace HostVersion

/// A front end that has loaded the plug-in from disk, connected to whatever controller. What the
/// user does is written as actions on windows, which run while the window is open.
///
/// It tells a version without automatic backup, which would come in between otherwise, two seconds
/// after the start. A test of that backup has the current version told.
class ModuleHost
{
public:
    /// @p channel is not owned and must outlive the front end.
    explicit ModuleHost(MessageChannel &channel, const Version &interfaceVersion = {1, 27, 0});
    ~ModuleHost();
    Q_DISABLE_COPY_MOVE(ModuleHost)

    /// Chooses the plug-in's action in the menu and runs @p action on the list of configurations,
    /// then closes it. Fails the test unless all windows were as expected.
    void useList(const std::function<void(QDialog *list)> &action);
    /// Chooses the action, where the list does not open.
    void triggerAction();
    /// The plug-in's action, for those who look after the windows themselves.
    QAction *action() const { return m_action; }
    void tellVersion(const char *version);

    /// @name What the host may do at any time
    /// @{
    /// Asks for the menu's entries.
    void offerAction();
    void release();
    void destroyWindow() { window.reset(); }
    /// @}

    Record record;
    BackendVersions versions;
    std::unique_ptr<QWidget> window;
    ModalDriver driver;

private:
    MessageChannel &m_channel;
    QPluginLoader m_loader;
    ModuleInterface *m_module = nullptr;
    QPointer<QAction> m_action;
};

/// A simulated controller and the channel to it.
struct SimulatedBackend
{
    explicit SimulatedBackend(const ControllerState &state)
        : controller(state)
        , channel(controller)
    {
    }

    SimulatedController controller;
    SimulatedChannel channel;
};

/// A front end that is connected to a simulated controller in this process.
class FrontEnd : public SimulatedBackend, public ModuleHost
{
public:
    explicit FrontEnd(const ControllerState &state = ControllerState::sample(),
                      const Version &interfaceVersion = {1, 27, 0})
        : SimulatedBackend(state)
        , ModuleHost(channel, interfaceVersion)
    {
    }

    const ControllerState &state() const { return controller.state(); }
};

/// What the plug-in posts whenever it has changed something.
QString changeEvent();
/// How the plug-in posts an error.
QString errorMessage(const QString &text);

/// The configuration of that identifier; a state without it ends the program.
Configuration &configurationIn(ControllerState &state, const QByteArray &identifier);
const Configuration &configurationIn(const ControllerState &state, const QByteArray &identifier);
bool hasConfiguration(const ControllerState &state, const QByteArray &identifier);
void removeConfiguration(ControllerState &state, const QByteArray &identifier);

/// The identifiers of some of the sample's configurations.
namespace Sample {
inline const QByteArray standard = QByteArrayLiteral("standard");
inline const QByteArray active = QByteArrayLiteral("config20231106081559902");
inline const QByteArray locked = QByteArrayLiteral("config2024022909000127");
inline const QByteArray rotor = QByteArrayLiteral("config20240311164812333");
inline const QByteArray fair = QByteArrayLiteral("config20240702145537281");

/// What the list shows of them.
inline const QString standardText = QStringLiteral("Standard configuration");
inline const QString activeText = QStringLiteral("Robot cell 2, tool centre point");
inline const QString lockedText = QStringLiteral("Acceptance test, length bar 1.5 m");
inline const QString rotorText = QStringLiteral("Wind tunnel, rotor tips (slow)");
inline const QString fairText = QStringLiteral("Trade fair demonstration");

/// Less to transfer, but still many chunks of it, and nothing locked, as a restore wants it.
ControllerState light();
} // namespace Sample

/// For what happens on its own, however busy the machine is.
constexpr int patienceMs = 60000;

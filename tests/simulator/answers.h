#pragma once

#include "simulator/simulatedcontroller.h"

#include <QByteArrayList>
#include <QTest>

/// The answer, or "refused: " and the reason.
inline QByteArray textOf(const Reply &reply)
{
    return reply.ok ? reply.text : "refused: " + reply.reason.toLatin1();
}

/// The controller's answer to @p command, or "refused: " and the reason.
inline QByteArray answer(SimulatedController &controller, const QByteArray &command)
{
    return textOf(controller.execute(command));
}

/// Sees that a line "command -> answer" comes true when the command is given to @p ask. Without an
/// arrow the command has to be done; what that is answered with depends on its beginning only.
template <typename Ask>
void expectAnswer(Ask ask, const QByteArray &line)
{
    const QByteArray command = line.mid(0, line.indexOf(" -> "));
    const QByteArray said = ask(command);
    const bool isDone = said == (command.startsWith("veltra2 ") ? "veltra2 ok" : "");
    QCOMPARE(isDone ? command : command + " -> " + said, line);
}

/// The same for one line after the other, with that controller.
inline void expectAnswers(SimulatedController &controller, const QByteArrayList &lines)
{
    for (const QByteArray &line : lines) {
        expectAnswer([&](const QByteArray &command) { return answer(controller, command); }, line);
    }
}

/// The same with a new controller in that state. @return the state that it is in afterwards
inline ControllerState stateAfter(const ControllerState &state, const QByteArrayList &lines)
{
    SimulatedController controller(state);
    expectAnswers(controller, lines);
    return controller.state();
}

inline void expectAnswers(const ControllerState &state, const QByteArrayList &lines)
{
    stateAfter(state, lines);
}

/// The same, and that the lines change nothing.
inline void expectUnchanged(const ControllerState &state, const QByteArrayList &lines)
{
    QVERIFY(stateAfter(state, lines) == state);
}

/// Sees that each of the commands is refused for that reason, and changes nothing.
inline void expectRefusals(const ControllerState &state, const QByteArray &reason,
                           const QByteArrayList &commands)
{
    for (const QByteArray &command : commands) {
        expectUnchanged(state, {command + " -> refused: " + reason});
    }
}

/// A controller with the configurations "standard", "first" and "second", 1000 bytes of data each,
/// in a store of 100,000 bytes; "first" is active, nothing is locked. Two slaves are connected, one
/// is not, one has yet to be scanned. The super password is "super".
inline ControllerState smallState()
{
    ControllerState state;
    state.hostName = "host";
    state.serial = "1234";
    state.model = "2";
    state.modelDescription = "Model 5";
    state.net = "10.0.0.2/8";
    state.domainName = "domain";
    state.nameServer = "10.0.0.1";
    state.ntpServer = "ntp";
    state.storeCapacity = 100000;
    state.configurations = {
        {"standard", "factory", "Standard", {}, QByteArray(1000, 's')},
        {"first", "Ann", "First one", {}, QByteArray(1000, '1')},
        {"second", "Bob", "Second one", {}, QByteArray(1000, '2')},
    };
    state.activeIdentifier = "first";
    state.baseData = "base data";
    state.superPassword = SaltedHash::of("super", "salt");
    state.slaves = {{"near", true, true, true},
                    {"dead", true, false, true},
                    {"ready", false, true, true},
                    {"far", false, true, false}};
    return state;
}

/// The same controller, with the active configuration locked by the password "secret".
inline ControllerState lockedState()
{
    ControllerState state = smallState();
    state.configurations[1].password = SaltedHash::of("secret", "salt");
    return state;
}

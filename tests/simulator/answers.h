#pragma once

#include "simulator/simulatedcontroller.h"

/// The controller's answer to @p command, or "refused: " and the reason.
inline QByteArray answer(SimulatedController &controller, const QByteArray &command)
{
    const Reply reply = controller.execute(command);
    return reply.ok ? reply.text : "refused: " + reply.reason.toLatin1();
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

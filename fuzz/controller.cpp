// A session with the simulated controller: each line of the input is a command.

#include "simulator/simulatedcontroller.h"

#include "fuzz/target.h"
#include "simulator/limits.h"

#include <QList>

namespace {

// A small store, which a few commands fill.
ControllerState smallState()
{
    ControllerState state;
    state.hostName = "tracker";
    state.storeCapacity = 10000;
    state.baseData = "base";
    state.superPassword = SaltedHash::of("super", "salt");
    state.configurations = {{"standard", "factory", "Standard configuration", {}, "s"},
                            {"first", "A", "first one", {}, QByteArray(250, 'f')},
                            {"locked", "B", "locked one", SaltedHash::of("lock", "salt"), "l"}};
    state.activeIdentifier = "first";
    state.slaves = {{"near", true, true, true}, {"far", false, true, false}};
    return state;
}

void execute(SimulatedController &controller, const QByteArray &command)
{
    static int changes = 0;
    changes = 0;
    controller.setChangeCallback([] { ++changes; });
    const ControllerState before = controller.state();
    const Reply reply = controller.execute(command);
    Fuzz::demand(reply.text.size() <= Reply::maxLength, "every answer fits a caller's buffer");
    Fuzz::demand(Limits::isLine(reply.text), "every answer is one line");
    Fuzz::demand(reply.ok == reply.reason.isEmpty(), "a refusal has a reason, and only a refusal");
    Fuzz::demand(controller.state() == before || changes == 1, "a change is announced once");
    Fuzz::demand(reply.ok || controller.state() == before, "a refusal changes nothing");
    Fuzz::demand(controller.state().problem().isEmpty(), "the state stays one of a controller");
    Fuzz::demand(controller.state().freeFraction() >= 0 && controller.state().freeFraction() <= 1,
                 "the store is never more than full");
}

} // namespace

void fuzz(const QByteArray &input)
{
    SimulatedController controller(smallState());
    for (const QByteArray &command : input.split('\n')) {
        execute(controller, command);
    }
}

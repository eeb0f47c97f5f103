#include "tests/sweep/samples.h"

#include "tests/endtoend/frontend.h"

namespace {

constexpr int dataBytes = 120;

} // namespace

ControllerState Samples::small()
{
    ControllerState state = ControllerState::sample();
    QVector<Configuration> few;
    for (const QByteArray &identifier :
         {Sample::standard, Sample::active, Sample::locked, Sample::fair}) {
        few << configurationIn(qAsConst(state), identifier);
        few.last().data.truncate(dataBytes);
    }
    state.configurations = few;
    state.baseData.truncate(dataBytes);
    return state;
}

ControllerState Samples::unlocked()
{
    ControllerState state = small();
    configurationIn(state, Sample::locked).password = SaltedHash();
    return state;
}

ControllerState Samples::lockedActive()
{
    ControllerState state = small();
    state.activeIdentifier = Sample::locked;
    return state;
}

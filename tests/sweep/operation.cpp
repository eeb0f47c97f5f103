#include "tests/sweep/operation.h"

#include "tests/endtoend/frontend.h"

ControllerState smallSample()
{
    constexpr int dataBytes = 120;
    static const ControllerState sample = ControllerState::sample();
    ControllerState state = sample;
    state.configurations.clear();
    for (const QByteArray &identifier :
         {Sample::standard, Sample::active, Sample::locked, Sample::fair}) {
        state.configurations << configurationIn(sample, identifier);
        state.configurations.last().data.truncate(dataBytes);
    }
    state.baseData.truncate(dataBytes);
    return state;
}

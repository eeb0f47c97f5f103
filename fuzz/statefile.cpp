// The file in which the simulated controller keeps its state.

#include "simulator/statefile.h"

#include "fuzz/scratchfile.h"
#include "fuzz/target.h"
#include "simulator/controllerstate.h"

void fuzz(const QByteArray &input)
{
    const QString path = ScratchFile::make("state.json", input);
    const ControllerState former;
    ControllerState state = former;
    QString error;
    if (!StateFile::load(path, &state, &error)) {
        Fuzz::demand(state == former, "a failure changes nothing");
        Fuzz::demand(error.startsWith(path), "a failure has a reason that names the file");
        return;
    }
    Fuzz::demand(state.problem().isEmpty(), "what is loaded is the state of a controller");

    ControllerState reloaded;
    Fuzz::demand(StateFile::save(path, state, &error) && StateFile::load(path, &reloaded, &error),
                 "what is loaded can be saved and loaded again");
    Fuzz::demand(reloaded == state, "what is loaded again is the same");
}

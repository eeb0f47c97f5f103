#include "simulator/arguments.h"
#include "simulator/commandgroups.h"
#include "simulator/commandtable.h"
#include "simulator/controllersession.h"

#include <QVector>

#include <algorithm>
#include <iterator>

namespace {

// The place of the slave among the known ones, or -1.
int indexOf(const ControllerState &state, const QByteArray &name)
{
    const auto found =
        std::find_if(state.slaves.begin(), state.slaves.end(),
                     [&name](const CascadeSlave &slave) { return slave.name == name; });
    return found == state.slaves.end() ? -1 : static_cast<int>(found - state.slaves.begin());
}

QVector<CascadeSlave> connectedSlaves(const ControllerState &state)
{
    QVector<CascadeSlave> connected;
    std::copy_if(state.slaves.begin(), state.slaves.end(), std::back_inserter(connected),
                 [](const CascadeSlave &slave) { return slave.isConnected; });
    return connected;
}

Reply unknownSlave()
{
    return Reply::refused(QStringLiteral("unknown slave"));
}

// The command itself went well, its outcome did not.
Reply structuralError(const QByteArray &text)
{
    return Reply::answer("veltra2 error: " + text);
}

Reply numberOfConnectedSlaves(ControllerSession &session)
{
    return Reply::answer(QByteArray::number(connectedSlaves(session.state()).size()));
}

Reply connectedSlave(ControllerSession &session, const QByteArray &argument)
{
    const QVector<CascadeSlave> connected = connectedSlaves(session.state());
    const int place = Arguments::numbered('d', argument).value_or(0);
    if (place < 1 || place > connected.size()) {
        return unknownSlave();
    }
    return Reply::answer(connected.at(place - 1).name);
}

Reply isConnectedSlaveAvailable(ControllerSession &session, const QByteArray &name)
{
    const int index = indexOf(session.state(), name);
    if (index < 0) {
        return unknownSlave();
    }
    const CascadeSlave &slave = session.state().slaves.at(index);
    return Reply::answer(slave.isConnected && slave.isAvailable ? "yes" : "no");
}

Reply addSlave(ControllerSession &session, const QByteArray &name)
{
    const int index = indexOf(session.state(), name);
    if (index < 0 || !session.state().slaves.at(index).isScanned) {
        return structuralError("the slave has to be scanned first");
    }
    if (session.state().slaves.at(index).isConnected) {
        return Reply::refused(QStringLiteral("the slave is connected already"));
    }
    session.changeState().slaves[index].isConnected = true;
    return Reply::structuralOk();
}

Reply addScannedSlave(ControllerSession &session, const QByteArray &name)
{
    const int index = indexOf(session.state(), name);
    if (index < 0 || !session.state().slaves.at(index).isAvailable) {
        return structuralError("the scan found no such slave");
    }
    if (!session.state().slaves.at(index).isScanned) {
        session.changeState().slaves[index].isScanned = true;
    }
    return Reply::structuralOk();
}

Reply removeSlave(ControllerSession &session, const QByteArray &name)
{
    const int index = indexOf(session.state(), name);
    if (index < 0 || !session.state().slaves.at(index).isConnected) {
        return Reply::refused(QStringLiteral("the slave is not connected"));
    }
    session.changeState().slaves[index].isConnected = false;
    return Reply::structuralOk();
}

} // namespace

void CommandGroups::addCascadeCommands(CommandTable &table)
{
    table.add("cascade number_of_connected_slaves", numberOfConnectedSlaves);
    table.add("cascade connected_slave", connectedSlave);
    table.add("cascade connected_slave_available", isConnectedSlaveAvailable);
    table.add("veltra2 cascade add_slave", addSlave);
    table.add("veltra2 cascade add_scanned_slave", addScannedSlave);
    table.add("veltra2 cascade sub_slave", removeSlave);
}

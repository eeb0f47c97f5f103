#include "simulator/commandgroups.h"
#include "simulator/commandtable.h"
#include "simulator/controllersession.h"
#include "simulator/limits.h"
#include "simulator/refusals.h"

namespace {

using Member = QByteArray ControllerState::*;

CommandTable::Query answering(Member member)
{
    return [member](ControllerSession &session) { return Reply::answer(session.state().*member); };
}

CommandTable::Command setting(Member member)
{
    return [member](ControllerSession &session, const QByteArray &value) {
        if (value.isEmpty() || !Limits::isText(value)) {
            return Refusals::wrongArgument();
        }
        session.changeState().*member = value;
        return Reply::done();
    };
}

void addSetting(CommandTable &table, const char *name, Member member)
{
    table.add(name, answering(member));
    table.add(name, setting(member));
}

Reply modelDescription(ControllerSession &session)
{
    return Reply::answer('"' + session.state().modelDescription + '"');
}

Reply isEmbedded(ControllerSession &session)
{
    return Reply::answer(session.state().isEmbedded ? "yes" : "no");
}

} // namespace

void CommandGroups::addSystemCommands(CommandTable &table)
{
    addSetting(table, "system hostname", &ControllerState::hostName);
    addSetting(table, "system net", &ControllerState::net);
    addSetting(table, "system domainname", &ControllerState::domainName);
    addSetting(table, "system nameserver", &ControllerState::nameServer);
    addSetting(table, "system ntp_server", &ControllerState::ntpServer);
    table.add("system controller_serial", answering(&ControllerState::serial));
    table.add("system model", answering(&ControllerState::model));
    table.add("system model_description", modelDescription);
    table.add("system controller_embedded", isEmbedded);
    table.add("status active", answering(&ControllerState::activity));
}

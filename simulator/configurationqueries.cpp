#include "simulator/arguments.h"
#include "simulator/commandgroups.h"
#include "simulator/commandtable.h"
#include "simulator/controllersession.h"
#include "simulator/refusals.h"

namespace {

QByteArray quotedText(const QByteArray &text)
{
    return '"' + text + '"';
}

Reply numberOfConfigurations(ControllerSession &session)
{
    return Reply::answer(QByteArray::number(session.state().configurations.size()));
}

Reply identifierInSlot(ControllerSession &session, const QByteArray &argument)
{
    const QVector<Configuration> &configurations = session.state().configurations;
    const int slot = Arguments::numbered('t', argument).value_or(0);
    if (slot < 1 || slot > configurations.size()) {
        return Reply::refused(QStringLiteral("no such slot"));
    }
    return Reply::answer(configurations.at(slot - 1).identifier);
}

Reply activeIdentifier(ControllerSession &session)
{
    const Configuration *active = session.active();
    return active == nullptr ? Refusals::noActiveConfiguration()
                             : Reply::answer(active->identifier);
}

Reply ownerOf(ControllerSession &session, const QByteArray &identifier)
{
    const Configuration *configuration = session.find(identifier);
    return configuration == nullptr ? Refusals::unknownConfiguration(identifier)
                                    : Reply::answer(quotedText(configuration->owner));
}

Reply descriptionOf(ControllerSession &session, const QByteArray &identifier)
{
    const Configuration *configuration = session.find(identifier);
    return configuration == nullptr ? Refusals::unknownConfiguration(identifier)
                                    : Reply::answer(quotedText(configuration->description));
}

Reply activeDescription(ControllerSession &session)
{
    const Configuration *active = session.active();
    return active == nullptr ? Refusals::noActiveConfiguration()
                             : Reply::answer(quotedText(active->description));
}

Reply freeSpace(ControllerSession &session)
{
    return Reply::answer(QByteArray::number(session.state().freeFraction(), 'f', 6));
}

} // namespace

void CommandGroups::addConfigurationQueries(CommandTable &table)
{
    table.add("config number_of_configs", numberOfConfigurations);
    table.add("config config", identifierInSlot);
    table.add("config active_config", activeIdentifier);
    table.add("config owner_of_config", ownerOf);
    table.add("config desc_of_config", descriptionOf);
    table.add("config desc", activeDescription);
    table.add("config free_space", freeSpace);
}

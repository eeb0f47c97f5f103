#include "channel/identifiers.h"
#include "simulator/arguments.h"
#include "simulator/commandgroups.h"
#include "simulator/commandtable.h"
#include "simulator/controllersession.h"
#include "simulator/factorydata.h"
#include "simulator/limits.h"
#include "simulator/refusals.h"

namespace {

bool isStandard(const QByteArray &identifier)
{
    return qstricmp(identifier.constData(), Identifiers::standard) == 0;
}

Reply activate(ControllerSession &session, const QByteArray &identifier)
{
    if (session.find(identifier) == nullptr) {
        return Refusals::unknownConfiguration(identifier);
    }
    session.activate(identifier);
    return Reply::done();
}

Reply setText(ControllerSession &session, const QByteArray &argument,
              QByteArray Configuration::*member)
{
    const std::optional<QByteArray> text = Arguments::doubleQuoted(argument);
    if (!text) {
        return Refusals::wrongArgument();
    }
    const Configuration *active = session.active();
    if (active == nullptr) {
        return Refusals::noActiveConfiguration();
    }
    if (!session.isChangeable(*active)) {
        return Refusals::lockedConfiguration(active->identifier);
    }
    session.changeActive().*member = text->left(Limits::textLength);
    return Reply::done();
}

Reply setOwner(ControllerSession &session, const QByteArray &argument)
{
    return setText(session, argument, &Configuration::owner);
}

Reply setDescription(ControllerSession &session, const QByteArray &argument)
{
    return setText(session, argument, &Configuration::description);
}

Reply addAndActivate(ControllerSession &session, const Configuration &configuration)
{
    const QByteArray &identifier = configuration.identifier;
    if (!Limits::isIdentifier(identifier) || isStandard(identifier)
        || identifier == Identifiers::base) {
        return Reply::refused(QStringLiteral("not a name for a new configuration"));
    }
    if (session.find(identifier) != nullptr) {
        return Reply::refused(QStringLiteral("the configuration exists already"));
    }
    if (!session.hasRoomFor(configuration)) {
        return Refusals::fullStore();
    }
    session.store(configuration);
    session.activate(identifier);
    return Reply::structuralOk();
}

Reply createNew(ControllerSession &session, const QByteArray &identifier)
{
    Configuration created;
    created.identifier = identifier;
    created.description = "new configuration";
    created.data = FactoryData::defaults();
    return addAndActivate(session, created);
}

Reply createClone(ControllerSession &session, const QByteArray &argument)
{
    const int blank = argument.indexOf(' ');
    if (blank < 0) {
        return Refusals::wrongArgument();
    }
    const QByteArray sourceIdentifier = argument.mid(blank + 1);
    const Configuration *source = session.find(sourceIdentifier);
    if (source == nullptr) {
        return Refusals::unknownConfiguration(sourceIdentifier);
    }
    Configuration copy = *source;
    copy.identifier = argument.left(blank);
    copy.description = ("copy of " + source->description).left(Limits::textLength);
    copy.password = {};
    return addAndActivate(session, copy);
}

Reply deleteOne(ControllerSession &session, const QByteArray &identifier)
{
    const Configuration *configuration = session.find(identifier);
    if (configuration == nullptr) {
        return Refusals::unknownConfiguration(identifier);
    }
    if (!session.isChangeable(*configuration)) {
        return Refusals::lockedConfiguration(identifier);
    }
    if (!isStandard(identifier)) {
        session.remove(identifier);
        return Reply::structuralOk();
    }
    // A restore deletes what it is about to import. It may go on, but the standard configuration
    // stays until the import replaces it.
    return session.upload().find(identifier) != nullptr
        ? Reply::structuralOk()
        : Reply::refused(QStringLiteral("the standard configuration cannot be deleted"));
}

} // namespace

void CommandGroups::addConfigurationCommands(CommandTable &table)
{
    table.add("config active_config", activate);
    table.add("config owner", setOwner);
    table.add("config desc", setDescription);
    table.add("veltra2 config new_config", createNew);
    table.add("veltra2 config clone_config", createClone);
    table.add("veltra2 config delete_config", deleteOne);
}

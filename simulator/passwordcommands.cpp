#include "simulator/arguments.h"
#include "simulator/commandgroups.h"
#include "simulator/commandtable.h"
#include "simulator/controllersession.h"
#include "simulator/limits.h"
#include "simulator/refusals.h"

namespace {

using Presented = ControllerSession::Presented;

constexpr char noPassword[] = "none"; // without quotes, so that 'none' can be a password
constexpr char withdrawal[] = ".";

Reply yesOrNo(bool yes)
{
    return Reply::answer(yes ? "yes" : "no");
}

Reply hasPassword(ControllerSession &session, const QByteArray &identifier)
{
    const Configuration *configuration = session.find(identifier);
    return configuration == nullptr ? Refusals::unknownConfiguration(identifier)
                                    : yesOrNo(configuration->isLocked());
}

Reply isChangeable(ControllerSession &session)
{
    const Configuration *active = session.active();
    return active == nullptr ? Refusals::noActiveConfiguration()
                             : yesOrNo(session.isChangeable(*active));
}

Reply setPassword(ControllerSession &session, const QByteArray &argument)
{
    const bool isRemoved = argument == noPassword;
    const QByteArray password = Arguments::singleQuoted(argument).value_or(QByteArray());
    if (!isRemoved && (password.isEmpty() || !Limits::isText(password))) {
        return Refusals::wrongArgument();
    }
    const Configuration *active = session.active();
    if (active == nullptr) {
        return Refusals::noActiveConfiguration();
    }
    if (!session.isChangeable(*active)) {
        return Refusals::lockedConfiguration(active->identifier);
    }
    session.changeActive().password = isRemoved ? SaltedHash() : SaltedHash::of(password);
    session.forgetPresented(); // or the new lock would not hold
    return Reply::done();
}

Reply present(ControllerSession &session, bool isRight, Presented presented)
{
    session.setPresented(isRight ? presented : Presented::Nothing);
    return isRight ? Reply::done() : Reply::refused(QStringLiteral("wrong password"));
}

Reply presentPassword(ControllerSession &session, const QByteArray &argument)
{
    const std::optional<QByteArray> password = Arguments::singleQuoted(argument);
    if (!password) {
        return Refusals::wrongArgument();
    }
    const Configuration *active = session.active();
    if (active == nullptr) {
        return Refusals::noActiveConfiguration();
    }
    return present(session, active->password.matches(*password), Presented::Password);
}

Reply presentSuperPassword(ControllerSession &session, const QByteArray &argument)
{
    const std::optional<QByteArray> password = Arguments::singleQuoted(argument);
    if (!password) {
        return Refusals::wrongArgument();
    }
    if (*password != withdrawal) {
        return present(session, session.state().superPassword.matches(*password),
                       Presented::SuperPassword);
    }
    if (session.presented() == Presented::SuperPassword) {
        session.setPresented(Presented::Nothing);
    }
    return Reply::done();
}

} // namespace

void CommandGroups::addPasswordCommands(CommandTable &table)
{
    table.add("config config_has_password", hasPassword);
    table.add("config is_changeable", isChangeable);
    table.add("config new_password", setPassword);
    table.add("config password", presentPassword);
    table.add("config super_password", presentSuperPassword);
}

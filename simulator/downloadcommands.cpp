#include "channel/identifiers.h"
#include "simulator/arguments.h"
#include "simulator/commandgroups.h"
#include "simulator/commandtable.h"
#include "simulator/controllersession.h"
#include "simulator/refusals.h"

namespace {

std::optional<Archive::Item> itemNamed(const ControllerSession &session,
                                       const QByteArray &identifier)
{
    if (identifier == Identifiers::base) {
        return Archive::Item{identifier, {}, "base configuration", session.state().baseData};
    }
    const Configuration *configuration = session.find(identifier);
    if (configuration == nullptr) {
        return {};
    }
    return Archive::Item{identifier, configuration->owner, configuration->description,
                         configuration->data};
}

Reply prepare(ControllerSession &session, const QByteArray &argument)
{
    const std::optional<QByteArray> identifier = Arguments::quotedConfiguration(argument);
    if (!identifier) {
        return Refusals::wrongArgument();
    }
    const std::optional<Archive::Item> item = itemNamed(session, *identifier);
    if (!item) {
        return Refusals::unknownConfiguration(*identifier);
    }
    QString error;
    return session.download().prepare(*item, &error) ? Reply::done() : Reply::refused(error);
}

Reply isAvailable(ControllerSession &session)
{
    return Reply::answer(session.download().isAvailable() ? "yes" : "no");
}

Reply chunk(ControllerSession &session, const QByteArray &argument)
{
    const int number = Arguments::number(argument).value_or(0);
    const std::optional<QByteArray> text = session.download().chunk(number);
    if (!text) {
        return Reply::refused(QStringLiteral("no such chunk"));
    }
    return Reply::answer(' ' + QByteArray::number(session.download().chunkCount()) + " '" + *text
                         + '\'');
}

Reply cancelDownload(ControllerSession &session)
{
    session.download().cancel();
    return Reply::done();
}

} // namespace

void CommandGroups::addDownloadCommands(CommandTable &table)
{
    table.add("system download prepare", prepare);
    table.add("system download available", isAvailable);
    table.add("system download", chunk);
    table.add("system download cancel", cancelDownload);
}

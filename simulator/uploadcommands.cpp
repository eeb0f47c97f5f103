#include "channel/identifiers.h"
#include "simulator/arguments.h"
#include "simulator/commandgroups.h"
#include "simulator/commandtable.h"
#include "simulator/controllersession.h"
#include "simulator/refusals.h"

namespace {

Reply takeChunk(ControllerSession &session, const QByteArray &argument)
{
    const QList<QByteArray> words = argument.split(' ');
    if (words.size() != 3) {
        return Refusals::wrongArgument();
    }
    const std::optional<int> total = Arguments::number(words.at(0));
    const std::optional<int> number = Arguments::number(words.at(1));
    if (!total || !number) {
        return Refusals::wrongArgument();
    }
    QString error;
    return session.upload().take(*total, *number, words.at(2), &error) ? Reply::done()
                                                                       : Reply::refused(error);
}

Reply cancelUpload(ControllerSession &session)
{
    session.upload().cancel();
    return Reply::done();
}

Reply isImportAvailable(ControllerSession &session)
{
    const Upload &upload = session.upload();
    switch (upload.state()) {
    case Upload::State::Incomplete:
        return Reply::refused(QStringLiteral("there is no complete upload"));
    case Upload::State::Unknown:
        return Reply::answer("0 none");
    case Upload::State::Damaged:
        return Reply::refused(QStringLiteral("the upload is damaged: ") + upload.problem());
    case Upload::State::Usable:
        break;
    }
    return Reply::answer(QByteArray::number(upload.items().size()) + " config");
}

Reply importItem(ControllerSession &session, const QByteArray &argument)
{
    const QVector<Archive::Item> &items = session.upload().items();
    const int number = Arguments::numbered('i', argument).value_or(0);
    if (number < 1 || number > items.size()) {
        return Reply::refused(QStringLiteral("no such item"));
    }
    const Archive::Item &item = items.at(number - 1);
    const QByteArray line = item.identifier + " '" + item.owner + "' '" + item.description;
    return Reply::answer(line.left(Reply::maxLength - 1) + '\'');
}

Reply importConfiguration(ControllerSession &session, const Archive::Item &item)
{
    Configuration configuration;
    configuration.identifier = item.identifier;
    configuration.owner = item.owner;
    configuration.description = item.description;
    configuration.data = item.data;
    const Configuration *replaced = session.find(item.identifier);
    if (replaced != nullptr && !session.isChangeable(*replaced)) {
        return Refusals::lockedConfiguration(item.identifier);
    }
    if (!session.hasRoomFor(configuration)) {
        return Refusals::fullStore();
    }
    session.store(configuration);
    return Reply::done();
}

Reply import(ControllerSession &session, const QByteArray &argument)
{
    const std::optional<QByteArray> identifier = Arguments::quotedConfiguration(argument);
    if (!identifier) {
        return Refusals::wrongArgument();
    }
    const Archive::Item *item = session.upload().find(*identifier);
    if (item == nullptr) {
        return Refusals::unknownConfiguration(*identifier);
    }
    if (item->identifier == Identifiers::base) {
        session.changeState().baseData = item->data;
        return Reply::done();
    }
    return importConfiguration(session, *item);
}

} // namespace

void CommandGroups::addUploadCommands(CommandTable &table)
{
    table.add("system upload", takeChunk);
    table.add("system upload cancel", cancelUpload);
    table.add("system import available", isImportAvailable);
    table.add("system import item", importItem);
    table.add("system import", import);
}

// What a controller says about the configurations in an upload: an announcement in the first line
// of the input, items in the others.

#include "channel/importitem.h"

#include "channel/answeredcount.h"
#include "channel/controller.h"
#include "fuzz/answeringchannel.h"
#include "fuzz/target.h"

namespace {

bool operator==(const ImportItem &left, const ImportItem &right)
{
    return left.identifier == right.identifier && left.owner == right.owner
        && left.description == right.description;
}

void checkItem(const ImportItem &item)
{
    const QLatin1String separator(" '");
    Fuzz::demand(!item.identifier.contains(separator), "the identifier ends before the owner");
    Fuzz::demand(!item.owner.contains(QLatin1Char('\'')), "the owner has no quotes");
    Fuzz::demand(!item.description.contains(QLatin1Char('\'')), "the description has no quotes");
    if (item.owner.endsWith(QLatin1Char(' ')) || item.description.endsWith(QLatin1Char(' '))) {
        return; // its closing quote would be taken for an opening one
    }
    const QString line = item.identifier + separator + item.owner + QLatin1Char('\'') + separator
        + item.description + QLatin1Char('\'');
    Fuzz::demand(parseImportItem(line) == item, "an item written anew is read back");
}

} // namespace

void fuzz(const QByteArray &input)
{
    checkItem(parseImportItem(QString::fromLatin1(input)));

    AnsweringChannel channel(input);
    const QVector<QByteArray> former{"former"};
    QVector<QByteArray> lines = former;
    const ImportOffer offer = queryImportItems(Controller(&channel), &lines);
    if (offer != ImportOffer::Read) {
        Fuzz::demand(lines == former, "a refusal changes nothing");
        Fuzz::demand(channel.commandCount() == 1, "nothing is asked after a refusal");
        return;
    }
    Fuzz::demand(lines.size() <= maxAnsweredCount, "an absurd number of items is not believed");
    Fuzz::demand(lines.size() == channel.commandCount() - 1, "every item is asked for");
    for (const QByteArray &line : qAsConst(lines)) {
        checkItem(parseImportItem(QString::fromLatin1(line)));
    }
}

#include "channel/importitem.h"

#include "channel/answeredcount.h"
#include "channel/replybuffer.h"
#include "hostapi/iomanager.h"

#include <QStringList>

#include <optional>

namespace {

/// Reads an announcement such as "3 config"; empty if it announces anything else.
std::optional<int> parseCount(const QString &answer)
{
    const QStringList words = answer.split(QLatin1Char(' '));
    if (words.value(1) != QLatin1String("config")) {
        return std::nullopt;
    }
    const int count = words.first().toInt();
    return isBelievable(count) ? std::optional<int>(count) : std::nullopt;
}

QString withoutSingleQuotes(QString text)
{
    return text.remove(QLatin1Char('\''));
}

} // namespace

ImportItem parseImportItem(const QString &line)
{
    const QStringList pieces = line.split(QLatin1String(" '"));
    return {pieces.first(), withoutSingleQuotes(pieces.value(1)),
            withoutSingleQuotes(pieces.value(2))};
}

ImportOffer queryImportItems(IOManager *channel, ImportItemList *items)
{
    ReplyBuffer reply;
    if (channel->queryString(reply.data(), "system import available") != 0) {
        return ImportOffer::NoAnswer;
    }
    const std::optional<int> count = parseCount(reply.text());
    if (!count) {
        return ImportOffer::NotConfigurations;
    }

    items->clear();
    int unanswered = 0;
    for (int i = 1; i <= *count && unanswered < maxUnanswered; ++i) {
        const int result = channel->queryString(reply.data(), "system import item i%02d", i);
        unanswered = result == 0 ? 0 : unanswered + 1;
        items->append(parseImportItem(reply.text()));
    }
    return ImportOffer::Read;
}

#include "channel/importitem.h"

#include "channel/answeredcount.h"
#include "channel/controller.h"
#include "channel/replybuffer.h"

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
    return believedCount(words.first().toInt());
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

ImportOffer queryImportItems(const Controller &controller, QVector<QByteArray> *lines)
{
    ReplyBuffer reply;
    if (!controller.importOffer(&reply)) {
        return ImportOffer::NoAnswer;
    }
    const std::optional<int> count = parseCount(reply.text());
    if (!count) {
        return ImportOffer::NotConfigurations;
    }

    lines->clear();
    for (int number = 1; number <= *count; ++number) {
        controller.importItem(number, &reply);
        lines->append(reply.bytes());
    }
    return ImportOffer::Read;
}

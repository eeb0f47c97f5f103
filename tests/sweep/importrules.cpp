#include "tests/sweep/importrules.h"

#include "channel/transferencoding.h"
#include "tests/sweep/rehearsal.h"

namespace {

constexpr int chunkBytes = 100;
constexpr int mostItems = 10000; // as with every other count

QByteArray identifierIn(const QByteArray &item)
{
    const int end = item.indexOf(" '");
    return end < 0 ? item : item.left(end);
}

} // namespace

void rehearseUpload(Rehearsal &rehearsal, const QByteArray &data)
{
    const int total = (data.size() + chunkBytes - 1) / chunkBytes;
    for (int number = 1; number <= total; ++number) {
        const QByteArray text =
            TransferEncoding::encode(data.mid((number - 1) * chunkBytes, chunkBytes));
        if (!rehearsal.send("system upload " + QByteArray::number(total) + ' '
                            + QByteArray::number(number) + ' ' + text)) {
            return;
        }
    }
}

Offer rehearseOffer(Rehearsal &rehearsal, QByteArrayList *identifiers)
{
    QByteArray answer;
    if (!rehearsal.ask("system import available", &answer)) {
        return Offer::None;
    }
    const QList<QByteArray> words = answer.split(' ');
    const int count = words.value(0).toInt();
    if (words.value(1) != "config" || count > mostItems) {
        return Offer::Unknown;
    }
    for (int i = 1; i <= count; ++i) {
        // Where it fails, the last answer stands for this one.
        rehearsal.ask("system import item i" + QByteArray::number(i).rightJustified(2, '0'),
                      &answer);
        *identifiers << identifierIn(answer);
    }
    return Offer::Items;
}

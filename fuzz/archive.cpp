// What travels in downloads and uploads: read as it is, and made of the input and read.

#include "simulator/archive.h"

#include "fuzz/target.h"
#include "simulator/limits.h"

#include <QList>
#include <QSet>
#include <QString>

#include <algorithm>

namespace {

bool isValid(const QVector<Archive::Item> &items)
{
    QSet<QByteArray> identifiers;
    return std::all_of(items.begin(), items.end(), [&identifiers](const Archive::Item &item) {
        const bool isNew = !identifiers.contains(item.identifier);
        identifiers.insert(item.identifier);
        return isNew && Limits::isIdentifier(item.identifier) && Limits::isText(item.owner)
            && Limits::isText(item.description);
    });
}

void unpack(const QByteArray &bytes)
{
    QVector<Archive::Item> items{{"former", {}, {}, {}}};
    QString error;
    if (Archive::unpack(bytes, &items, &error)) {
        Fuzz::demand(isValid(items), "every item is a valid one");
        Fuzz::demand(Archive::pack(items) == bytes, "what was unpacked is packed again");
    } else {
        Fuzz::demand(items.size() == 1 && items.first().identifier == "former",
                     "a failure changes nothing");
        Fuzz::demand(!error.isEmpty(), "a failure has a reason");
    }
}

// Items as a fuzzer can make them: it will not find a checksum. One item a line, its fields between
// tabulators.
QVector<Archive::Item> itemsOf(const QByteArray &text)
{
    QVector<Archive::Item> items;
    for (const QByteArray &line : text.split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        items << Archive::Item{fields.value(0).left(0xffff), fields.value(1).left(0xffff),
                               fields.value(2).left(0xffff), fields.value(3)};
    }
    return items;
}

void packAndUnpack(const QVector<Archive::Item> &items)
{
    const QByteArray bytes = Archive::pack(items);
    qint64 size = Archive::headerSize;
    for (const Archive::Item &item : items) {
        size += Archive::sizeOf(item);
    }
    Fuzz::demand(bytes.size() == size, "an archive has the size that was foretold");
    QVector<Archive::Item> unpacked;
    QString error;
    Fuzz::demand(Archive::unpack(bytes, &unpacked, &error) == isValid(items),
                 "an archive is whole when its items are valid");
    Fuzz::demand(error.isEmpty() == isValid(items), "a failure has a reason");
    Fuzz::demand(!error.isEmpty() || Archive::pack(unpacked) == bytes,
                 "what was packed is unpacked again");
}

} // namespace

void fuzz(const QByteArray &input)
{
    unpack(input);
    packAndUnpack(itemsOf(input));
}

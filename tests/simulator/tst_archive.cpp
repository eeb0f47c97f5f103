#include "simulator/archive.h"
#include "simulator/factorydata.h"
#include "tests/support/testmain.h"

#include <QTest>

namespace {

bool equal(const QVector<Archive::Item> &left, const QVector<Archive::Item> &right)
{
    const auto tied = [](const Archive::Item &item) {
        return std::tie(item.identifier, item.owner, item.description, item.data);
    };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](const auto &l, const auto &r) { return tied(l) == tied(r); });
}

QVector<Archive::Item> sampleItems()
{
    return {{"__base", "", "", "base"},
            {"config1", "M\xfcller", "a 'quoted' \"text\"", FactoryData::bytes(150, 1)},
            {"config2", "", "", ""}};
}

// Why the archive is refused. Nothing may come out of it then.
QString refusalOf(const QByteArray &archive)
{
    QVector<Archive::Item> items{{"untouched", "", "", ""}};
    QString error;
    const bool isRefused = !Archive::unpack(archive, &items, &error);
    return isRefused && items.size() == 1 ? error : QString();
}

} // namespace

class TestArchive : public QObject
{
    Q_OBJECT

private slots:
    void whatIsPackedIsUnpackedAgain()
    {
        for (const QVector<Archive::Item> &packed : {sampleItems(), {}}) {
            QVector<Archive::Item> items{{"untouched", "", "", ""}};
            QString error;
            QVERIFY(Archive::unpack(Archive::pack(packed), &items, &error));
            QVERIFY(equal(items, packed));
            QCOMPARE(error, "");
        }
    }

    void itemsTakeTheSizeThatIsSaid()
    {
        qint64 size = Archive::headerSize;
        QCOMPARE(qint64{Archive::pack({}).size()}, size);
        for (const Archive::Item &item : sampleItems()) {
            size += Archive::sizeOf(item);
        }
        QCOMPARE(qint64{Archive::pack(sampleItems()).size()}, size);
    }

    void everyTruncationIsRefused()
    {
        const QByteArray whole = Archive::pack(sampleItems());
        for (int size = 0; size < whole.size(); ++size) {
            QVERIFY2(!refusalOf(whole.left(size)).isEmpty(), qPrintable(QString::number(size)));
        }
    }

    void everyFlippedBitIsRefused()
    {
        const QByteArray whole = Archive::pack(sampleItems());
        for (int bit = 0; bit < whole.size() * 8; ++bit) {
            QByteArray flipped = whole;
            flipped[bit / 8] = static_cast<char>(flipped.at(bit / 8) ^ (1 << (bit % 8)));
            QVERIFY2(!refusalOf(flipped).isEmpty(), qPrintable(QString::number(bit)));
        }
    }

    void anythingBehindTheEndIsRefused()
    {
        QCOMPARE(refusalOf(Archive::pack(sampleItems()) + '\0'), "bytes after the last item");
    }

    void absurdNumbersAreRefused()
    {
        const auto refusalWithOnes = [](int position, int size) {
            return refusalOf(
                Archive::pack(sampleItems()).replace(position, size, QByteArray(size, '\xff')));
        };
        const QString tooEarly = "the archive ends too early";
        QCOMPARE(refusalWithOnes(8, 4).section(": ", -1), tooEarly);     // number of items
        QCOMPARE(refusalWithOnes(12, 2), "item 1: " + tooEarly);         // length of the identifier
        QCOMPARE(refusalWithOnes(12 + 2 + 6, 2), "item 1: " + tooEarly); // of the owner
        QCOMPARE(refusalWithOnes(12 + 2 + 6 + 2 + 2, 4), "item 1: " + tooEarly); // of the data
    }

    void itemsThatNoControllerMakesAreRefused()
    {
        for (const QByteArray &identifier :
             {QByteArray(), QByteArray("a b"), QByteArray("a'b"), QByteArray("a\0b", 3),
              QByteArray("\xe4"), QByteArray(65, 'a')}) {
            QCOMPARE(refusalOf(Archive::pack({{identifier, "a", "a", "data"}})),
                     "item 1: no valid identifier");
        }
        for (const QByteArray &text : {QByteArray(101, 'a'), QByteArray("a\nb")}) {
            const QString invalid = "item 1: no valid owner or description";
            QCOMPARE(refusalOf(Archive::pack({{"a", text, "a", "data"}})), invalid);
            QCOMPARE(refusalOf(Archive::pack({{"a", "a", text, "data"}})), invalid);
        }
    }

    void anIdentifierMayNotComeTwice()
    {
        QCOMPARE(refusalOf(Archive::pack({{"a", "", "", "1"}, {"a", "", "", "2"}})),
                 "item 2: the identifier is there twice");
    }

    void noiseIsNoArchive()
    {
        const QByteArray noise = FactoryData::bytes(1000000, 7);
        QVERIFY(!Archive::isArchive(noise));
        QCOMPARE(refusalOf(noise), "not an archive of configurations");
    }
};

VELTRA4_TEST(TestArchive)
#include "tst_archive.moc"

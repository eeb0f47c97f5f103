#include "simulator/archive.h"
#include "simulator/factorydata.h"
#include "tests/support/testmain.h"

#include <QElapsedTimer>
#include <QtEndian>
#include <QtTest>

namespace {

bool equal(const Archive::Item &left, const Archive::Item &right)
{
    return left.identifier == right.identifier && left.owner == right.owner
        && left.description == right.description && left.data == right.data;
}

bool equal(const QVector<Archive::Item> &left, const QVector<Archive::Item> &right)
{
    return left.size() == right.size()
        && std::equal(left.begin(), left.end(), right.begin(),
                      [](const auto &l, const auto &r) { return equal(l, r); });
}

QVector<Archive::Item> sampleItems()
{
    return {{"__base", "", "", "base"},
            {"config1", "M\xfcller", "a 'quoted' \"text\"", FactoryData::bytes(150, 1)},
            {"config2", "", "", ""}};
}

// An archive of one item whose checksum is right, whatever its fields are.
QByteArray archiveOf(const Archive::Item &item)
{
    return Archive::pack({item});
}

} // namespace

class TestArchive : public QObject
{
    Q_OBJECT

private slots:
    void whatIsPackedIsUnpackedAgain()
    {
        QVector<Archive::Item> items;
        QString error;
        QVERIFY(Archive::unpack(Archive::pack(sampleItems()), &items, &error));
        QVERIFY(equal(items, sampleItems()));
        QCOMPARE(error, QString());
    }

    void anArchiveOfNothingIsWhole()
    {
        QVector<Archive::Item> items = sampleItems();
        QString error;
        QCOMPARE(Archive::pack({}).size(), Archive::headerSize);
        QVERIFY(Archive::unpack(Archive::pack({}), &items, &error));
        QVERIFY(items.isEmpty());
    }

    void itemsTakeTheSizeThatIsSaid()
    {
        qint64 size = Archive::headerSize;
        for (const Archive::Item &item : sampleItems()) {
            size += Archive::sizeOf(item);
        }
        QCOMPARE(qint64{Archive::pack(sampleItems()).size()}, size);
    }

    void everyTruncationIsRefused()
    {
        const QByteArray whole = Archive::pack(sampleItems());
        for (int size = 0; size < whole.size(); ++size) {
            QVector<Archive::Item> items{{"untouched", "", "", ""}};
            QString error;
            QVERIFY(!Archive::unpack(whole.left(size), &items, &error));
            QVERIFY(!error.isEmpty());
            QCOMPARE(items.size(), 1);
        }
    }

    void everyFlippedBitIsRefused()
    {
        const QByteArray whole = Archive::pack(sampleItems());
        for (int bit = 0; bit < whole.size() * 8; ++bit) {
            QByteArray flipped = whole;
            flipped[bit / 8] = static_cast<char>(flipped.at(bit / 8) ^ (1 << (bit % 8)));
            QVector<Archive::Item> items;
            QString error;
            QVERIFY2(!Archive::unpack(flipped, &items, &error), qPrintable(QString::number(bit)));
            QVERIFY(!error.isEmpty());
            QVERIFY(items.isEmpty());
        }
    }

    void anythingBehindTheEndIsRefused()
    {
        QVector<Archive::Item> items;
        QString error;
        QVERIFY(!Archive::unpack(Archive::pack(sampleItems()) + '\0', &items, &error));
        QCOMPARE(error, QString("bytes after the last item"));
    }

    void absurdNumbersAreRefused_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("size");
        QTest::newRow("number of items") << 8 << 4;
        QTest::newRow("length of identifier") << 12 << 2;
        QTest::newRow("length of owner") << 12 + 2 + 6 << 2;
        QTest::newRow("length of data") << 12 + 2 + 6 + 2 + 2 << 4;
    }

    void absurdNumbersAreRefused()
    {
        QFETCH(const int, position);
        QFETCH(const int, size);
        QByteArray archive = Archive::pack(sampleItems());
        archive.replace(position, size, QByteArray(size, '\xff'));
        QVector<Archive::Item> items;
        QString error;
        QVERIFY(!Archive::unpack(archive, &items, &error));
        QVERIFY(error.endsWith("the archive ends too early"));
    }

    void itemsThatNoControllerMakesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("identifier");
        QTest::addColumn<QByteArray>("owner");
        QTest::addColumn<QByteArray>("description");
        QTest::addColumn<QString>("error");
        const QString identifier = "item 1: no valid identifier";
        const QString text = "item 1: no valid owner or description";
        const QByteArray ok = "a";
        QTest::newRow("no identifier") << QByteArray() << ok << ok << identifier;
        QTest::newRow("blank in identifier") << QByteArray("a b") << ok << ok << identifier;
        QTest::newRow("quote in identifier") << QByteArray("a'b") << ok << ok << identifier;
        QTest::newRow("NUL in identifier") << QByteArray("a\0b", 3) << ok << ok << identifier;
        QTest::newRow("umlaut in identifier") << QByteArray("\xe4") << ok << ok << identifier;
        QTest::newRow("long identifier") << QByteArray(65, 'a') << ok << ok << identifier;
        QTest::newRow("long owner") << ok << QByteArray(101, 'a') << ok << text;
        QTest::newRow("line break in owner") << ok << QByteArray("a\nb") << ok << text;
        QTest::newRow("long description") << ok << ok << QByteArray(101, 'a') << text;
    }

    void itemsThatNoControllerMakesAreRefused()
    {
        QFETCH(const QByteArray, identifier);
        QFETCH(const QByteArray, owner);
        QFETCH(const QByteArray, description);
        QFETCH(const QString, error);
        QVector<Archive::Item> items;
        QString found;
        const QByteArray archive = archiveOf({identifier, owner, description, "data"});
        QVERIFY(!Archive::unpack(archive, &items, &found));
        QCOMPARE(found, error);
    }

    void anIdentifierMayNotComeTwice()
    {
        QVector<Archive::Item> items;
        QString error;
        const QByteArray archive = Archive::pack({{"a", "", "", "1"}, {"a", "", "", "2"}});
        QVERIFY(!Archive::unpack(archive, &items, &error));
        QCOMPARE(error, QString("item 2: the identifier is there twice"));
    }

    void noiseIsNoArchive()
    {
        const QByteArray noise = FactoryData::bytes(1000000, 7);
        QVector<Archive::Item> items;
        QString error;
        QVERIFY(!Archive::isArchive(noise));
        QVERIFY(!Archive::unpack(noise, &items, &error));
        QCOMPARE(error, QString("not an archive of configurations"));
    }
};

VELTRA4_TEST(TestArchive)
#include "tst_archive.moc"

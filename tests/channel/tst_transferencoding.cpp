#include "channel/transferencoding.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {

// Straight from the definition, bit by bit: character i carries the stream bits 6i to 6i+5.
QByteArray encodedBitByBit(const QByteArray &bytes)
{
    const QByteArray alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const int bits = bytes.size() * 8;
    QByteArray text;
    for (int first = 0; first < bits; first += 6) {
        int value = 0;
        for (int j = 0; j < 6 && first + j < bits; ++j) {
            const int bit = first + j;
            value |= ((bytes.at(bit / 8) >> (bit % 8)) & 1) << j;
        }
        text += alphabet.at(value);
    }
    return text;
}

QByteArray randomBytes(int size)
{
    static QRandomGenerator generator(20240305);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes) {
        byte = static_cast<char>(generator.bounded(256));
    }
    return bytes;
}

} // namespace

class TestTransferEncoding : public QObject
{
    Q_OBJECT

private slots:
    void encodesAndDecodesTheExamples_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("nothing") << QByteArray() << QByteArray();
        QTest::newRow("01") << QByteArray("\x01") << QByteArray("BA");
        QTest::newRow("41") << QByteArray("\x41") << QByteArray("BB");
        QTest::newRow("ff") << QByteArray("\xff") << QByteArray("/D");
        QTest::newRow("40") << QByteArray("\x40") << QByteArray("AB");
        QTest::newRow("00") << QByteArray(1, '\0') << QByteArray("AA");
    }

    void encodesAndDecodesTheExamples()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QByteArray, text);
        QCOMPARE(TransferEncoding::encode(bytes), text);
        QByteArray decoded;
        QCOMPARE(TransferEncoding::decode(text, &decoded), bytes.size());
        QCOMPARE(decoded, bytes);
    }

    void everyLengthSurvivesTheRoundTrip()
    {
        for (int size = 0; size <= 300; ++size) {
            const QByteArray bytes = randomBytes(size);
            const QByteArray text = TransferEncoding::encode(bytes);
            QCOMPARE(text, encodedBitByBit(bytes));
            QCOMPARE(text.size(), (8 * size + 5) / 6);
            QByteArray decoded;
            QCOMPARE(TransferEncoding::decode(text, &decoded), size);
            QCOMPARE(decoded, bytes);
        }
        QCOMPARE(TransferEncoding::encode(randomBytes(TransferEncoding::chunkSize)).size(), 134);
    }

    void encodingUsesTheTextAgain()
    {
        QByteArray text = "what was there before";
        for (const int size : {100, 7, 0, 250, 99}) {
            const QByteArray bytes = randomBytes(size);
            TransferEncoding::encode(bytes.constData(), bytes.size(), &text);
            QCOMPARE(text, encodedBitByBit(bytes));
        }
    }

    void everyByteSurvivesTheRoundTrip()
    {
        for (int value = 0; value < 256; ++value) {
            const QByteArray bytes(1, static_cast<char>(value));
            QByteArray decoded;
            QCOMPARE(TransferEncoding::decode(TransferEncoding::encode(bytes), &decoded), 1);
            QCOMPARE(decoded, bytes);
        }
    }

    void decodingDropsIncompleteBytes_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("one character gives no byte") << QByteArray("/") << QByteArray();
        QTest::newRow("two give one") << QByteArray("//") << QByteArray("\xff");
        QTest::newRow("three give two") << QByteArray("///") << QByteArray("\xff\xff");
        QTest::newRow("four give three") << QByteArray("////") << QByteArray("\xff\xff\xff");
        QTest::newRow("five still give three") << QByteArray("/////") << QByteArray("\xff\xff\xff");
    }

    void decodingDropsIncompleteBytes()
    {
        QFETCH(const QByteArray, text);
        QFETCH(const QByteArray, bytes);
        QByteArray decoded;
        QCOMPARE(TransferEncoding::decode(text, &decoded), bytes.size());
        QCOMPARE(decoded, bytes);
    }

    void everyCharacterOutsideTheAlphabetIsRefused()
    {
        const QByteArray alphabet =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        for (int value = 0; value < 256; ++value) {
            const char character = static_cast<char>(value);
            for (int place = 0; place < 4; ++place) {
                QByteArray text = "ABCD";
                text[place] = character;
                QByteArray decoded;
                QCOMPARE(TransferEncoding::decode(text, &decoded),
                         alphabet.contains(character) ? 3 : TransferEncoding::invalidCharacter);
            }
        }
        QCOMPARE(TransferEncoding::invalidCharacter, -11);
    }

    void decodingAppends()
    {
        QByteArray bytes = "before ";
        QCOMPARE(TransferEncoding::decode(TransferEncoding::encode("after"), &bytes), 5);
        QCOMPARE(bytes, QByteArray("before after"));
    }

    void aRefusedTextLeavesTheBytesAlone()
    {
        QByteArray bytes = "before";
        QCOMPARE(TransferEncoding::decode("AAAA=", &bytes), TransferEncoding::invalidCharacter);
        QCOMPARE(bytes, QByteArray("before"));
    }
};

VELTRA4_TEST(TestTransferEncoding)
#include "tst_transferencoding.moc"

#include "channel/transferencoding.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

namespace {

const QByteArray alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Straight from the definition, bit by bit: character i carries the stream bits 6i to 6i+5.
QByteArray encodedBitByBit(const QByteArray &bytes)
{
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
    void encodesTheExamples()
    {
        QCOMPARE(TransferEncoding::encode(QByteArray()), QByteArray());
        QCOMPARE(TransferEncoding::encode("\x01"), QByteArray("BA"));
        QCOMPARE(TransferEncoding::encode("\x40"), QByteArray("AB"));
        QCOMPARE(TransferEncoding::encode("\xff"), QByteArray("/D"));
        QCOMPARE(TransferEncoding::encode(QByteArray(1, '\0')), QByteArray("AA"));
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

    void decodingDropsIncompleteBytes()
    {
        const QList<int> wholeBytes{0, 0, 1, 2, 3, 3};
        for (int characters = 0; characters < wholeBytes.size(); ++characters) {
            QByteArray decoded;
            QCOMPARE(TransferEncoding::decode(QByteArray(characters, '/'), &decoded),
                     wholeBytes.at(characters));
            QCOMPARE(decoded, QByteArray(wholeBytes.at(characters), '\xff'));
        }
    }

    void everyCharacterOutsideTheAlphabetIsRefused()
    {
        for (int value = 0; value < 256; ++value) {
            const char character = static_cast<char>(value);
            for (int place = 0; place < 6; ++place) {
                QByteArray text = "ABCDEF";
                text[place] = character;
                QByteArray decoded;
                QCOMPARE(TransferEncoding::decode(text, &decoded),
                         alphabet.contains(character) ? 4 : TransferEncoding::invalidCharacter);
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

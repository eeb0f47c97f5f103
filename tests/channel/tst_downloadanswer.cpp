#include "channel/downloadanswer.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QtTest>

#include <array>
#include <cstdio>

namespace {

using Answer = std::optional<DownloadAnswer>;

// What the C library makes of the line: the reference, but for the empty text.
Answer scanned(const QByteArray &line)
{
    DownloadAnswer answer;
    std::array<char, DownloadAnswer::maxTextSize + 1> text{};
    const int fields = std::sscanf(line.constData(), " %d '%511[^']' ", &answer.total, text.data());
    if (fields != 2) {
        return std::nullopt;
    }
    answer.text = text.data();
    return answer;
}

QString describe(const Answer &answer)
{
    return answer
        ? QStringLiteral("%1 '%2'").arg(answer->total).arg(QString::fromLatin1(answer->text))
        : QStringLiteral("refused");
}

} // namespace

class TestDownloadAnswer : public QObject
{
    Q_OBJECT

private slots:
    void readsWhatTheScanFormatReads_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("expected");
        const QString usual = QStringLiteral("12 'QUJD'");
        const QString refused = QStringLiteral("refused");
        QTest::newRow("the usual line") << QByteArray("12 'QUJD'") << usual;
        QTest::newRow("leading blanks") << QByteArray(" \t\r\n\v\f12 'QUJD'") << usual;
        QTest::newRow("no blank between") << QByteArray("12'QUJD'") << usual;
        QTest::newRow("many blanks between") << QByteArray("12 \n\t 'QUJD'") << usual;
        QTest::newRow("trailing blanks") << QByteArray("12 'QUJD' \r\n") << usual;
        QTest::newRow("anything after the text") << QByteArray("12 'QUJD' and more") << usual;
        QTest::newRow("no closing quote") << QByteArray("12 'QUJD") << usual;
        QTest::newRow("a quote inside") << QByteArray("12 'QUJD'EF'") << usual;
        QTest::newRow("plus sign") << QByteArray("+12 'QUJD'") << usual;
        QTest::newRow("leading zeros") << QByteArray("0012 'QUJD'") << usual;
        QTest::newRow("a NUL ends the line") << QByteArray("12 'QUJD\0EF'", 11) << usual;
        QTest::newRow("minus sign") << QByteArray("-1 'QUJD'") << QStringLiteral("-1 'QUJD'");
        QTest::newRow("zero") << QByteArray("0 'QUJD'") << QStringLiteral("0 'QUJD'");
        QTest::newRow("blanks inside") << QByteArray("1 ' a b '") << QStringLiteral("1 ' a b '");
        QTest::newRow("line break inside") << QByteArray("1 'a\nb'") << QStringLiteral("1 'a\nb'");
        QTest::newRow("bytes above ASCII")
            << QByteArray("1 '\xe4\xff'") << QStringLiteral(u"1 'ä\u00ff'");
        QTest::newRow("nothing") << QByteArray() << refused;
        QTest::newRow("only blanks") << QByteArray("   ") << refused;
        QTest::newRow("only a number") << QByteArray("12") << refused;
        QTest::newRow("no number") << QByteArray("'QUJD'") << refused;
        QTest::newRow("no quotes") << QByteArray("12 QUJD") << refused;
        QTest::newRow("double quotes") << QByteArray("12 \"QUJD\"") << refused;
        QTest::newRow("a word for the number") << QByteArray("x 'QUJD'") << refused;
        QTest::newRow("a fraction") << QByteArray("1.5 'QUJD'") << refused;
        QTest::newRow("hexadecimal") << QByteArray("0x12 'QUJD'") << refused;
        QTest::newRow("blank after the sign") << QByteArray("- 1 'QUJD'") << refused;
        QTest::newRow("two signs") << QByteArray("+-1 'QUJD'") << refused;
        QTest::newRow("only a sign") << QByteArray("-") << refused;
        QTest::newRow("nothing after the opening quote") << QByteArray("12 '") << refused;
        QTest::newRow("a NUL after the opening quote") << QByteArray("12 '\0'", 6) << refused;
    }

    void readsWhatTheScanFormatReads()
    {
        QFETCH(const QByteArray, line);
        QFETCH(const QString, expected);
        QCOMPARE(describe(parseDownloadAnswer(line)), expected);
        QCOMPARE(describe(scanned(line)), expected);
    }

    void readsRandomLinesAsTheScanFormatDoes()
    {
        const QByteArray characters = "  ''+-012x\tA\n";
        QRandomGenerator generator(20240305);
        for (int i = 0; i < 200000; ++i) {
            QByteArray line;
            for (int size = generator.bounded(9); size > 0; --size) {
                line += characters.at(generator.bounded(characters.size()));
            }
            const Answer parsed = parseDownloadAnswer(line);
            if (parsed && parsed->text.isEmpty()) {
                QVERIFY2(line.contains("''"), line.toHex());
            } else {
                QVERIFY2(describe(parsed) == describe(scanned(line)), line.toHex());
            }
        }
    }

    void acceptsAnEmptyText_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("alone") << QByteArray("3 ''");
        QTest::newRow("between blanks") << QByteArray(" 3  '' ");
        QTest::newRow("with something after it") << QByteArray("3 ''QUJD'");
    }

    void acceptsAnEmptyText()
    {
        QFETCH(const QByteArray, line);
        QCOMPARE(describe(parseDownloadAnswer(line)), QStringLiteral("3 ''"));
    }

    void takesTheNearestNumberInRange_data()
    {
        QTest::addColumn<QByteArray>("number");
        QTest::addColumn<int>("expected");
        const int highest = std::numeric_limits<int>::max();
        const int lowest = std::numeric_limits<int>::min();
        QTest::newRow("highest") << QByteArray("2147483647") << highest;
        QTest::newRow("one above") << QByteArray("2147483648") << highest;
        QTest::newRow("lowest") << QByteArray("-2147483648") << lowest;
        QTest::newRow("one below") << QByteArray("-2147483649") << lowest;
        QTest::newRow("a multiple of the range") << QByteArray("4294967297") << highest;
        QTest::newRow("a hundred digits") << QByteArray(100, '9') << highest;
        QTest::newRow("minus a hundred digits") << '-' + QByteArray(100, '9') << lowest;
    }

    void takesTheNearestNumberInRange()
    {
        QFETCH(const QByteArray, number);
        QFETCH(const int, expected);
        const Answer answer = parseDownloadAnswer(number + " 'A'");
        QVERIFY(answer);
        QCOMPARE(answer->total, expected);
    }

    void takesAtMost511Characters_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("taken");
        QTest::newRow("510") << 510 << 510;
        QTest::newRow("511") << 511 << 511;
        QTest::newRow("512") << 512 << 511;
        QTest::newRow("a million") << 1000000 << 511;
    }

    void takesAtMost511Characters()
    {
        QFETCH(const int, size);
        QFETCH(const int, taken);
        const QByteArray line = "1 '" + QByteArray(size, 'A') + "'";
        const Answer answer = parseDownloadAnswer(line);
        QVERIFY(answer);
        QCOMPARE(answer->text, QByteArray(taken, 'A'));
        QCOMPARE(scanned(line)->text, answer->text);
    }
};

VELTRA4_TEST(TestDownloadAnswer)
#include "tst_downloadanswer.moc"

#include "channel/downloadanswer.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <cstdio>
#include <limits>

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

QByteArray describe(const Answer &answer)
{
    return answer ? QByteArray::number(answer->total) + " '" + answer->text + '\'' : "refused";
}

} // namespace

class TestDownloadAnswer : public QObject
{
    Q_OBJECT

private slots:
    void readsWhatTheScanFormatReads_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char *name, const QByteArray &line, const QByteArray &expected) {
            QTest::newRow(name) << line << expected;
        };
        const QByteArray usual = "12 'QUJD'";
        row("the usual line", "12 'QUJD'", usual);
        row("blanks everywhere", " \t\r\n\v\f12 \t\r\n\v\f'QUJD' \r\n", usual);
        row("no blank between", "12'QUJD'", usual);
        row("anything after the text", "12 'QUJD'EF' and more", usual);
        row("no closing quote", "12 'QUJD", usual);
        row("plus sign and zeros", "+0012 'QUJD'", usual);
        row("a NUL ends the line", QByteArray("12 'QUJD\0EF'", 11), usual);
        row("minus sign", "-1 'QUJD'", "-1 'QUJD'");
        row("zero", "0 'QUJD'", "0 'QUJD'");
        row("blanks inside", "1 ' a\nb '", "1 ' a\nb '");
        row("bytes above ASCII", "1 '\xe4\xff'", "1 '\xe4\xff'");
        row("nothing", "", "refused");
        row("only a number", "12", "refused");
        row("no number", "'QUJD'", "refused");
        row("no quotes", "12 QUJD", "refused");
        row("double quotes", "12 \"QUJD\"", "refused");
        row("a fraction", "1.5 'QUJD'", "refused");
        row("hexadecimal", "0x12 'QUJD'", "refused");
        row("characters next to the blanks", "12 \b'QUJD'", "refused");
        row("and on the other side", "12 \x0e'QUJD'", "refused");
        row("nothing after the opening quote", "12 '", "refused");
        row("a NUL after the opening quote", QByteArray("12 '\0'", 6), "refused");
    }

    void readsWhatTheScanFormatReads()
    {
        QFETCH(const QByteArray, line);
        QFETCH(const QByteArray, expected);
        QCOMPARE(describe(parseDownloadAnswer(line)), expected);
        QCOMPARE(describe(scanned(line)), expected);
    }

    void readsRandomLinesAsTheScanFormatDoes()
    {
        const QByteArray characters = "  ''+-012x\tA\n";
        QRandomGenerator generator(20240305);
        for (int i = 0; i < 50000; ++i) {
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

    void acceptsAnEmptyText()
    {
        for (const char *line : {"3 ''", " 3  '' ", "3 ''QUJD'"}) {
            QVERIFY2(describe(parseDownloadAnswer(line)) == "3 ''", line);
        }
    }

    void takesTheNearestNumberInRange()
    {
        const auto total = [](const QByteArray &number) {
            return parseDownloadAnswer(number + " 'A'").value_or(DownloadAnswer()).total;
        };
        const int highest = std::numeric_limits<int>::max();
        const int lowest = std::numeric_limits<int>::min();
        QCOMPARE(total("2147483647"), highest);
        QCOMPARE(total("2147483648"), highest);
        QCOMPARE(total("-2147483648"), lowest);
        QCOMPARE(total("-2147483649"), lowest);
        QCOMPARE(total("4294967297"), highest); // 1 if only the lower half were looked at
        QCOMPARE(total(QByteArray(100, '9')), highest);
        QCOMPARE(total('-' + QByteArray(100, '9')), lowest);
    }

    void takesAtMost511Characters()
    {
        for (const int size : {510, 511, 512, 1000000}) {
            const QByteArray line = "1 '" + QByteArray(size, 'A') + '\'';
            const QByteArray expected = "1 '" + QByteArray(qMin(size, 511), 'A') + '\'';
            QCOMPARE(describe(parseDownloadAnswer(line)), expected);
            QCOMPARE(describe(scanned(line)), expected);
        }
    }
};

VELTRA4_TEST(TestDownloadAnswer)
#include "tst_downloadanswer.moc"

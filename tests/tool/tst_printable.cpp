#include "tests/support/testmain.h"
#include "tool/printable.h"

#include <QtTest>

class TestPrintable : public QObject
{
    Q_OBJECT

private slots:
    void leavesWhatCanBeSeen_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QString();
        QTest::newRow("a sentence") << QStringLiteral("Model 5, \"new\".");
        QTest::newRow("other letters") << QStringLiteral(u"\u00e4\u4e2d");
        QTest::newRow("a letter of two units") << QStringLiteral(u"\U0001d11e");
        QTest::newRow("as long as may be") << QString(400, QLatin1Char('a'));
    }

    void leavesWhatCanBeSeen()
    {
        QFETCH(const QString, text);
        QCOMPARE(printable(text), text);
    }

    void writesTheRestAsNumbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("an end of line") << "a\nb"
                                        << "a\\u{a}b";
        QTest::newRow("an escape sequence") << "\x1b[2J"
                                            << "\\u{1b}[2J";
        QTest::newRow("an escape sequence of one byte")
            << QStringLiteral(u"\u009b2J") << "\\u{9b}2J";
        QTest::newRow("another direction of writing") << QStringLiteral(u"\u202e") << "\\u{202e}";
        QTest::newRow("half a letter") << QString(QChar(0xd834)) << QStringLiteral(u"\ufffd");
    }

    void writesTheRestAsNumbers()
    {
        QFETCH(const QString, text);
        QTEST(printable(text), "expected");
    }

    void takesTheMiddleOutOfALongText()
    {
        const QString text =
            QString(200, QLatin1Char('a')) + QStringLiteral("bc") + QString(200, QLatin1Char('d'));
        QCOMPARE(printable(text),
                 QString(200, QLatin1Char('a')) + " ... " + QString(200, QLatin1Char('d')));
    }
};

VELTRA4_TEST(TestPrintable)
#include "tst_printable.moc"

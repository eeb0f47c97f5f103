#include "tests/support/testmain.h"
#include "tool/printable.h"

#include <QTest>

class TestPrintable : public QObject
{
    Q_OBJECT

private slots:
    void leavesWhatCanBeSeen()
    {
        for (const QString &text :
             {QString(), QString("Model 5, \"new\"."), QString("\u00e4\u4e2d"),
              QString("\U0001d11e"), QString(400, 'a')}) {
            QCOMPARE(printable(text), text);
        }
    }

    void writesTheRestAsNumbers()
    {
        QCOMPARE(printable("a\nb"), "a\\u{a}b");
        QCOMPARE(printable("\x1b[2J"), "\\u{1b}[2J");          // an escape sequence
        QCOMPARE(printable("\u009b2J"), "\\u{9b}2J");          // one of one byte
        QCOMPARE(printable("\u202e"), "\\u{202e}");            // another direction of writing
        QCOMPARE(printable(QChar(0xd834)), QString("\ufffd")); // half a letter
    }

    void takesTheMiddleOutOfALongText()
    {
        QCOMPARE(printable(QString(200, 'a') + "bc" + QString(200, 'd')),
                 QString(200, 'a') + " ... " + QString(200, 'd'));
    }
};

VELTRA4_TEST(TestPrintable)
#include "tst_printable.moc"

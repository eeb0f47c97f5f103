#include "channel/quotes.h"
#include "tests/support/testmain.h"

#include <QTest>

class TestQuotes : public QObject
{
    Q_OBJECT

private slots:
    void everyDoubleQuoteGoes()
    {
        QCOMPARE(withoutDoubleQuotes("\"the \"main\" hall\""), "the main hall");
        QCOMPARE(withoutDoubleQuotes("\"\""), "");
    }

    void allElseStays() { QCOMPARE(withoutDoubleQuotes(" 'main'  hall "), " 'main'  hall "); }
};

VELTRA4_TEST(TestQuotes)
#include "tst_quotes.moc"

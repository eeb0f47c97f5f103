#include "channel/quotes.h"
#include "tests/support/testmain.h"

#include <QtTest>

class TestQuotes : public QObject
{
    Q_OBJECT

private slots:
    void everyDoubleQuoteGoes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("without");
        QTest::newRow("none") << "main hall"
                              << "main hall";
        QTest::newRow("around") << "\"main hall\""
                                << "main hall";
        QTest::newRow("inside") << R"("the "main" hall")"
                                << "the main hall";
        QTest::newRow("nothing else") << "\"\""
                                      << "";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("single quotes stay") << "'hall'"
                                            << "'hall'";
        QTest::newRow("blanks stay") << "\" hall \""
                                     << " hall ";
    }

    void everyDoubleQuoteGoes()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, without);
        QCOMPARE(withoutDoubleQuotes(text), without);
    }
};

VELTRA4_TEST(TestQuotes)
#include "tst_quotes.moc"

#include "backup/markupmeter.h"
#include "tests/support/testmain.h"

#include <QtTest>

/// What the limits are is tested with the documents that DocumentGuard admits; this is about parts.
class TestMarkupMeter : public QObject
{
    Q_OBJECT

private slots:
    void whereThePartsAreCutDoesNotMatter_data();
    void whereThePartsAreCutDoesNotMatter();
    void countsWhatMayBeNames_data();
    void countsWhatMayBeNames();
};

// A document type declaration is refused, but only where it is one: that tells which state the
// meter is in.
void TestMarkupMeter::whereThePartsAreCutDoesNotMatter_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isAdmitted");
    const QString declaration = "<!DOCTYPE a>";
    QTest::newRow("at the beginning") << declaration << false;
    QTest::newRow("after text") << "text ] - ? > text" + declaration << false;
    QTest::newRow("after a comment") << "<!-- - > -> --- -->" + declaration << false;
    QTest::newRow("in a comment") << "<!-- - > -> ->" + declaration + "-->" << true;
    QTest::newRow("after a section") << "<![CDATA[] > ]> ]]]>" + declaration << false;
    QTest::newRow("in a section") << "<![CDATA[] > ]>" + declaration + "]]>" << true;
    QTest::newRow("after an instruction") << "<?a ? > ? ?>" + declaration << false;
    QTest::newRow("in an instruction") << "<?a ? >" + declaration + "?>" << true;
    QTest::newRow("after tags") << "<a b='>' c=\"'>\"></a>" + declaration << false;
    QTest::newRow("in a value") << "<a b='>\">" + declaration + "'/>" << true;
    QTest::newRow("after what is broken") << "<!x>" + declaration << true;
}

void TestMarkupMeter::whereThePartsAreCutDoesNotMatter()
{
    QFETCH(const QString, text);
    QFETCH(const bool, isAdmitted);
    for (int first = 0; first <= text.size(); ++first) {
        for (int second = first; second <= text.size(); ++second) {
            MarkupMeter meter;
            QCOMPARE(meter.feed(text.left(first)) && meter.feed(text.mid(first, second - first))
                         && meter.feed(text.mid(second)),
                     isAdmitted);
        }
    }
}

void TestMarkupMeter::countsWhatMayBeNames_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("markup");
    QTest::addColumn<qint64>("costOfNames");
    QTest::newRow("nothing") << "text" << qint64(0) << qint64(0);
    QTest::newRow("tags") << "<aa>text</aa>" << qint64(9) << qint64(2 * 5);
    QTest::newRow("an attribute") << "<a b='>'/>" << qint64(10) << qint64(2 * 10);
    QTest::newRow("an instruction") << "<?aa b?>" << qint64(8) << qint64(8);
    QTest::newRow("what holds no names")
        << "<a><!-- long long --><![CDATA[long long long]]></a>" << qint64(7) << qint64(4 * 4);
}

void TestMarkupMeter::countsWhatMayBeNames()
{
    QFETCH(const QString, text);
    for (int cut = 0; cut <= text.size(); ++cut) {
        MarkupMeter meter;
        QVERIFY(meter.feed(text.left(cut)) && meter.feed(text.mid(cut)));
        QTEST(meter.markup(), "markup");
        QTEST(meter.costOfNames(), "costOfNames");
    }
}

VELTRA4_TEST_MAIN(TestMarkupMeter)
#include "tst_markupmeter.moc"

#include "tests/support/testmain.h"
#include "tool/documentoutline.h"

#include <QtTest>

class TestDocumentOutline : public QObject
{
    Q_OBJECT

private slots:
    void knowsTheElementAtAPosition_data()
    {
        QTest::addColumn<qint64>("line");
        QTest::addColumn<qint64>("column");
        QTest::addColumn<QString>("path");
        QTest::newRow("the root") << qint64(1) << qint64(3) << "";
        QTest::newRow("a section") << qint64(2) << qint64(3) << "b";
        QTest::newRow("a field") << qint64(3) << qint64(3) << "b/c";
        QTest::newRow("text of a field") << qint64(3) << qint64(5) << "b/c";
        QTest::newRow("the end of a field") << qint64(3) << qint64(8) << "b/c";
        QTest::newRow("behind a field") << qint64(4) << qint64(0) << "b";
        QTest::newRow("a field without content") << qint64(4) << qint64(4) << "b/d";
        QTest::newRow("behind the last section") << qint64(6) << qint64(2) << "";
        QTest::newRow("behind the document") << qint64(9) << qint64(0) << "";
    }

    void knowsTheElementAtAPosition()
    {
        const QByteArray document = "<a>\n"
                                    "<b>\n"
                                    "<c>t</c>\n"
                                    "<d/>\n"
                                    "</b>\n"
                                    "</a>\n";
        QFETCH(const qint64, line);
        QFETCH(const qint64, column);
        QTEST(DocumentOutline::elementAt(document, line, column), "path");
    }

    void looksNoDeeperThanFieldsAre()
    {
        const int many = 100000;
        const QByteArray document = QByteArray("<a>").repeated(many)
            + QByteArray("</a>").repeated(many) + QByteArray("<b>");
        QCOMPARE(DocumentOutline::elementAt(document, 1, 3LL * many), QStringLiteral("a/a/a"));
        QCOMPARE(DocumentOutline::elementAt(document, 1, 7LL * many - 6), QStringLiteral("a"));
        QCOMPARE(DocumentOutline::missingElement(document), QString());
    }

    void cutsLongNames()
    {
        const QByteArray document = "<a><" + QByteArray(1000, 'b') + "/></a>";
        QCOMPARE(DocumentOutline::elementAt(document, 1, 1005), QString(100, QLatin1Char('b')));
    }

    void knowsNothingOfWhatIsNoBackup_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("text") << QByteArray("a");
        QTest::newRow("another document") << QByteArray("<html><body/></html>");
        QTest::newRow("half a document") << QByteArray("<ZOR><ZORFileInfo>");
    }

    void knowsNothingOfWhatIsNoBackup()
    {
        QFETCH(const QByteArray, document);
        QCOMPARE(DocumentOutline::missingElement(document), QString());
    }

    void namesTheFirstElementThatIsMissing_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("path");
        const QByteArray fileInfo = "<ZORFileInfo><filetype/><version/></ZORFileInfo>";
        QTest::newRow("everything") << QByteArray("<ZOR/>") << "ZORFileInfo";
        QTest::newRow("a section") << "<ZOR>" + fileInfo + "</ZOR>"
                                   << "ZORControllerInfo";
        QTest::newRow("a field") << "<ZOR>" + fileInfo + "<ZORControllerInfo/></ZOR>"
                                 << "ZORControllerInfo/name";
        QTest::newRow("a field that is elsewhere")
            << QByteArray("<ZOR><ZORFileInfo/><filetype/></ZOR>") << "ZORFileInfo/filetype";
    }

    void namesTheFirstElementThatIsMissing()
    {
        QFETCH(const QByteArray, document);
        QTEST(DocumentOutline::missingElement(document), "path");
    }
};

VELTRA4_TEST(TestDocumentOutline)
#include "tst_documentoutline.moc"

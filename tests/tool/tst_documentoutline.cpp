#include "tests/support/testmain.h"
#include "tool/documentoutline.h"

#include <QTest>

class TestDocumentOutline : public QObject
{
    Q_OBJECT

private slots:
    void knowsTheElementAtAPosition()
    {
        const auto elementAt = [](qint64 line, qint64 column) {
            return DocumentOutline::elementAt("<a>\n"
                                              "<b>\n"
                                              "<c>t</c>\n"
                                              "<d/>\n"
                                              "</b>\n"
                                              "</a>\n",
                                              line, column);
        };
        QCOMPARE(elementAt(1, 3), "");
        QCOMPARE(elementAt(2, 3), "b");
        QCOMPARE(elementAt(3, 3), "b/c");
        QCOMPARE(elementAt(3, 5), "b/c"); // in its text
        QCOMPARE(elementAt(3, 8), "b/c"); // at its end
        QCOMPARE(elementAt(4, 0), "b");
        QCOMPARE(elementAt(4, 4), "b/d");
        QCOMPARE(elementAt(6, 2), ""); // behind the last section
        QCOMPARE(elementAt(9, 0), ""); // behind the document
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

    void namesTheFirstElementThatIsMissing()
    {
        const QByteArray info = "<ZORFileInfo><filetype/><version/></ZORFileInfo>";
        const auto missingIn = [](const QByteArray &sections) {
            return DocumentOutline::missingElement("<ZOR>" + sections + "</ZOR>");
        };
        QCOMPARE(missingIn(""), "ZORFileInfo");
        QCOMPARE(missingIn(info), "ZORControllerInfo");
        QCOMPARE(missingIn(info + "<ZORControllerInfo/>"), "ZORControllerInfo/name");
        QCOMPARE(missingIn("<ZORFileInfo/><filetype/>"), "ZORFileInfo/filetype"); // is elsewhere
        for (const char *noBackup : {"", "a", "<html><body/></html>", "<ZOR><ZORFileInfo>"}) {
            QCOMPARE(DocumentOutline::missingElement(noBackup), "");
        }
    }
};

VELTRA4_TEST(TestDocumentOutline)
#include "tst_documentoutline.moc"

#include "network/wireprotocol.h"

#include "network/linecutter.h"
#include "tests/support/testmain.h"

#include <QtTest>

namespace {

QByteArray allBytes()
{
    QByteArray bytes;
    for (int code = 0; code < 256; ++code) {
        bytes += static_cast<char>(code);
    }
    return bytes;
}

} // namespace

class TestWireProtocol : public QObject
{
    Q_OBJECT

private slots:
    void linesAreAsDocumented()
    {
        using namespace WireProtocol;
        QCOMPARE(lineOf(Request{7, "config desc \"50%\""}),
                 QByteArray("7 config desc \"50%25\"\n"));
        QCOMPARE(lineOf(Answer{7, Reply::answer("two\nlines")}), QByteArray("7 ok two%0Alines\n"));
        QCOMPARE(lineOf(Answer{7, Reply::done()}), QByteArray("7 ok\n"));
        QCOMPARE(lineOf(Answer{7, Reply::refused("no")}), QByteArray("7 error no\n"));
    }

    void whateverIsSentArrives_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("nothing") << QByteArray("");
        QTest::newRow("plain") << QByteArray("config active_config");
        QTest::newRow("blanks") << QByteArray("  config  desc  ");
        QTest::newRow("looks escaped") << QByteArray("%41%");
        QTest::newRow("everything") << allBytes();
    }

    void whateverIsSentArrives()
    {
        QFETCH(const QByteArray, command);
        QByteArray line = WireProtocol::lineOf(WireProtocol::Request{123456789, command});
        QVERIFY(line.endsWith('\n'));
        line.chop(1);
        QVERIFY(!line.contains('\n'));
        const auto request = WireProtocol::readRequest(line);
        QVERIFY(request);
        QCOMPARE(request->id, 123456789);
        QCOMPARE(request->command, command);
    }

    void answersComeBackAsTheyWere()
    {
        for (const Reply &reply :
             {Reply::done(), Reply{true, " ' 7 '", {}}, Reply{true, allBytes(), {}},
              Reply::refused({}), Reply::refused("\u00fc\n")}) {
            QByteArray line = WireProtocol::lineOf(WireProtocol::Answer{1, reply});
            line.chop(1);
            const auto answer = WireProtocol::readAnswer(line);
            QVERIFY(answer);
            QCOMPARE(answer->id, 1);
            QCOMPARE(answer->reply.ok, reply.ok);
            QCOMPARE(answer->reply.text, reply.text);
            QCOMPARE(answer->reply.reason, reply.reason);
        }
    }

    void longReasonsAreCut()
    {
        const QByteArray line =
            WireProtocol::lineOf(WireProtocol::Answer{1, Reply::refused(QString(10000, '\n'))});
        QVERIFY(line.size() <= WireProtocol::longestLine);
    }

    void whatIsNoRequestIsRefused_data()
    {
        QTest::addColumn<QByteArray>("line");
        for (const char *line :
             {"", " ", "1", "x", "x command", "-1 command", "+1 command", "0 command", " 1 command",
              "1234567890 command", "1\tcommand", "1 com\tmand", "1 com\x7fmand", "1 %", "1 %4",
              "1 %4x", "1 %zz", "1.5 command"}) {
            QTest::newRow(line) << QByteArray(line);
        }
        QTest::newRow("NUL") << QByteArray("1 a\0b", 5);
    }

    void whatIsNoRequestIsRefused()
    {
        QFETCH(const QByteArray, line);
        QVERIFY(!WireProtocol::readRequest(line));
    }

    void whatIsNoAnswerIsRefused_data()
    {
        QTest::addColumn<QByteArray>("line");
        for (const char *line : {"", "1", "1 ", "ok", "1 okay", "1  ok", "1 OK", "x ok", "-1 ok",
                                 "1 errors", "1 ok %", "1 ok a\tb", "1 ok %G0"}) {
            QTest::newRow(line) << QByteArray(line);
        }
    }

    void whatIsNoAnswerIsRefused()
    {
        QFETCH(const QByteArray, line);
        QVERIFY(!WireProtocol::readAnswer(line));
    }

    void aStreamIsCutIntoLines()
    {
        LineCutter lines;
        lines.add("one\n\ntwo\r\nthree");
        QCOMPARE(lines.next().value_or("nothing"), QByteArray("one"));
        QCOMPARE(lines.next().value_or("nothing"), QByteArray(""));
        QCOMPARE(lines.next().value_or("nothing"), QByteArray("two"));
        QVERIFY(!lines.next());
        QVERIFY(lines.hasBegun());
        lines.add("\n");
        QCOMPARE(lines.next().value_or("nothing"), QByteArray("three"));
        QVERIFY(!lines.hasBegun());
    }

    void aLineMayComeInPieces()
    {
        LineCutter lines;
        for (const char character : QByteArray("in pieces")) {
            lines.add(QByteArray(1, character));
            QVERIFY(!lines.next());
        }
        lines.add("\n");
        QCOMPARE(lines.next().value_or("nothing"), QByteArray("in pieces"));
    }

    void theLongestLineIsTaken()
    {
        LineCutter lines;
        lines.add(QByteArray(WireProtocol::longestLine, 'x'));
        QVERIFY(!lines.isOverlong());
        lines.add("\n");
        QVERIFY(!lines.isOverlong());
        QCOMPARE(lines.next().value_or("").size(), WireProtocol::longestLine);
    }

    void aLongerOneIsNot_data()
    {
        QTest::addColumn<QByteArray>("end");
        QTest::newRow("unfinished") << QByteArray();
        QTest::newRow("finished") << QByteArray("\nnext\n");
    }

    void aLongerOneIsNot()
    {
        QFETCH(const QByteArray, end);
        LineCutter lines;
        lines.add("first\n" + QByteArray(WireProtocol::longestLine + 1, 'x') + end);
        QVERIFY(!lines.isOverlong());
        QCOMPARE(lines.next().value_or("nothing"), QByteArray("first"));
        QVERIFY(lines.isOverlong());
        QVERIFY(!lines.next());
    }
};

VELTRA4_TEST(TestWireProtocol)
#include "tst_wireprotocol.moc"

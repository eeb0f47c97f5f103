#include "network/wireprotocol.h"

#include "network/linecutter.h"
#include "tests/support/testmain.h"

#include <QTest>

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
        QCOMPARE(lineOf(Answer{7, Reply::answer("two\nlines")}), "7 ok two%0Alines\n");
        QCOMPARE(lineOf(Answer{7, Reply::done()}), "7 ok\n");
        QCOMPARE(lineOf(Answer{7, Reply::refused("no")}), "7 error no\n");
    }

    void whateverIsSentArrives()
    {
        for (const QByteArray &command :
             QByteArrayList{"", "config active_config", "  config  desc  ", "%41%", allBytes()}) {
            QByteArray line = WireProtocol::lineOf(WireProtocol::Request{123456789, command});
            QVERIFY(line.endsWith('\n'));
            line.chop(1);
            QVERIFY(!line.contains('\n'));
            const auto request = WireProtocol::readRequest(line);
            QVERIFY2(request.has_value(), line.constData());
            QCOMPARE(request->id, 123456789);
            QCOMPARE(request->command, command);
        }
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

    void whatIsNoRequestIsRefused()
    {
        for (const QByteArray &line : QByteArrayList{
                 "", " ", "1", "x", "x command", "-1 command", "+1 command", "0 command",
                 " 1 command", "1234567890 command", "1\tcommand", "1 com\tmand", "1 com\x7fmand",
                 "1 %", "1 %4", "1 %4x", "1 %zz", "1.5 command", QByteArray("1 a\0b", 5)}) {
            QVERIFY2(!WireProtocol::readRequest(line), line.constData());
        }
    }

    void whatIsNoAnswerIsRefused()
    {
        for (const char *line : {"", "1", "1 ", "ok", "1 okay", "1  ok", "1 OK", "x ok", "-1 ok",
                                 "1 errors", "1 ok %", "1 ok a\tb", "1 ok %G0"}) {
            QVERIFY2(!WireProtocol::readAnswer(line), line);
        }
    }

    void aStreamIsCutIntoLines()
    {
        LineCutter lines;
        lines.add("one\n\ntwo\r\nthree");
        QCOMPARE(lines.next().value_or("nothing"), "one");
        QCOMPARE(lines.next().value_or("nothing"), "");
        QCOMPARE(lines.next().value_or("nothing"), "two");
        QVERIFY(!lines.next());
        QVERIFY(lines.hasBegun());
        lines.add("\n");
        QCOMPARE(lines.next().value_or("nothing"), "three");
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
        QCOMPARE(lines.next().value_or("nothing"), "in pieces");
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

    void aLongerOneIsNot()
    {
        for (const char *end : {"", "\nnext\n"}) {
            LineCutter lines;
            lines.add("first\n" + QByteArray(WireProtocol::longestLine + 1, 'x') + end);
            QVERIFY(!lines.isOverlong());
            QCOMPARE(lines.next().value_or("nothing"), "first");
            QVERIFY(lines.isOverlong());
            QVERIFY(!lines.next());
        }
    }
};

VELTRA4_TEST(TestWireProtocol)
#include "tst_wireprotocol.moc"

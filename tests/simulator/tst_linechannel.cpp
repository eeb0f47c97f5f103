#include "channel/replybuffer.h"
#include "tests/simulator/recorder.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QTest>

class TestLineChannel : public QObject
{
    Q_OBJECT

private slots:
    void commandsAreFormattedAndNotCut()
    {
        ScriptedChannel channel;
        const QByteArray text(5000, 'x');
        QCOMPARE(channel.sendCommand("config config t%02d %s 100%%", 7, text.constData()), 0);
        QCOMPARE(channel.trace(), QStringList("sendCommand config config t07 " + text + " 100%"));
    }

    void repliesAreCutToTheBuffer()
    {
        ScriptedChannel channel;
        channel.answer("q", QByteArray(300, 'x'));
        QByteArray buffer(LineChannel::replyCapacity + 1, '#');
        QCOMPARE(channel.queryString(buffer.data(), "q"), 0);
        QCOMPARE(buffer, QByteArray(199, 'x') + '\0' + '#');
    }

    void aFailedQueryLeavesTheBufferAlone()
    {
        ScriptedChannel channel;
        ReplyBuffer reply;
        channel.answer("q", "before");
        QCOMPARE(channel.queryString(reply.data(), "q"), 0);
        channel.fail("q");
        QVERIFY(channel.queryString(reply.data(), "q") != 0);
        QVERIFY(channel.sendCommandReply(reply.data(), "q") != 0);
        QCOMPARE(reply.text(), QString("before"));
    }

    void numbersAndTruthValuesAreConverted()
    {
        constexpr int no = -1; // stands for a failure in these columns
        const QVector<std::tuple<QByteArray, int, double, int>> answers{
            {" 12 ", 12, 12.0, no},
            {"0.25", no, 0.25, no},
            {"1", 1, 1.0, 1},
            {"0", 0, 0.0, 0},
            {"yes", no, no, 1},
            {"No", no, no, 0},
            {"true", no, no, 1},
            {"false", no, no, 0},
            {"word", no, no, no},
            {"", no, no, no},
            {"99999999999", no, 99999999999.0, no}};
        for (const auto &[answer, asInt, asDouble, asBool] : answers) {
            ScriptedChannel channel;
            channel.answer("q", answer);
            int number = no;
            double fraction = no;
            bool truth = asBool != 1;
            QCOMPARE(channel.queryInt(&number, "q") == 0, asInt != no);
            QCOMPARE(channel.queryDouble(&fraction, "q") == 0, asDouble != no);
            QCOMPARE(channel.queryBool(&truth, "q") == 0, asBool != no);
            QCOMPARE(number, asInt);
            QCOMPARE(fraction, asDouble);
            QCOMPARE(truth, asBool == no || asBool == 1);
        }
    }

    void theObserverSeesEveryExchange()
    {
        ScriptedChannel channel;
        Recorder recorder;
        channel.setObserver(&recorder);
        channel.answer("config number_of_configs", "many");
        channel.fail("config desc \"x\"");
        ReplyBuffer reply;
        channel.sendCommandReply(reply.data(), "veltra2 config delete_config %s", "x");
        int number = 0;
        QVERIFY(channel.queryInt(&number, "config number_of_configs") != 0);
        QVERIFY(channel.sendCommand("config desc \"%s\"", "x") != 0);
        channel.setObserver(nullptr);
        channel.sendCommand("x");
        QCOMPARE(recorder.lines.mid(0, 2),
                 QStringList({"sendCommandReply veltra2 config delete_config x -> veltra2 ok",
                              "queryInt config number_of_configs failed -2: the answer is not of "
                              "the kind asked for"}));
        QVERIFY(recorder.lines.at(2).startsWith("sendCommand config desc \"x\" failed "));
        QCOMPARE(recorder.lines.size(), 3);
    }
};

VELTRA4_TEST(TestLineChannel)
#include "tst_linechannel.moc"

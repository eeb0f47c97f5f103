#include "channel/answeredcount.h"
#include "channel/controller.h"
#include "channel/importitem.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <limits>

namespace {

QByteArray itemQuery(int i)
{
    return "system import item i" + QByteArray::number(i).rightJustified(2, '0');
}

using Lines = QVector<QByteArray>;

ImportOffer query(ScriptedChannel *channel, Lines *lines)
{
    return queryImportItems(Controller(channel), lines);
}

} // namespace

class TestImportItem : public QObject
{
    Q_OBJECT

private slots:
    void readsIdentifierOwnerAndDescription_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<QString>("owner");
        QTest::addColumn<QString>("description");
        QTest::newRow("all three") << "config1 'Lab 2' 'north wall'"
                                   << "config1"
                                   << "Lab 2"
                                   << "north wall";
        QTest::newRow("owner empty") << "config1 '' 'north wall'"
                                     << "config1"
                                     << ""
                                     << "north wall";
        QTest::newRow("description empty") << "config1 'Lab' ''"
                                           << "config1"
                                           << "Lab"
                                           << "";
        QTest::newRow("both empty") << "config1 '' ''"
                                    << "config1"
                                    << ""
                                    << "";
        QTest::newRow("no quotes") << "config1"
                                   << "config1"
                                   << ""
                                   << "";
        QTest::newRow("no quotes, blanks") << "config1 Lab 2"
                                           << "config1 Lab 2"
                                           << ""
                                           << "";
        QTest::newRow("no description") << "config1 'Lab'"
                                        << "config1"
                                        << "Lab"
                                        << "";
        QTest::newRow("no closing quote") << "config1 'Lab 'north"
                                          << "config1"
                                          << "Lab"
                                          << "north";
        QTest::newRow("blank and quote in the description") << "config1 'Lab' 'the 'old' hall'"
                                                            << "config1"
                                                            << "Lab"
                                                            << "the";
        QTest::newRow("blank and quote in the owner") << "config1 'the 'old' lab' 'north wall'"
                                                      << "config1"
                                                      << "the"
                                                      << "old lab";
        QTest::newRow("quote without a blank") << "config1 'O'Hara' 'it's here'"
                                               << "config1"
                                               << "OHara"
                                               << "its here";
        QTest::newRow("double quotes stay") << R"(config1 '"Lab"' 'a "b" c')"
                                            << "config1"
                                            << "\"Lab\""
                                            << "a \"b\" c";
        QTest::newRow("more pieces than three") << "a 'b' 'c' 'd'"
                                                << "a"
                                                << "b"
                                                << "c";
        QTest::newRow("blanks are kept") << " config1  ' Lab' ' north'"
                                         << " config1 "
                                         << " Lab"
                                         << " north";
        QTest::newRow("a blank before the closing quote") << "config1 'Lab ' 'north'"
                                                          << "config1"
                                                          << "Lab"
                                                          << "";
        QTest::newRow("nothing") << ""
                                 << ""
                                 << ""
                                 << "";
        QTest::newRow("only a quote") << "'"
                                      << "'"
                                      << ""
                                      << "";
        QTest::newRow("only a blank and a quote") << " '"
                                                  << ""
                                                  << ""
                                                  << "";
    }

    void readsIdentifierOwnerAndDescription()
    {
        QFETCH(const QString, line);
        const ImportItem item = parseImportItem(line);
        QTEST(item.identifier, "identifier");
        QTEST(item.owner, "owner");
        QTEST(item.description, "description");
    }

    void asksForEachAnnouncedItemInOrder()
    {
        ScriptedChannel channel;
        channel.answer("system import available", "3 config");
        channel.answer("system import item i01", "__base 'me' 'base'");
        channel.answer("system import item i02", "config2 'you' 'second'");
        channel.answer("system import item i03", "config3 'M\xfcller' ''");

        Lines lines;
        QCOMPARE(query(&channel, &lines), ImportOffer::Read);

        QCOMPARE(lines,
                 Lines({"__base 'me' 'base'", "config2 'you' 'second'", "config3 'M\xfcller' ''"}));
        QCOMPARE(channel.trace(),
                 QStringList(
                     {"queryString system import available", "queryString system import item i01",
                      "queryString system import item i02", "queryString system import item i03"}));
    }

    void hundredAndMoreItemsAreAskedForWithThreeDigits()
    {
        ScriptedChannel channel;
        channel.answer("system import available", "101 config");
        for (int i = 1; i <= 101; ++i) {
            channel.answer(itemQuery(i), "config" + QByteArray::number(i));
        }
        Lines lines;
        QCOMPARE(query(&channel, &lines), ImportOffer::Read);
        QCOMPARE(lines.size(), 101);
        QCOMPARE(lines.last(), QByteArray("config101"));
        QCOMPARE(channel.trace().last(), QStringLiteral("queryString system import item i101"));
    }

    void anAnnouncementIsTwoWordsSplitAtSingleBlanks_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("count"); // -1: not recognised
        QTest::newRow("one item") << QByteArray("1 config") << 1;
        QTest::newRow("no item") << QByteArray("0 config") << 0;
        QTest::newRow("further words") << QByteArray("1 config and more") << 1;
        QTest::newRow("negative") << QByteArray("-3 config") << 0;
        QTest::newRow("no number") << QByteArray("many config") << 0;
        QTest::newRow("number and letters") << QByteArray("2x config") << 0;
        QTest::newRow("no first word") << QByteArray(" config") << 0;
        QTest::newRow("beyond every integer") << QByteArray("99999999999 config") << 0;
        QTest::newRow("two blanks") << QByteArray("1  config") << -1;
        QTest::newRow("leading blank") << QByteArray(" 1 config") << -1;
        QTest::newRow("upper case") << QByteArray("1 Config") << -1;
        QTest::newRow("plural") << QByteArray("1 configs") << -1;
        QTest::newRow("line end") << QByteArray("1 config\n") << -1;
        QTest::newRow("tab") << QByteArray("1\tconfig") << -1;
        QTest::newRow("other kind") << QByteArray("1 rooms") << -1;
        QTest::newRow("number alone") << QByteArray("1") << -1;
        QTest::newRow("word alone") << QByteArray("config") << -1;
        QTest::newRow("empty") << QByteArray("") << -1;
    }

    void anAnnouncementIsTwoWordsSplitAtSingleBlanks()
    {
        QFETCH(const QByteArray, answer);
        QFETCH(const int, count);
        ScriptedChannel channel;
        channel.answer("system import available", answer);
        channel.answer("system import item i01", "config1 '' ''");

        Lines lines{"old"};
        const ImportOffer offer = query(&channel, &lines);

        QCOMPARE(offer, count < 0 ? ImportOffer::NotConfigurations : ImportOffer::Read);
        QCOMPARE(lines.size(), count < 0 ? 1 : count);
        QCOMPARE(channel.commandCount(), 1 + qMax(count, 0));
    }

    void withoutAnAnnouncementTheItemsAreLeftAlone()
    {
        ScriptedChannel channel;
        channel.fail("system import available");
        Lines lines{"old"};
        QCOMPARE(query(&channel, &lines), ImportOffer::NoAnswer);
        QCOMPARE(lines, Lines({"old"}));
        QCOMPARE(channel.trace(), QStringList("queryString system import available"));
    }

    void anItemThatIsNotDescribedRepeatsTheAnswerBefore()
    {
        ScriptedChannel channel;
        channel.answer("system import available", "3 config");
        channel.answer("system import item i01", "config1 '' ''");
        channel.fail("system import item i02");
        channel.answer("system import item i03", "config3 '' ''");
        Lines lines;
        QCOMPARE(query(&channel, &lines), ImportOffer::Read);
        QCOMPARE(lines, Lines({"config1 '' ''", "config1 '' ''", "config3 '' ''"}));
    }

    void aFirstItemThatIsNotDescribedRepeatsTheAnnouncement()
    {
        ScriptedChannel channel;
        channel.answer("system import available", "1 config");
        channel.fail("system import item i01");
        Lines lines;
        QCOMPARE(query(&channel, &lines), ImportOffer::Read);
        QCOMPARE(lines, Lines({"1 config"}));
    }

    void everyAnnouncedItemIsAskedForHoweverSilentTheController()
    {
        ScriptedChannel channel;
        channel.answer("system import available", "500 config");
        channel.answer("system import item i01", "config1");
        channel.answer(itemQuery(500), "config500");
        Lines lines;
        QCOMPARE(query(&channel, &lines), ImportOffer::Read);
        QCOMPARE(channel.commandCount(), 501);
        QCOMPARE(lines.size(), 500);
        QCOMPARE(lines.count("config1"), 499);
        QCOMPARE(lines.last(), QByteArray("config500"));
    }

    void anAbsurdCountIsNotBelieved_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("just too many") << maxAnsweredCount + 1;
        QTest::newRow("two billion") << 2000000000;
        QTest::newRow("largest integer") << std::numeric_limits<int>::max();
    }

    void anAbsurdCountIsNotBelieved()
    {
        QFETCH(const int, count);
        ScriptedChannel channel;
        channel.answer("system import available", QByteArray::number(count) + " config");
        Lines lines;
        QCOMPARE(query(&channel, &lines), ImportOffer::NotConfigurations);
        QCOMPARE(channel.commandCount(), 1);
    }

    void theLargestBelievableCountIsRead()
    {
        ScriptedChannel channel;
        channel.answer("system import available", QByteArray::number(maxAnsweredCount) + " config");
        for (int i = 1; i <= maxAnsweredCount; ++i) {
            channel.answer(itemQuery(i), "c");
        }
        Lines lines;
        QCOMPARE(query(&channel, &lines), ImportOffer::Read);
        QCOMPARE(lines.size(), maxAnsweredCount);
    }
};

VELTRA4_TEST(TestImportItem)
#include "tst_importitem.moc"

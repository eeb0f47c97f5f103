#include "channel/answeredcount.h"
#include "channel/controller.h"
#include "channel/importitem.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <limits>

namespace {

QByteArray itemQuery(int i)
{
    return "system import item i" + QByteArray::number(i).rightJustified(2, '0');
}

using Lines = QVector<QByteArray>;

// What the controller offers, after something that was there before.
struct Offer
{
    explicit Offer(ScriptedChannel *channel)
        : result(queryImportItems(Controller(channel), &lines))
    {
    }

    Lines lines{"old"};
    ImportOffer result;
};

} // namespace

class TestImportItem : public QObject
{
    Q_OBJECT

private slots:
    void readsIdentifierOwnerAndDescription_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *name, const char *line, const QStringList &expected) {
            QTest::newRow(name) << QString(line) << expected;
        };
        row("all three", "config1 'Lab 2' 'north wall'", {"config1", "Lab 2", "north wall"});
        row("owner empty", "config1 '' 'north wall'", {"config1", "", "north wall"});
        row("description empty", "config1 'Lab' ''", {"config1", "Lab", ""});
        row("no quotes", "config1 Lab 2", {"config1 Lab 2", "", ""});
        row("no description", "config1 'Lab'", {"config1", "Lab", ""});
        row("no closing quote", "config1 'Lab 'north", {"config1", "Lab", "north"});
        row("blank and quote in the description", "config1 'Lab' 'the 'old' hall'",
            {"config1", "Lab", "the"});
        row("blank and quote in the owner", "config1 'the 'old' lab' 'north wall'",
            {"config1", "the", "old lab"});
        row("quote without a blank", "con'fig1 'O'Hara' 'it's here'",
            {"con'fig1", "OHara", "its here"});
        row("double quotes stay", R"(config1 '"Lab"' 'a "b" c')",
            {"config1", "\"Lab\"", "a \"b\" c"});
        row("blanks are kept", " config1  ' Lab' ' north'", {" config1 ", " Lab", " north"});
        row("nothing", "", {"", "", ""});
        row("only a quote", "'", {"'", "", ""});
        row("only a blank and a quote", " '", {"", "", ""});
    }

    void readsIdentifierOwnerAndDescription()
    {
        QFETCH(const QString, line);
        const ImportItem item = parseImportItem(line);
        QTEST(QStringList({item.identifier, item.owner, item.description}), "expected");
    }

    void asksForEachAnnouncedItemInOrder()
    {
        ScriptedChannel channel;
        channel.answer("system import available", "3 config");
        channel.answer("system import item i01", "__base 'me' 'base'");
        channel.answer("system import item i02", "config2 'you' 'second'");
        channel.answer("system import item i03", "config3 'M\xfcller' ''");
        const Offer offer(&channel);
        QCOMPARE(offer.result, ImportOffer::Read);
        QCOMPARE(offer.lines,
                 Lines({"__base 'me' 'base'", "config2 'you' 'second'", "config3 'M\xfcller' ''"}));
        QCOMPARE(channel.trace(),
                 QStringList(
                     {"queryString system import available", "queryString system import item i01",
                      "queryString system import item i02", "queryString system import item i03"}));
    }

    void anAnnouncementIsTwoWordsSplitAtSingleBlanks_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("count"); // -1: not recognised
        const auto row = [](const QByteArray &answer, int count) {
            QTest::newRow(answer.isEmpty() ? "(nothing)" : answer.constData()) << answer << count;
        };
        for (const char *answer : {"1 config", "1 config and more"}) {
            row(answer, 1);
        }
        for (const char *answer : {"0 config", "-3 config", "many config", "2x config", " config",
                                   "99999999999 config"}) {
            row(answer, 0);
        }
        for (const char *answer : {"1  config", " 1 config", "1 Config", "1 configs", "1 config\n",
                                   "1\tconfig", "1", "config", ""}) {
            row(answer, -1);
        }
        for (const int count : {maxAnsweredCount + 1, std::numeric_limits<int>::max()}) {
            row(QByteArray::number(count) + " config", -1);
        }
    }

    void anAnnouncementIsTwoWordsSplitAtSingleBlanks()
    {
        QFETCH(const QByteArray, answer);
        QFETCH(const int, count);
        ScriptedChannel channel;
        channel.answer("system import available", answer);
        channel.answer("system import item i01", "config1 '' ''");
        const Offer offer(&channel);
        QCOMPARE(offer.result, count < 0 ? ImportOffer::NotConfigurations : ImportOffer::Read);
        QCOMPARE(offer.lines, count < 0 ? Lines{"old"} : Lines(count, "config1 '' ''"));
        QCOMPARE(channel.commandCount(), 1 + qMax(count, 0));
    }

    void withoutAnAnnouncementTheItemsAreLeftAlone()
    {
        ScriptedChannel channel;
        channel.fail("system import available");
        const Offer offer(&channel);
        QCOMPARE(offer.result, ImportOffer::NoAnswer);
        QCOMPARE(offer.lines, Lines({"old"}));
        QCOMPARE(channel.trace(), QStringList("queryString system import available"));
    }

    void anItemThatIsNotDescribedRepeatsTheAnswerBefore()
    {
        ScriptedChannel channel;
        channel.answer("system import available", "4 config");
        channel.answer("system import item i02", "config2 '' ''");
        channel.answer("system import item i04", "config4 '' ''");
        const Offer offer(&channel);
        QCOMPARE(offer.result, ImportOffer::Read);
        QCOMPARE(offer.lines,
                 Lines({"4 config", "config2 '' ''", "config2 '' ''", "config4 '' ''"}));
    }

    void theLargestBelievableCountIsRead()
    {
        ScriptedChannel channel;
        channel.answer("system import available", QByteArray::number(maxAnsweredCount) + " config");
        Lines expected;
        for (int i = 1; i <= maxAnsweredCount; ++i) {
            expected << "config" + QByteArray::number(i);
            channel.answer(itemQuery(i), expected.last());
        }
        const Offer offer(&channel);
        QCOMPARE(offer.result, ImportOffer::Read);
        QCOMPARE(offer.lines, expected);
        QCOMPARE(channel.trace().at(100), "queryString system import item i100");
    }
};

VELTRA4_TEST(TestImportItem)
#include "tst_importitem.moc"

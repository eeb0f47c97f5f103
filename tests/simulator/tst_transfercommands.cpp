#include "channel/transferencoding.h"
#include "simulator/archive.h"
#include "simulator/factorydata.h"
#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

#include <QtTest>

namespace {

const QByteArray done;
const QByteArray ok = "veltra2 ok";

void prepareAll(SimulatedController &controller)
{
    QCOMPARE(answer(controller, "system download cancel"), done);
    QCOMPARE(answer(controller, "system download prepare 'config' '__base'"), done);
    for (const Configuration &configuration : controller.state().configurations) {
        QCOMPARE(answer(controller,
                        "system download prepare 'config' '" + configuration.identifier + "'"),
                 done);
    }
}

// Everything that the prepared download gives, decoded.
QByteArray downloaded(SimulatedController &controller)
{
    QByteArray bytes;
    int total = 1;
    for (int n = 1; n <= total; ++n) {
        const QByteArray line = answer(controller, "system download " + QByteArray::number(n));
        const QList<QByteArray> pieces = line.split('\'');
        total = pieces.at(0).trimmed().toInt();
        if (line.size() > 199 || pieces.size() != 3 || !line.startsWith(' ')
            || TransferEncoding::decode(pieces.at(1), &bytes) < 0) {
            return "bad chunk: " + line;
        }
    }
    return bytes;
}

// The results of all chunk commands but the successful ones.
QList<QByteArray> upload(SimulatedController &controller, const QByteArray &bytes)
{
    QList<QByteArray> refusals;
    const QByteArray total = QByteArray::number((bytes.size() + 99) / 100);
    for (int start = 0; start < bytes.size(); start += 100) {
        const QByteArray text =
            answer(controller,
                   "system upload " + total + ' ' + QByteArray::number(start / 100 + 1) + ' '
                       + TransferEncoding::encode(bytes.mid(start, 100)));
        if (text != done) {
            refusals << text;
        }
    }
    return refusals;
}

QByteArray identifiersOffered(SimulatedController &controller)
{
    QByteArray identifiers;
    const int count = answer(controller, "system import available").split(' ').at(0).toInt();
    for (int i = 1; i <= count; ++i) {
        const QByteArray line = answer(
            controller, "system import item i" + QByteArray::number(i).rightJustified(2, '0'));
        identifiers += line.left(line.indexOf(" '")) + ' ';
    }
    return identifiers;
}

void importAll(SimulatedController &controller)
{
    for (const QByteArray &identifier : identifiersOffered(controller).trimmed().split(' ')) {
        const bool isStored = controller.execute("config owner_of_config " + identifier).ok;
        if (isStored) {
            QCOMPARE(answer(controller, "veltra2 config delete_config " + identifier), ok);
        }
        QCOMPARE(answer(controller, "system import 'config' '" + identifier + "'"), done);
    }
}

ControllerState bigState()
{
    ControllerState state = smallState();
    state.storeCapacity = qint64{32} * 1024 * 1024;
    state.configurations.resize(1);
    for (int i = 2; i <= 200; ++i) {
        state.configurations << Configuration{
            "config" + QByteArray::number(i),
            "owner",
            "description " + QByteArray::number(i),
            {},
            FactoryData::bytes(84 * 1024, static_cast<quint32>(i))};
    }
    state.activeIdentifier = "config17";
    return state;
}

} // namespace

class TestTransferCommands : public QObject
{
    Q_OBJECT

private slots:
    void aDownloadIsTheArchiveOfWhatWasPrepared()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "system download prepare 'config' 'second'"), done);
        QCOMPARE(answer(controller, "system download prepare 'config' '__base'"), done);
        QCOMPARE(answer(controller, "system download available"), QByteArray("yes"));
        const QByteArray expected =
            Archive::pack({{"second", "Bob", "Second one", QByteArray(1000, '2')},
                           {"__base", "", "base configuration", "base data"}});
        QCOMPARE(downloaded(controller), expected);
        QVERIFY(controller.state() == smallState());
    }

    void aDownloadKeepsWhatWasPreparedAsItWas()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "system download prepare 'config' 'first'"), done);
        const QByteArray before = downloaded(controller);
        QCOMPARE(answer(controller, "veltra2 config delete_config first"), ok);
        QCOMPARE(downloaded(controller), before);
        QCOMPARE(answer(controller, "system download prepare 'config' 'second'"), done);
        QVERIFY(downloaded(controller).size() > before.size());
    }

    void chunksMayBeAskedForInAnyOrder()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "system download prepare 'config' '__base'"), done);
        const QByteArray archive =
            Archive::pack({{"__base", "", "base configuration", "base data"}});
        QCOMPARE(archive.size(), 12 + 42 + 6 + 18 + 9);
        QCOMPARE(answer(controller, "system download 1"),
                 " 1 '" + TransferEncoding::encode(archive) + "'");
        for (const QByteArray number : {"2", "0", "-1", "x", "", "1 ", "99999999999999999999"}) {
            QCOMPARE(answer(controller, "system download " + number),
                     QByteArray("refused: no such chunk"));
        }
    }

    void nothingIsThereBeforeItIsPrepared()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "system download available"), QByteArray("no"));
        QCOMPARE(answer(controller, "system download 1"), QByteArray("refused: no such chunk"));
        QCOMPARE(answer(controller, "system download prepare 'config' 'first'"), done);
        QCOMPARE(answer(controller, "system download cancel"), done);
        QCOMPARE(answer(controller, "system download available"), QByteArray("no"));
        QCOMPARE(answer(controller, "system download 1"), QByteArray("refused: no such chunk"));
        QCOMPARE(answer(controller, "system download cancel"), done);
    }

    void whatCannotBePreparedIsRefused_data()
    {
        QTest::addColumn<QByteArray>("argument");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray wrong = "refused: wrong argument";
        QTest::newRow("unknown") << QByteArray("'config' 'nobody'")
                                 << QByteArray("refused: unknown configuration 'nobody'");
        QTest::newRow("twice") << QByteArray("'config' 'first'")
                               << QByteArray("refused: prepared already");
        QTest::newRow("other kind") << QByteArray("'image' 'first'") << wrong;
        QTest::newRow("no quotes") << QByteArray("'config' first") << wrong;
        QTest::newRow("no identifier") << QByteArray("'config'") << wrong;
    }

    void whatCannotBePreparedIsRefused()
    {
        QFETCH(const QByteArray, argument);
        QFETCH(const QByteArray, expected);
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "system download prepare 'config' 'first'"), done);
        QCOMPARE(answer(controller, "system download prepare " + argument), expected);
    }

    void tooMuchIsNotPrepared()
    {
        ControllerState state = smallState();
        state.configurations[1].data = QByteArray(Archive::maxSize - 2000, 'x');
        SimulatedController controller(state);
        QCOMPARE(answer(controller, "system download prepare 'config' 'first'"), done);
        QCOMPARE(answer(controller, "system download prepare 'config' 'second'"), done);
        QCOMPARE(answer(controller, "system download prepare 'config' 'standard'"),
                 QByteArray("refused: too much for one download"));
    }

    void anUploadOffersItsItems()
    {
        SimulatedController controller(smallState());
        const QByteArray archive =
            Archive::pack({{"__base", "", "base", "1"}, {"new", "It's Ann", "a \"desc\"", "2"}});
        QCOMPARE(upload(controller, archive), QList<QByteArray>());
        QCOMPARE(answer(controller, "system import available"), QByteArray("2 config"));
        QCOMPARE(answer(controller, "system import item i01"), QByteArray("__base '' 'base'"));
        QCOMPARE(answer(controller, "system import item i02"),
                 QByteArray("new 'It's Ann' 'a \"desc\"'"));
        for (const QByteArray number : {"i00", "i03", "i1", "01", "i001", ""}) {
            QCOMPARE(answer(controller, "system import item " + number),
                     QByteArray("refused: no such item"));
        }
    }

    void longItemLinesAreCut()
    {
        SimulatedController controller(smallState());
        const QByteArray identifier(64, 'i');
        upload(controller,
               Archive::pack({{identifier, QByteArray(100, 'o'), QByteArray(100, 'd'), ""}}));
        QCOMPARE(answer(controller, "system import item i01"),
                 identifier + " '" + QByteArray(100, 'o') + "' '" + QByteArray(29, 'd') + "'");
    }

    void itemsBeyondNinetyNineAreNamed()
    {
        SimulatedController controller(smallState());
        QVector<Archive::Item> items;
        for (int i = 1; i <= 120; ++i) {
            items << Archive::Item{"c" + QByteArray::number(i), "o", "d", ""};
        }
        QCOMPARE(upload(controller, Archive::pack(items)), QList<QByteArray>());
        QCOMPARE(answer(controller, "system import available"), QByteArray("120 config"));
        QCOMPARE(answer(controller, "system import item i99"), QByteArray("c99 'o' 'd'"));
        QCOMPARE(answer(controller, "system import item i120"), QByteArray("c120 'o' 'd'"));
    }

    void chunksOutOfOrderAreRefused_data()
    {
        QTest::addColumn<QByteArray>("arguments");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray full = QByteArray(134, 'A');
        const QByteArray wrong = "refused: wrong argument";
        const QByteArray noText = "refused: not the text of a chunk";
        QTest::newRow("next") << "3 2 " + full << done;
        QTest::newRow("again") << "3 1 " + full
                               << QByteArray("refused: chunk 1 is not the next one");
        QTest::newRow("skipped") << "3 3 " + full
                                 << QByteArray("refused: chunk 3 is not the next one");
        QTest::newRow("beyond") << "3 4 " + full
                                << QByteArray("refused: chunk 4 is not the next one");
        QTest::newRow("none") << "3 0 " + full
                              << QByteArray("refused: chunk 0 is not the next one");
        QTest::newRow("other total")
            << "4 2 " + full << QByteArray("refused: 3 chunks were announced before");
        QTest::newRow("no total") << "0 2 " + full
                                  << QByteArray("refused: impossible number of chunks");
        QTest::newRow("absurd total")
            << "671090 2 " + full << QByteArray("refused: impossible number of chunks");
        QTest::newRow("negative") << "3 -2 " + full << wrong;
        QTest::newRow("huge") << "99999999999 2 " + full << wrong;
        QTest::newRow("no text") << QByteArray("3 2") << wrong;
        QTest::newRow("empty text") << QByteArray("3 2 ") << noText;
        QTest::newRow("short") << "3 2 " + QByteArray(133, 'A') << noText;
        QTest::newRow("long") << "3 2 " + QByteArray(136, 'A') << noText;
        QTest::newRow("padded") << "3 2 " + QByteArray(133, 'A') + '=' << noText;
        QTest::newRow("two texts") << "3 2 " + full + " A" << wrong;
    }

    void chunksOutOfOrderAreRefused()
    {
        QFETCH(const QByteArray, arguments);
        QFETCH(const QByteArray, expected);
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "system upload 3 1 " + QByteArray(134, 'A')), done);
        QCOMPARE(answer(controller, "system upload " + arguments), expected);
    }

    void nothingFollowsTheLastChunk()
    {
        SimulatedController controller(smallState());
        upload(controller, Archive::pack({{"new", "", "", ""}}));
        QCOMPARE(answer(controller, "system upload 1 2 AAAA"),
                 QByteArray("refused: chunk 2 is not the next one"));
        QCOMPARE(answer(controller, "system import available"), QByteArray("1 config"));
    }

    void aMissingChunkLeavesTheUploadIncomplete()
    {
        SimulatedController controller(smallState());
        const QByteArray incomplete = "refused: there is no complete upload";
        QCOMPARE(answer(controller, "system import available"), incomplete);
        QCOMPARE(answer(controller, "system upload 3 1 " + QByteArray(134, 'A')), done);
        QVERIFY(!controller.execute("system upload 3 3 AAAA").ok);
        QCOMPARE(answer(controller, "system import available"), incomplete);
        QCOMPARE(answer(controller, "system import item i01"), QByteArray("refused: no such item"));
    }

    void noiseIsNotRecognised()
    {
        SimulatedController controller(smallState());
        QCOMPARE(upload(controller, FactoryData::bytes(5000, 9)), QList<QByteArray>());
        QCOMPARE(answer(controller, "system import available"), QByteArray("0 none"));
        QCOMPARE(upload(controller, Archive::pack({})).size(), 1); // not before a cancel
        QCOMPARE(answer(controller, "system upload cancel"), done);
        QCOMPARE(upload(controller, Archive::pack({})), QList<QByteArray>());
        QCOMPARE(answer(controller, "system import available"), QByteArray("0 config"));
        QVERIFY(controller.state() == smallState());
    }

    void aDamagedArchiveIsRefused()
    {
        const QByteArray archive = Archive::pack({{"new", "", "", QByteArray(250, 'x')}});
        SimulatedController controller(smallState());
        upload(controller, archive.left(archive.size() - 1));
        QCOMPARE(answer(controller, "system import available"),
                 QByteArray("refused: the upload is damaged: item 1: the archive ends too early"));
        answer(controller, "system upload cancel");
        QByteArray flipped = archive;
        flipped[150] = 'y';
        upload(controller, flipped);
        QCOMPARE(answer(controller, "system import available"),
                 QByteArray("refused: the upload is damaged: item 1: the checksum does not fit"));
        QVERIFY(!controller.execute("system import 'config' 'new'").ok);
        QVERIFY(controller.state() == smallState());
    }

    void cancelForgetsTheUpload()
    {
        SimulatedController controller(smallState());
        upload(controller, Archive::pack({{"new", "", "", ""}}));
        QCOMPARE(answer(controller, "system upload cancel"), done);
        QCOMPARE(answer(controller, "system import available"),
                 QByteArray("refused: there is no complete upload"));
        QCOMPARE(answer(controller, "system import 'config' 'new'"),
                 QByteArray("refused: unknown configuration 'new'"));
    }

    void importAddsAndReplaces()
    {
        SimulatedController controller(smallState());
        upload(controller,
               Archive::pack({{"new", "N", "new one", "n"},
                              {"first", "F", "first again", "f"},
                              {"__base", "", "", "other base"}}));
        for (const QByteArray identifier : {"new", "first", "__base"}) {
            QCOMPARE(answer(controller, "system import 'config' '" + identifier + "'"), done);
        }
        ControllerState expected = smallState();
        expected.configurations[1] = {"first", "F", "first again", {}, "f"};
        expected.configurations << Configuration{"new", "N", "new one", {}, "n"};
        expected.baseData = "other base";
        QVERIFY(controller.state() == expected);
    }

    void importLeavesLockedConfigurationsAlone()
    {
        ControllerState state = smallState();
        state.configurations[2].password = SaltedHash::of("lock");
        SimulatedController controller(state);
        upload(controller, Archive::pack({{"second", "", "", ""}}));
        QCOMPARE(answer(controller, "system import 'config' 'second'"),
                 QByteArray("refused: configuration 'second' is locked"));
        QVERIFY(controller.state() == state);
    }

    void importNeedsRoom()
    {
        ControllerState state = smallState();
        state.storeCapacity = state.usedBytes();
        SimulatedController controller(state);
        upload(controller,
               Archive::pack({{"new", "", "", ""},
                              {"first", "", "", QByteArray(1001, 'x')},
                              {"second", "Bob", "Second one", QByteArray(1000, 'x')}}));
        const QByteArray full = "refused: the configuration store is full";
        QCOMPARE(answer(controller, "system import 'config' 'new'"), full);
        QCOMPARE(answer(controller, "system import 'config' 'first'"), full);
        QVERIFY(controller.state() == state);
        QCOMPARE(answer(controller, "system import 'config' 'second'"), done);
        state.configurations[2].data = QByteArray(1000, 'x');
        QVERIFY(controller.state() == state);
    }

    void whatIsNotOfferedIsNotImported_data()
    {
        QTest::addColumn<QByteArray>("argument");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray wrong = "refused: wrong argument";
        QTest::newRow("unknown") << QByteArray("'config' 'first'")
                                 << QByteArray("refused: unknown configuration 'first'");
        QTest::newRow("other kind") << QByteArray("'image' 'new'") << wrong;
        QTest::newRow("no quotes") << QByteArray("config new") << wrong;
        QTest::newRow("something behind") << QByteArray("'config' 'new' x") << wrong;
    }

    void whatIsNotOfferedIsNotImported()
    {
        QFETCH(const QByteArray, argument);
        QFETCH(const QByteArray, expected);
        SimulatedController controller(smallState());
        upload(controller, Archive::pack({{"new", "", "", ""}}));
        QCOMPARE(answer(controller, "system import " + argument), expected);
        QVERIFY(controller.state() == smallState());
    }

    void theStandardConfigurationIsReplacedByAnImport()
    {
        SimulatedController controller(smallState());
        upload(controller, Archive::pack({{"standard", "S", "other standard", "s"}}));
        QCOMPARE(answer(controller, "veltra2 config delete_config standard"), ok);
        QVERIFY(controller.state() == smallState());
        QCOMPARE(answer(controller, "system import 'config' 'standard'"), done);
        const Configuration expected{"standard", "S", "other standard", {}, "s"};
        QVERIFY(controller.state().configurations.at(0) == expected);
    }

    void everythingComesBackAfterAWipe()
    {
        ControllerState state = ControllerState::sample();
        for (Configuration &configuration : state.configurations) {
            configuration.password = {};
        }
        SimulatedController controller(state);
        prepareAll(controller);
        const QByteArray archive = downloaded(controller);

        for (const Configuration &configuration : state.configurations) {
            controller.execute("veltra2 config delete_config " + configuration.identifier);
        }
        QCOMPARE(controller.state().configurations.size(), 1);
        answer(controller, "config desc \"spoiled\"");
        QVERIFY(controller.state() != state);

        answer(controller, "system upload cancel");
        QCOMPARE(upload(controller, archive), QList<QByteArray>());
        importAll(controller);
        answer(controller, "config active_config " + state.activeIdentifier);
        QVERIFY(controller.state() == state);
    }

    void twoHundredConfigurationsOfSixteenMebibytesComeBack()
    {
        const ControllerState state = bigState();
        QVERIFY(state.usedBytes() > qint64{16} * 1024 * 1024);
        SimulatedController controller(state);
        prepareAll(controller);
        const QByteArray archive = downloaded(controller);
        QVERIFY(!archive.startsWith("bad chunk"));
        QCOMPARE(upload(controller, archive), QList<QByteArray>());
        importAll(controller); // deletes each configuration and stores it anew
        answer(controller, "config active_config " + state.activeIdentifier);
        QVERIFY(controller.state() == state);
    }
};

VELTRA4_TEST(TestTransferCommands)
#include "tst_transfercommands.moc"

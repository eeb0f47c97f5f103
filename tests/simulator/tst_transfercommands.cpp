#include "channel/transferencoding.h"
#include "simulator/archive.h"
#include "simulator/factorydata.h"
#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

namespace {

const QByteArray noChunk = " -> refused: no such chunk";

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

// The commands that upload the bytes.
QByteArrayList uploadOf(const QByteArray &bytes)
{
    QByteArrayList commands;
    const QByteArray total = QByteArray::number((bytes.size() + 99) / 100);
    for (int start = 0; start < bytes.size(); start += 100) {
        commands << "system upload " + total + ' ' + QByteArray::number(start / 100 + 1) + ' '
                + TransferEncoding::encode(bytes.mid(start, 100));
    }
    return commands;
}

QByteArrayList uploadOf(const QVector<Archive::Item> &items)
{
    return uploadOf(Archive::pack(items));
}

} // namespace

class TestTransferCommands : public QObject
{
    Q_OBJECT

private slots:
    void aDownloadIsTheArchiveOfWhatWasPrepared()
    {
        SimulatedController controller(smallState());
        expectAnswers(controller,
                      {"system download prepare 'config' 'second'",
                       "system download prepare 'config' '__base'",
                       "system download available -> yes"});
        const QByteArray expected =
            Archive::pack({{"second", "Bob", "Second one", QByteArray(1000, '2')},
                           {"__base", "", "base configuration", "base data"}});
        QCOMPARE(downloaded(controller), expected);
        QVERIFY(controller.state() == smallState());
    }

    void aDownloadKeepsWhatWasPreparedAsItWas()
    {
        SimulatedController controller(smallState());
        expectAnswers(controller, {"system download prepare 'config' 'first'"});
        const QByteArray before = downloaded(controller);
        expectAnswers(controller, {"veltra2 config delete_config first"});
        QCOMPARE(downloaded(controller), before);
        expectAnswers(controller, {"system download prepare 'config' 'second'"});
        QVERIFY(downloaded(controller).size() > before.size());
    }

    void chunksMayBeAskedForInAnyOrder()
    {
        SimulatedController controller(smallState());
        const QByteArray archive =
            Archive::pack({{"__base", "", "base configuration", "base data"}});
        QCOMPARE(archive.size(), 12 + 42 + 6 + 18 + 9);
        expectAnswers(controller,
                      {"system download prepare 'config' '__base'",
                       "system download 1 ->  1 '" + TransferEncoding::encode(archive) + "'"});
        for (const QByteArray number : {"2", "0", "-1", "x", "", "1 ", "99999999999999999999"}) {
            expectAnswers(controller, {"system download " + number + noChunk});
        }
    }

    void nothingIsThereBeforeItIsPrepared()
    {
        expectAnswers(smallState(),
                      {"system download available -> no", "system download 1" + noChunk,
                       "system download prepare 'config' 'first'", "system download cancel",
                       "system download available -> no", "system download 1" + noChunk,
                       "system download cancel"});
    }

    void whatCannotBePreparedIsRefused()
    {
        const QByteArray prepare = "system download prepare ";
        expectRefusals(smallState(), "unknown configuration 'nobody'",
                       {prepare + "'config' 'nobody'"});
        expectRefusals(
            smallState(), "wrong argument",
            {prepare + "'image' 'first'", prepare + "'config' first", prepare + "'config'"});
        expectAnswers(smallState(),
                      {prepare + "'config' 'first'",
                       prepare + "'config' 'first' -> refused: prepared already"});
    }

    void tooMuchIsNotPrepared()
    {
        ControllerState state = smallState();
        state.configurations[1].data = QByteArray(Archive::maxSize - 2000, 'x');
        expectAnswers(
            state,
            {"system download prepare 'config' 'first'",
             "system download prepare 'config' 'second'",
             "system download prepare 'config' 'standard' -> refused: too much for one download"});
    }

    void anUploadOffersItsItems()
    {
        SimulatedController controller(smallState());
        expectAnswers(
            controller,
            uploadOf({{"__base", "", "base", "1"}, {"new", "It's Ann", "a \"desc\"", "2"}})
                << "system import available -> 2 config"
                << "system import item i01 -> __base '' 'base'"
                << "system import item i02 -> new 'It's Ann' 'a \"desc\"'");
        for (const QByteArray number : {"i00", "i03", "i1", "01", "i001", ""}) {
            expectAnswers(controller,
                          {"system import item " + number + " -> refused: no such item"});
        }
    }

    void longItemLinesAreCut()
    {
        const QByteArray identifier(64, 'i');
        const QByteArray owner(100, 'o');
        expectAnswers(smallState(),
                      uploadOf({{identifier, owner, QByteArray(100, 'd'), ""}})
                          << "system import item i01 -> " + identifier + " '" + owner + "' '"
                              + QByteArray(29, 'd') + "'");
    }

    void itemsBeyondNinetyNineAreNamed()
    {
        QVector<Archive::Item> items;
        for (int i = 1; i <= 120; ++i) {
            items << Archive::Item{"c" + QByteArray::number(i), "o", "d", ""};
        }
        expectAnswers(smallState(),
                      uploadOf(items) << "system import available -> 120 config"
                                      << "system import item i99 -> c99 'o' 'd'"
                                      << "system import item i120 -> c120 'o' 'd'");
    }

    void chunksAreTakenInOrder()
    {
        const QByteArray full(134, 'A');
        const auto afterTheFirst = [&](const QByteArray &line) {
            expectAnswers(smallState(), {"system upload 3 1 " + full, "system upload " + line});
        };
        afterTheFirst("3 2 " + full);
        for (const QByteArray number : {"0", "1", "3", "4"}) {
            afterTheFirst("3 " + number + ' ' + full + " -> refused: chunk " + number
                          + " is not the next one");
        }
        afterTheFirst("4 2 " + full + " -> refused: 3 chunks were announced before");
        for (const QByteArray total : {"0", "671090"}) {
            afterTheFirst(total + " 2 " + full + " -> refused: impossible number of chunks");
        }
        for (const QByteArray &wrong :
             {"3 -2 " + full, "99999999999 2 " + full, QByteArray("3 2"), "3 2 " + full + " A"}) {
            afterTheFirst(wrong + " -> refused: wrong argument");
        }
        for (const QByteArray &text :
             {QByteArray(), full.chopped(1), full + "AA", full.chopped(1) + '='}) {
            afterTheFirst("3 2 " + text + " -> refused: not the text of a chunk");
        }
    }

    void nothingFollowsTheLastChunk()
    {
        expectAnswers(smallState(),
                      uploadOf({{"new", "", "", ""}})
                          << "system upload 1 2 AAAA -> refused: chunk 2 is not the next one"
                          << "system import available -> 1 config");
    }

    void aMissingChunkLeavesTheUploadIncomplete()
    {
        const QByteArray incomplete =
            "system import available -> refused: there is no complete upload";
        expectAnswers(smallState(),
                      {incomplete, "system upload 3 1 " + QByteArray(134, 'A'),
                       "system upload 3 3 AAAA -> refused: chunk 3 is not the next one", incomplete,
                       "system import item i01 -> refused: no such item"});
    }

    void noiseIsNotRecognised()
    {
        const ControllerState after =
            stateAfter(smallState(),
                       uploadOf(FactoryData::bytes(5000, 9))
                           << "system import available -> 0 none"
                           << "system upload 1 1 AAAA -> refused: 50 chunks were announced before"
                           << "system upload cancel" << uploadOf(Archive::pack({}))
                           << "system import available -> 0 config");
        QVERIFY(after == smallState());
    }

    void aDamagedArchiveIsRefused()
    {
        const QByteArray archive = Archive::pack({{"new", "", "", QByteArray(250, 'x')}});
        QByteArray flipped = archive;
        flipped[150] = 'y';
        const QByteArray damaged = "system import available -> refused: the upload is damaged: ";
        const ControllerState after = stateAfter(
            smallState(),
            uploadOf(archive.chopped(1))
                << damaged + "item 1: the archive ends too early"
                << "system upload cancel" << uploadOf(flipped)
                << damaged + "item 1: the checksum does not fit"
                << "system import 'config' 'new' -> refused: unknown configuration 'new'");
        QVERIFY(after == smallState());
    }

    void cancelForgetsTheUpload()
    {
        expectAnswers(smallState(),
                      uploadOf({{"new", "", "", ""}})
                          << "system upload cancel"
                          << "system import available -> refused: there is no complete upload"
                          << "system import 'config' 'new' -> refused: unknown configuration "
                             "'new'");
    }

    void importAddsAndReplaces()
    {
        ControllerState expected = smallState();
        expected.configurations[1] = {"first", "F", "first again", {}, "f"};
        expected.configurations << Configuration{"new", "N", "new one", {}, "n"};
        expected.baseData = "other base";
        const ControllerState after = stateAfter(smallState(),
                                                 uploadOf({{"new", "N", "new one", "n"},
                                                           {"first", "F", "first again", "f"},
                                                           {"__base", "", "", "other base"}})
                                                     << "system import 'config' 'new'"
                                                     << "system import 'config' 'first'"
                                                     << "system import 'config' '__base'");
        QVERIFY(after == expected);
    }

    void importLeavesLockedConfigurationsAlone()
    {
        ControllerState state = smallState();
        state.configurations[2].password = SaltedHash::of("lock");
        const ControllerState after =
            stateAfter(state,
                       uploadOf({{"second", "", "", ""}})
                           << "system import 'config' 'second' -> refused: configuration 'second' "
                              "is locked");
        QVERIFY(after == state);
    }

    void importNeedsRoom()
    {
        ControllerState state = smallState();
        state.storeCapacity = state.usedBytes();
        ControllerState expected = state;
        expected.configurations[2].data = QByteArray(1000, 'x');
        const QByteArray full = " -> refused: the configuration store is full";
        const ControllerState after = stateAfter(
            state,
            uploadOf({{"new", "", "", ""},
                      {"first", "", "", QByteArray(1001, 'x')},
                      {"second", "Bob", "Second one", QByteArray(1000, 'x')}})
                << "system import 'config' 'new'" + full << "system import 'config' 'first'" + full
                << "system import 'config' 'second'");
        QVERIFY(after == expected);
    }

    void whatIsNotOfferedIsNotImported()
    {
        const QByteArray unknown = " -> refused: unknown configuration 'first'";
        const QByteArray wrong = " -> refused: wrong argument";
        const ControllerState after =
            stateAfter(smallState(),
                       uploadOf({{"new", "", "", ""}}) << "system import 'config' 'first'" + unknown
                                                       << "system import 'image' 'new'" + wrong
                                                       << "system import config new" + wrong
                                                       << "system import 'config' 'new' x" + wrong);
        QVERIFY(after == smallState());
    }

    void theStandardConfigurationIsReplacedByAnImport()
    {
        const QByteArrayList deletion = uploadOf({{"standard", "S", "other standard", "s"}})
            << "veltra2 config delete_config standard";
        QVERIFY(stateAfter(smallState(), deletion) == smallState());
        ControllerState expected = smallState();
        expected.configurations[0] = {"standard", "S", "other standard", {}, "s"};
        const QByteArrayList import{"system import 'config' 'standard'"};
        QVERIFY(stateAfter(smallState(), deletion + import) == expected);
    }
};

VELTRA4_TEST(TestTransferCommands)
#include "tst_transfercommands.moc"

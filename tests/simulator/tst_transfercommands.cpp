#include "channel/transferencoding.h"
#include "simulator/archive.h"
#include "simulator/factorydata.h"
#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

namespace {

const QByteArray noChunk = " -> refused: no such chunk";
const QByteArray incomplete = "system import available -> refused: there is no complete upload";

// A line for each chunk of the archive, in which stand the number of all (%1), its own number (%2)
// and its text (%3).
QByteArrayList linesFor(const QByteArray &archive, const QString &form)
{
    QByteArrayList lines;
    const int total = (archive.size() + 99) / 100;
    for (int i = 0; i < total; ++i) {
        const QByteArray text = TransferEncoding::encode(archive.mid(i * 100, 100));
        lines << form.arg(QString::number(total), QString::number(i + 1), text).toLatin1();
    }
    return lines;
}

QByteArrayList uploadOf(const QByteArray &archive)
{
    return linesFor(archive, "system upload %1 %2 %3");
}

QByteArrayList uploadOf(const QVector<Archive::Item> &items)
{
    return uploadOf(Archive::pack(items));
}

QByteArrayList downloadOf(const QVector<Archive::Item> &items)
{
    return linesFor(Archive::pack(items), "system download %2 ->  %1 '%3'");
}

} // namespace

class TestTransferCommands : public QObject
{
    Q_OBJECT

private slots:
    void aDownloadIsTheArchiveOfWhatWasPrepared()
    {
        expectUnchanged(smallState(),
                        QByteArrayList{"system download prepare 'config' 'second'",
                                       "system download prepare 'config' '__base'",
                                       "system download available -> yes"}
                            << downloadOf({{"second", "Bob", "Second one", QByteArray(1000, '2')},
                                           {"__base", "", "base configuration", "base data"}}));
    }

    void aDownloadKeepsWhatWasPreparedAsItWas()
    {
        const Archive::Item first{"first", "Ann", "First one", QByteArray(1000, '1')};
        const Archive::Item second{"second", "Bob", "Second one", QByteArray(1000, '2')};
        expectAnswers(smallState(),
                      QByteArrayList{"system download prepare 'config' 'first'"}
                          << downloadOf({first}) << "veltra2 config delete_config first"
                          << downloadOf({first}) << "system download prepare 'config' 'second'"
                          << downloadOf({first, second}));
    }

    void aChunkHasToBeThere()
    {
        for (const QByteArray number : {"2", "0", "-1", "x", "", "1 ", "99999999999999999999"}) {
            expectAnswers(smallState(),
                          {"system download prepare 'config' '__base'",
                           "system download " + number + noChunk});
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

    void anUploadThatIsNotCompleteOffersNothing()
    {
        expectAnswers(smallState(),
                      {incomplete, "system upload 3 1 " + QByteArray(134, 'A'),
                       "system upload 3 3 AAAA -> refused: chunk 3 is not the next one", incomplete,
                       "system import item i01 -> refused: no such item"});
    }

    void nothingFollowsTheLastChunkUntilItIsCancelled()
    {
        expectAnswers(
            smallState(),
            uploadOf({{"new", "", "", ""}})
                << "system upload 1 2 AAAA -> refused: chunk 2 is not the next one"
                << "system import available -> 1 config"
                << "system upload cancel" << incomplete
                << "system import 'config' 'new' -> refused: unknown configuration 'new'");
    }

    void noiseIsNotRecognised()
    {
        expectUnchanged(smallState(),
                        uploadOf(FactoryData::bytes(5000, 9))
                            << "system import available -> 0 none"
                            << "system upload 1 1 AAAA -> refused: 50 chunks were announced before"
                            << "system upload cancel" << uploadOf(Archive::pack({}))
                            << "system import available -> 0 config");
    }

    void aDamagedArchiveIsRefused()
    {
        const QByteArray archive = Archive::pack({{"new", "", "", QByteArray(250, 'x')}});
        QByteArray flipped = archive;
        flipped[150] = 'y';
        const QByteArray damaged = "system import available -> refused: the upload is damaged: ";
        expectUnchanged(
            smallState(),
            uploadOf(archive.chopped(1))
                << damaged + "item 1: the archive ends too early"
                << "system upload cancel" << uploadOf(flipped)
                << damaged + "item 1: the checksum does not fit"
                << "system import 'config' 'new' -> refused: unknown configuration 'new'");
    }

    void importAddsAndReplaces()
    {
        ControllerState expected = smallState();
        expected.configurations[1] = {"first", "F", "first again", {}, "f"};
        expected.configurations << Configuration{"new", "N", "new one", {}, "n"};
        expected.baseData = "other base";
        const QByteArrayList upload = uploadOf({{"new", "N", "new one", "n"},
                                                {"first", "F", "first again", "f"},
                                                {"__base", "", "", "other base"}});
        const QByteArrayList imports{"system import 'config' 'new'",
                                     "system import 'config' 'first'",
                                     "system import 'config' '__base'"};
        QVERIFY(stateAfter(smallState(), upload + imports) == expected);
    }

    void importNeedsRoomAndNoLock()
    {
        ControllerState state = smallState();
        state.configurations[0].password = SaltedHash::of("lock");
        state.storeCapacity = state.usedBytes();
        const QByteArray full = " -> refused: the configuration store is full";
        const QByteArrayList refused = uploadOf({{"new", "", "", ""},
                                                 {"first", "", "", QByteArray(1001, 'x')},
                                                 {"second", "Bob", "", QByteArray(1000, 'x')},
                                                 {"standard", "", "", ""}})
            << "system import 'config' 'new'" + full << "system import 'config' 'first'" + full
            << "system import 'config' 'standard' -> refused: configuration 'standard' is locked";
        expectUnchanged(state, refused);
        ControllerState expected = state;
        expected.configurations[2] = {"second", "Bob", "", {}, QByteArray(1000, 'x')};
        const QByteArrayList import{"system import 'config' 'second'"};
        QVERIFY(stateAfter(state, refused + import) == expected);
    }

    void whatIsNotOfferedIsNotImported()
    {
        const QByteArray unknown = " -> refused: unknown configuration 'first'";
        const QByteArray wrong = " -> refused: wrong argument";
        expectUnchanged(smallState(),
                        uploadOf({{"new", "", "", ""}})
                            << "system import 'config' 'first'" + unknown
                            << "system import 'image' 'new'" + wrong
                            << "system import config new" + wrong
                            << "system import 'config' 'new' x" + wrong);
    }

    void theStandardConfigurationIsReplacedByAnImport()
    {
        const QByteArrayList deletion = uploadOf({{"standard", "S", "other standard", "s"}})
            << "veltra2 config delete_config standard";
        expectUnchanged(smallState(), deletion);
        ControllerState expected = smallState();
        expected.configurations[0] = {"standard", "S", "other standard", {}, "s"};
        const QByteArrayList import{"system import 'config' 'standard'"};
        QVERIFY(stateAfter(smallState(), deletion + import) == expected);
    }
};

VELTRA4_TEST(TestTransferCommands)
#include "tst_transfercommands.moc"

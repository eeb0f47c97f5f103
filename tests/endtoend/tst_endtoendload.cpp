#include "tests/endtoend/scene.h"
#include "tests/endtoend/table.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QTest>

#include <random>

using namespace Story;

namespace {

QByteArray noise(int size)
{
    std::mt19937 generator(20240702);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes) {
        byte = static_cast<char>(generator());
    }
    return bytes;
}

QByteArray intactArchive()
{
    const ControllerState sample = ControllerState::sample();
    return Archive::pack({TransferFiles::item(configurationIn(sample, Sample::fair)),
                          TransferFiles::item(configurationIn(sample, Sample::rotor))});
}

// What comes back gets new slots at the end.
void append(ControllerState &state, const QByteArrayList &identifiers)
{
    for (const QByteArray &identifier : identifiers) {
        state.configurations << configurationIn(ControllerState::sample(), identifier);
    }
}

// Makes a file of the sample's configurations, then goes on with a controller of that state.
Step makeFileAndGoOn(const QByteArrayList &identifiers, const ControllerState &state)
{
    return [identifiers, state](Scene &scene) {
        makeFile("some.dat", identifiers)(scene);
        scene.controller.setState(state);
    };
}

} // namespace

class TestEndToEndLoad : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QVERIFY(!QGuiApplication::overrideCursor()); }

    void whatWasSavedAndDeletedComesBack()
    {
        Scene scene;
        scene.play(save({Sample::fairText, Sample::rotorText}, "round trip.dat",
                        {savedBox("round trip.dat")}));
        scene.play({onList({selectRow(Sample::fairText), click("pushButton_delete"),
                            selectRow(Sample::rotorText), click("pushButton_delete"),
                            doubleClickRow(Sample::activeText), leave}),
                    answer(QMessageBox::Ok), answer(QMessageBox::Ok),
                    onEdit({type("lineEdit_desc", " changed"), click("pushButton_ok")})});
        const ControllerState between = scene.state();
        QCOMPARE(between.configurations.size(), 10);
        scene.record.takeMessages();
        const Action seeTwo = [](QDialog *dialog) { QCOMPARE(Table::lines(dialog).size(), 2); };
        scene.play(load("round trip.dat",
                        {onLoad({seeTwo, click("pushButton_load")}), // all are selected
                         loadedBox()}));
        QCOMPARE(scene.record.takeMessages(), QStringList{changeEvent()});

        // What was saved are copies under identifiers of their own, with the date; the data is the
        // same.
        const ControllerState sample = ControllerState::sample();
        const ControllerState &after = scene.state();
        QCOMPARE(after.configurations.size(), 12);
        QCOMPARE(after.configurations.mid(0, 10), between.configurations);
        const Configuration &rotor = after.configurations.at(10);
        const Configuration &fair = after.configurations.at(11);
        QCOMPARE(rotor.data, configurationIn(sample, Sample::rotor).data);
        QCOMPARE(rotor.owner, configurationIn(sample, Sample::rotor).owner);
        QCOMPARE(fair.data, configurationIn(sample, Sample::fair).data);
        QVERIFY(fair.description.startsWith(configurationIn(sample, Sample::fair).description));
        QCOMPARE(after.activeIdentifier, Sample::active);
    }

    void changedOnesAreReplaced()
    {
        ControllerState state = ControllerState::sample();
        configurationIn(state, Sample::fair).data = "changed";
        configurationIn(state, Sample::fair).owner = "somebody else";
        removeConfiguration(state, Sample::rotor);
        const Action seePath = [](QDialog *dialog) {
            QCOMPARE(UserInput::textOf(dialog, "lineEdit_path").section('/', -1), "some.dat");
        };
        Scene scene;
        makeFileAndGoOn({Sample::fair, Sample::rotor}, state)(scene);
        scene.play(load("some.dat", {onLoad({seePath, click("pushButton_load")}), loadedBox()}));
        removeConfiguration(state, Sample::fair);
        append(state, {Sample::fair, Sample::rotor});
        QCOMPARE(scene.state(), state);
    }

    void onlyWhatIsSelectedIsLoaded()
    {
        ControllerState state = ControllerState::sample();
        removeConfiguration(state, Sample::fair);
        removeConfiguration(state, Sample::rotor);
        Scene scene;
        makeFileAndGoOn({Sample::fair, Sample::rotor}, state)(scene);
        scene.play(load(
            "some.dat",
            {onLoad({selectOnly({Sample::rotorText}), click("pushButton_load")}), loadedBox()}));
        append(state, {Sample::rotor});
        QCOMPARE(scene.state(), state);
    }

    void aLockedOneIsShownAsSuchAndNotLoaded()
    {
        ControllerState state = ControllerState::sample();
        configurationIn(state, Sample::locked).data = "theirs";
        removeConfiguration(state, Sample::fair);
        removeConfiguration(state, Sample::rotor);
        const Action lookAndTryToSelect = [](QDialog *dialog) {
            const QStringList lines = Table::lines(dialog);
            QVERIFY(lines.at(1).startsWith(Sample::lockedText));
            QVERIFY(lines.at(1).endsWith(" | locked"));
            QVERIFY(lines.at(0).endsWith(" | "));
            Table::click(dialog, Sample::lockedText, Qt::ControlModifier);
        };
        Scene scene;
        makeFileAndGoOn({Sample::fair, Sample::locked, Sample::rotor}, state)(scene);
        scene.play(load("some.dat",
                        {onLoad({lookAndTryToSelect, click("pushButton_load")}), loadedBox()}));
        append(state, {Sample::fair, Sample::rotor});
        QCOMPARE(scene.state(), state);
    }

    void whenAllAreLockedNothingCanBeLoaded()
    {
        const Action look = [](QDialog *dialog) {
            QVERIFY(!UserInput::widgetNamed(dialog, "pushButton_load")->isEnabled());
        };
        Scene scene;
        scene.play(Steps{makeFile("some.dat", {Sample::locked})}
                   + load("some.dat", {onLoad({look, click("pushButton_exit")})}));
        QCOMPARE(scene.state(), ControllerState::sample());
        QCOMPARE(scene.record.takeMessages(), QStringList());
    }

    void aFullStoreIsToldOf()
    {
        ControllerState full = ControllerState::sample();
        removeConfiguration(full, Sample::fair);
        full.storeCapacity = full.usedBytes();
        Scene scene;
        makeFileAndGoOn({Sample::fair}, full)(scene);
        scene.play(load("some.dat",
                        {onLoad({click("pushButton_load")}),
                         box({QMessageBox::Information, "Load Configurations",
                              "Loading configuration unsuccessfully."})}));
        QCOMPARE(scene.state(), full);
    }

    void aDamagedFileIsRefused_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QString>("message");
        const QString unanswered = "Error: Unable to get loaded configurations";
        const QString unknown = "Error: Configuration file can not be recognized";
        const QByteArray intact = intactArchive();
        QByteArray flipped = intact;
        flipped[50] = char(flipped.at(50) ^ 1);

        QTest::newRow("empty") << QByteArray() << "Error: Unable to load configurations";
        QTest::newRow("cut in the magic") << intact.left(7) << unknown;
        QTest::newRow("cut behind the magic") << intact.left(8) << unanswered;
        QTest::newRow("cut at the end") << intact.left(intact.size() - 1) << unanswered;
        QTest::newRow("one byte more") << intact + '\0' << unanswered;
        QTest::newRow("one bit wrong") << flipped << unanswered;
        QTest::newRow("changed as a text is")
            << QByteArray(intact).replace("\r\n", "\n") << unknown;
        QTest::newRow("noise") << noise(1024 * 1024) << unknown;
        QTest::newRow("another document")
            << QByteArray("<?xml version=\"1.0\"?><html/>") << unknown;
    }

    void aDamagedFileIsRefused()
    {
        QFETCH(QByteArray, contents);
        QFETCH(QString, message);
        Scene scene;
        TransferFiles::write(scene.filePath("damaged.dat"), contents);
        scene.play(load("damaged.dat", {}));
        QCOMPARE(scene.record.takeMessages(), QStringList{errorMessage(message)});
        QCOMPARE(scene.state(), ControllerState::sample());
    }
};

VELTRA4_TEST(TestEndToEndLoad)
#include "tst_endtoendload.moc"

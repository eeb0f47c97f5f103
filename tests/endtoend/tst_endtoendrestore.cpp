#include "simulator/factorydata.h"
#include "tests/endtoend/scene.h"
#include "tests/endtoend/table.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QTest>

using namespace Story;

namespace {

Step overwriteQuestion(QMessageBox::StandardButton answer = QMessageBox::Yes)
{
    return box({QMessageBox::Warning, "Confirmation",
                "Restoring this backup overwrites all settings and already existing "
                "configurations.\n\nAny previous settings will get lost!\n\nProceed?",
                answer, QMessageBox::Yes | QMessageBox::No, QMessageBox::No});
}

Step networkQuestion(QMessageBox::StandardButton answer = QMessageBox::Yes)
{
    return box({QMessageBox::Question, "Confirmation",
                "Hostname and ip settings can be restored. After reboot the XQU might not be "
                "reachable via network due to wrong network settings.\n\nRestore?",
                answer, QMessageBox::Yes | QMessageBox::No, QMessageBox::No});
}

Step restoredBox()
{
    return box({QMessageBox::Information, "Success", "Backup restored!"});
}

// A box whose text names the backup.
Step backupBox(QMessageBox::Icon icon, const QString &title, const QString &text)
{
    return [icon, title, text](Scene &scene) {
        scene.driver.expectBox({icon, title, text.arg(scene.filePath("backup.xml"))});
    };
}

Step failedBox()
{
    return backupBox(QMessageBox::Critical, "Invalid backup file",
                     "Error while restoring from backup (%1).");
}

Steps loadBackup(const Steps &boxes)
{
    return load("backup.xml", boxes);
}

Steps restore(const Step &outcome)
{
    return loadBackup({overwriteQuestion(), networkQuestion(), outcome});
}

ControllerState bigState()
{
    constexpr int configurations = 200;
    constexpr int bytesEach = 4 * 1024 * 1024 / configurations;
    ControllerState state = Sample::light();
    state.storeCapacity = qint64{64} * 1024 * 1024;
    state.configurations.resize(1); // the standard one
    state.configurations[0].data = FactoryData::bytes(bytesEach, 1);
    for (int i = 2; i <= configurations; ++i) {
        const QByteArray number = QByteArray::number(i).rightJustified(3, '0');
        state.configurations << Configuration{"config" + number, "owner " + number,
                                              "Configuration " + number, SaltedHash(),
                                              FactoryData::bytes(bytesEach, quint32(i))};
    }
    state.activeIdentifier = "config123";
    return state;
}

// What others do to the controller meanwhile. Everything that a backup carries changes.
void wreckBehindTheScenes(Scene &scene)
{
    for (const char *command :
         {"system hostname somebody-else", "system net dhcp", "system domainname nowhere.example",
          "system nameserver 10.0.0.1", "system ntp_server 10.0.0.2",
          "veltra2 cascade sub_slave tracker-lab3", "veltra2 cascade add_slave tracker-hall1"}) {
        execute(command)(scene);
    }
    ControllerState state = scene.state();
    state.baseData = "another base";
    for (Configuration &configuration : state.configurations) {
        configuration.data = "overwritten";
    }
    scene.controller.setState(state);
}

// A scene in which the controller has been backed up.
class BackedUpScene : public Scene
{
public:
    explicit BackedUpScene(const ControllerState &state)
        : Scene(state)
    {
        play(backUp("backup.xml"));
        record.takeMessages();
    }
};

} // namespace

class TestEndToEndRestore : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QVERIFY(!QGuiApplication::overrideCursor()); }

    void everythingComesBack()
    {
        const ControllerState before = Sample::light();
        BackedUpScene scene(before);
        // What the user deletes and edits, and what others do.
        scene.play({onList({selectRow(Sample::fairText), click("pushButton_delete"),
                            selectRow(Sample::activeText), click("pushButton_delete"),
                            selectRow(Sample::lockedText), click("pushButton_delete"),
                            doubleClickRow(Sample::rotorText), leave}),
                    answer(QMessageBox::Ok), answer(QMessageBox::Ok), answer(QMessageBox::Ok),
                    onEdit({type("lineEdit_desc", " spoiled"), type("lineEdit_owner", " no more"),
                            click("pushButton_ok")})});
        wreckBehindTheScenes(scene);
        QVERIFY(scene.state() != before);
        scene.record.takeMessages();
        scene.play(restore(restoredBox()));
        // The whole state; even the slots are as they were.
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.record.takeMessages(), QStringList{changeEvent()});
        scene.play({onList({[](QDialog *list) {
                                QCOMPARE(Table::lines(list).size(), 12);
                                QCOMPARE(UserInput::textOf(list, "lineEdit_activeConfig"),
                                         Sample::activeText);
                            },
                            leave})});
    }

    void manyAndBigConfigurationsComeBack()
    {
        const ControllerState before = bigState();
        BackedUpScene scene(before);
        wreckBehindTheScenes(scene);
        ControllerState wreck = scene.state();
        wreck.configurations.resize(57);
        wreck.activeIdentifier = Sample::standard;
        scene.controller.setState(wreck);
        scene.play(restore(restoredBox()));
        QCOMPARE(scene.state(), before);
    }

    void theNetworkIsRestoredOnlyIfWanted()
    {
        ControllerState expected = Sample::light();
        BackedUpScene scene(expected);
        wreckBehindTheScenes(scene);
        scene.play(
            loadBackup({overwriteQuestion(), networkQuestion(QMessageBox::No), restoredBox()}));
        // Name and address stay; the services in the network are restored all the same.
        expected.hostName = "somebody-else";
        expected.net = "dhcp";
        QCOMPARE(scene.state(), expected);
    }

    // By their nature no part of a backup: what the controller is (serial number, model, where it
    // runs, the size of its store), what it is doing, its passwords, which slaves are to be reached
    // and found, and configurations that were made after the backup.
    void whatIsNoPartOfABackupStays()
    {
        const ControllerState before = Sample::light();
        BackedUpScene scene(before);
        ControllerState other = before;
        other.serial = "99999";
        other.model = "6";
        other.modelDescription = "Outdoor Tracker 6";
        other.activity = "measurement";
        other.storeCapacity *= 2;
        other.superPassword = SaltedHash::of("another");
        other.slaves[2].isAvailable = false;
        other.slaves[3].isScanned = true;
        const Configuration later{"config9", "me", "made later", SaltedHash(), "later"};
        other.configurations << later;
        scene.controller.setState(other);
        scene.play(restore(restoredBox()));
        // The standard one keeps its slot; the later one moves up before those that are made anew.
        ControllerState expected = other;
        expected.configurations = before.configurations;
        expected.configurations.insert(1, later);
        QCOMPARE(scene.state(), expected);
    }

    void aControllerOnAComputerIsNotAskedForItsNetwork()
    {
        ControllerState before = Sample::light();
        before.isEmbedded = false;
        BackedUpScene scene(before);
        wreckBehindTheScenes(scene);
        ControllerState expected = scene.state();
        scene.play(loadBackup({overwriteQuestion(), restoredBox()}));
        // None of its network settings is touched.
        expected.configurations = before.configurations;
        expected.activeIdentifier = before.activeIdentifier;
        expected.baseData = before.baseData;
        expected.slaves = before.slaves;
        QCOMPARE(scene.state(), expected);
    }

    void anUnreachableSlaveIsToldOf()
    {
        ControllerState state = Sample::light();
        BackedUpScene scene(state);
        state.slaves[1].isAvailable = false;
        scene.controller.setState(state);
        scene.play(
            restore(box({QMessageBox::Information, "Success (incomplete cascade)",
                         "Backup restored!\n\nNot all machines of the configured\ncascade could be "
                         "reconnected. Please, see\nthe Events window for more details."})));
        QCOMPARE(scene.state(), state);
        QCOMPARE(
            scene.record.takeMessages(),
            QStringList({changeEvent(), errorMessage("unable to reconnect slave 'tracker-lab4'")}));
    }

    void withALockedConfigurationNothingIsRestored()
    {
        BackedUpScene scene(ControllerState::sample()); // has a locked one
        wreckBehindTheScenes(scene);
        const ControllerState wreck = scene.state();
        scene.play(loadBackup({backupBox(
            QMessageBox::Information, "Cannot load backup",
            "Cannot load backup from file '%1' !\n One or more Configurations are locked.")}));
        QCOMPARE(scene.state(), wreck);
        QCOMPARE(scene.record.takeMessages(), QStringList());
    }

    void anUnconfirmedRestoreChangesNothing()
    {
        BackedUpScene scene(Sample::light());
        wreckBehindTheScenes(scene);
        const ControllerState wreck = scene.state();
        scene.play(loadBackup({overwriteQuestion(QMessageBox::No)}));
        QCOMPARE(scene.state(), wreck);
    }

    void aBackupOfANewerControllerDoesNotFit()
    {
        BackedUpScene scene(Sample::light());
        scene.versions.ptVersion = {4, 1, 9};
        scene.play(loadBackup({overwriteQuestion(),
                               backupBox(QMessageBox::Critical, "Invalid backup file",
                                         "Unable to restore from backup (%1)")}));
        QCOMPARE(scene.state(), Sample::light());
    }

    // It is taken for a configuration file then, which the controller does not recognise.
    void aBackupThatIsCutIsNoBackup()
    {
        for (const int size : {20, 1000, 6000}) {
            BackedUpScene scene(Sample::light());
            const QString path = scene.filePath("backup.xml");
            const QByteArray contents = TransferFiles::contentsOf(path);
            QVERIFY(contents.size() > size);
            TransferFiles::write(path, contents.left(size));
            scene.play(loadBackup({}));
            QCOMPARE(scene.record.takeMessages(),
                     QStringList{errorMessage("Error: Configuration file can not be recognized")});
            QCOMPARE(scene.state(), Sample::light());
        }
    }

    // The document is well, but the controller's own check of the data in it fails.
    void damagedConfigurationsInsideAreToldOf()
    {
        BackedUpScene scene(Sample::light());
        const QString path = scene.filePath("backup.xml");
        QByteArray contents = TransferFiles::contentsOf(path);
        const int middle = contents.size() / 2;
        contents[middle] = contents.at(middle) == 'A' ? 'B' : 'A';
        TransferFiles::write(path, contents);
        scene.play(restore(failedBox()));
        QCOMPARE(scene.state(), Sample::light());
    }

    // No box says so: the list that is read again does.
    void aConnectionLostOnTheWayCanBeMadeGood()
    {
        BackedUpScene scene(Sample::light());
        wreckBehindTheScenes(scene);
        fault("system controller_embedded#3")(scene);
        scene.play(loadBackup({overwriteQuestion(), networkQuestion()}));
        QVERIFY(!QGuiApplication::overrideCursor());
        scene.play(restore(restoredBox()));
        QCOMPARE(scene.state(), Sample::light());
    }

    void afterAnyFailureAnotherRestoreMendsAll_data()
    {
        QTest::addColumn<QString>("rule");
        for (const char *rule :
             {"system hostname *", "system ntp_server *", "config config t03#2",
              "/^system upload \\d+ /#40", "system import available", "/^system import 'config'/#4",
              "/delete_config/#6", "cascade number_of_connected_slaves",
              "veltra2 cascade sub_slave *", "veltra2 cascade add_slave *"}) {
            QTest::newRow(rule) << QString::fromLatin1(rule);
        }
    }

    void afterAnyFailureAnotherRestoreMendsAll()
    {
        QFETCH(const QString, rule);
        BackedUpScene scene(Sample::light());
        wreckBehindTheScenes(scene);
        fault(rule)(scene);
        scene.play(restore(failedBox()));
        QVERIFY(scene.state() != Sample::light());
        scene.channel.faults().clear();
        scene.play(restore(restoredBox()));
        QCOMPARE(scene.state(), Sample::light());
    }
};

VELTRA4_TEST(TestEndToEndRestore)
#include "tst_endtoendrestore.moc"

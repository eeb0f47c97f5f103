#include "simulator/factorydata.h"
#include "tests/endtoend/frontend.h"
#include "tests/endtoend/table.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QAbstractButton>
#include <QTableWidget>
#include <QtTest>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

constexpr auto yesOrNo = QMessageBox::Yes | QMessageBox::No;

ExpectedBox overwriteQuestion(QMessageBox::StandardButton answer)
{
    return {QMessageBox::Warning,
            QStringLiteral("Confirmation"),
            QStringLiteral("Restoring this backup overwrites all settings and already existing "
                           "configurations.\n\nAny previous settings will get lost!\n\nProceed?"),
            answer,
            yesOrNo,
            QMessageBox::No};
}

ExpectedBox networkQuestion(QMessageBox::StandardButton answer)
{
    return {QMessageBox::Question,
            QStringLiteral("Confirmation"),
            QStringLiteral("Hostname and ip settings can be restored. After reboot the XQU might "
                           "not be reachable via network due to wrong network "
                           "settings.\n\nRestore?"),
            answer,
            yesOrNo,
            QMessageBox::No};
}

ExpectedBox restoredBox()
{
    return {QMessageBox::Information, QStringLiteral("Success"),
            QStringLiteral("Backup restored!")};
}

ExpectedBox incompleteCascadeBox()
{
    return {QMessageBox::Information, QStringLiteral("Success (incomplete cascade)"),
            QStringLiteral("Backup restored!\n\nNot all machines of the configured\ncascade could "
                           "be reconnected. Please, see\nthe Events window for more details.")};
}

ExpectedBox failedBox(const QString &path)
{
    return {QMessageBox::Critical, QStringLiteral("Invalid backup file"),
            QStringLiteral("Error while restoring from backup (%1).").arg(path)};
}

ExpectedBox unfitBox(const QString &path)
{
    return {QMessageBox::Critical, QStringLiteral("Invalid backup file"),
            QStringLiteral("Unable to restore from backup (%1)").arg(path)};
}

ExpectedBox lockedBox(const QString &path)
{
    return {QMessageBox::Information, QStringLiteral("Cannot load backup"),
            QStringLiteral(
                "Cannot load backup from file '%1' !\n One or more Configurations are locked.")
                .arg(path)};
}

// A restore wants no locked configuration.
ControllerState unlockedSample()
{
    ControllerState state = ControllerState::sample();
    configurationIn(state, Sample::locked).password = SaltedHash();
    return state;
}

ControllerState bigState()
{
    constexpr int configurations = 200;
    constexpr int bytesEach = 16 * 1024 * 1024 / configurations;
    ControllerState state = unlockedSample();
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

void backUp(FrontEnd &frontEnd, const QString &path)
{
    frontEnd.useList([&](QDialog *list) {
        frontEnd.driver.expectDialog("ConfigSaveDlgClass", [&](QDialog *dialog) {
            frontEnd.driver.expectFileDialog("Backup all settings", path);
            frontEnd.driver.expectBox({QMessageBox::Information, "Success", "Backup created!"});
            UserInput::click(dialog, "pushButton_save");
            UserInput::click(dialog, "pushButton_exit");
        });
        UserInput::click(list, "pushButton_save");
    });
}

void chooseBackup(FrontEnd &frontEnd, const QString &path, const QVector<ExpectedBox> &boxes)
{
    frontEnd.useList([&](QDialog *list) {
        frontEnd.driver.expectFileDialog("Load Configurations", path);
        for (const ExpectedBox &box : boxes) {
            frontEnd.driver.expectBox(box);
        }
        UserInput::click(list, "pushButton_load");
    });
}

void restore(FrontEnd &frontEnd, const QString &path, const ExpectedBox &outcome)
{
    chooseBackup(frontEnd, path,
                 {overwriteQuestion(QMessageBox::Yes), networkQuestion(QMessageBox::Yes), outcome});
}

// Deletes and edits as the user does.
void deleteAndEdit(FrontEnd &frontEnd)
{
    frontEnd.useList([&](QDialog *list) {
        for (const QString &description :
             {Sample::fairText, Sample::activeText, Sample::lockedText}) {
            Table::click(list, description);
            frontEnd.driver.expectDialog(QString(), [](QDialog *box) {
                qobject_cast<QMessageBox *>(box)->button(QMessageBox::Ok)->click();
            });
            UserInput::click(list, "pushButton_delete");
        }
        frontEnd.driver.expectDialog("EditConfigDialog", [](QDialog *dialog) {
            UserInput::type(dialog, "lineEdit_desc", " spoiled");
            UserInput::type(dialog, "lineEdit_owner", " no more");
            UserInput::click(dialog, "pushButton_ok");
        });
        Table::doubleClick(list, Sample::rotorText);
    });
}

// What others do to the controller meanwhile. Everything that a backup carries changes.
void wreckBehindTheScenes(SimulatedController &controller)
{
    for (const char *command :
         {"system hostname somebody-else", "system net dhcp", "system domainname nowhere.example",
          "system nameserver 10.0.0.1", "system ntp_server 10.0.0.2",
          "veltra2 cascade sub_slave tracker-lab3", "veltra2 cascade add_slave tracker-hall1"}) {
        QVERIFY2(controller.execute(command).ok, command);
    }
    ControllerState state = controller.state();
    state.baseData = "another base";
    for (Configuration &configuration : state.configurations) {
        configuration.data = "overwritten";
    }
    controller.setState(state);
}

} // namespace

class TestEndToEndRestore : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_home.emplace(); }

    void cleanup()
    {
        m_home.reset();
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void everythingComesBack()
    {
        const ControllerState before = unlockedSample();
        FrontEnd frontEnd(before);
        backUp(frontEnd, path());
        deleteAndEdit(frontEnd);
        wreckBehindTheScenes(frontEnd.controller);
        QVERIFY(frontEnd.state() != before);
        frontEnd.record.takeMessages();
        restore(frontEnd, path(), restoredBox());
        // The whole state; even the slots are as they were.
        QCOMPARE(frontEnd.state(), before);
        QCOMPARE(frontEnd.record.takeMessages(), QStringList{changeEvent()});
        frontEnd.useList([](QDialog *list) {
            QCOMPARE(Table::lines(list).size(), 12);
            QCOMPARE(UserInput::textOf(list, "lineEdit_activeConfig"), Sample::activeText);
        });
    }

    void manyAndBigConfigurationsComeBack()
    {
        const ControllerState before = bigState();
        FrontEnd frontEnd(before);
        backUp(frontEnd, path());
        wreckBehindTheScenes(frontEnd.controller);
        ControllerState wreck = frontEnd.state();
        wreck.configurations.resize(57);
        wreck.activeIdentifier = Sample::standard;
        frontEnd.controller.setState(wreck);
        restore(frontEnd, path(), restoredBox());
        QCOMPARE(frontEnd.state(), before);
    }

    void theNetworkIsRestoredOnlyIfWanted()
    {
        const ControllerState before = unlockedSample();
        FrontEnd frontEnd(before);
        backUp(frontEnd, path());
        wreckBehindTheScenes(frontEnd.controller);
        chooseBackup(
            frontEnd, path(),
            {overwriteQuestion(QMessageBox::Yes), networkQuestion(QMessageBox::No), restoredBox()});
        // Name and address stay; the services in the network are restored all the same.
        ControllerState expected = before;
        expected.hostName = "somebody-else";
        expected.net = "dhcp";
        QCOMPARE(frontEnd.state(), expected);
    }

    // By their nature no part of a backup: what the controller is (serial number, model, where it
    // runs, the size of its store), what it is doing, its passwords, which slaves are to be reached
    // and found, and configurations that were made after the backup.
    void whatIsNoPartOfABackupStays()
    {
        const ControllerState before = unlockedSample();
        FrontEnd frontEnd(before);
        backUp(frontEnd, path());
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
        frontEnd.controller.setState(other);
        restore(frontEnd, path(), restoredBox());
        // The standard one keeps its slot; the later one moves up before those that are made anew.
        ControllerState expected = other;
        expected.configurations = before.configurations;
        expected.configurations.insert(1, later);
        QCOMPARE(frontEnd.state(), expected);
    }

    void aControllerOnAComputerIsNotAskedForItsNetwork()
    {
        ControllerState before = unlockedSample();
        before.isEmbedded = false;
        FrontEnd frontEnd(before);
        backUp(frontEnd, path());
        wreckBehindTheScenes(frontEnd.controller);
        ControllerState expected = frontEnd.state();
        chooseBackup(frontEnd, path(), {overwriteQuestion(QMessageBox::Yes), restoredBox()});
        // None of its network settings is touched.
        expected.configurations = before.configurations;
        expected.activeIdentifier = before.activeIdentifier;
        expected.baseData = before.baseData;
        expected.slaves = before.slaves;
        QCOMPARE(frontEnd.state(), expected);
    }

    void anUnreachableSlaveIsToldOf()
    {
        ControllerState before = unlockedSample();
        FrontEnd frontEnd(before);
        backUp(frontEnd, path());
        before.slaves[1].isAvailable = false;
        frontEnd.controller.setState(before);
        restore(frontEnd, path(), incompleteCascadeBox());
        QCOMPARE(frontEnd.state(), before);
        QCOMPARE(
            frontEnd.record.takeMessages(),
            QStringList({changeEvent(), errorMessage("unable to reconnect slave 'tracker-lab4'")}));
    }

    void withALockedConfigurationNothingIsRestored()
    {
        FrontEnd frontEnd; // the sample has a locked one
        backUp(frontEnd, path());
        wreckBehindTheScenes(frontEnd.controller);
        const ControllerState wreck = frontEnd.state();
        chooseBackup(frontEnd, path(), {lockedBox(path())});
        QCOMPARE(frontEnd.state(), wreck);
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void anUnconfirmedRestoreChangesNothing()
    {
        FrontEnd frontEnd(unlockedSample());
        backUp(frontEnd, path());
        wreckBehindTheScenes(frontEnd.controller);
        const ControllerState wreck = frontEnd.state();
        chooseBackup(frontEnd, path(), {overwriteQuestion(QMessageBox::No)});
        QCOMPARE(frontEnd.state(), wreck);
    }

    void anEmptyDocumentDoesNotFit()
    {
        TransferFiles::write(path(), "<ZOR/>");
        FrontEnd frontEnd(unlockedSample());
        chooseBackup(frontEnd, path(), {overwriteQuestion(QMessageBox::Yes), unfitBox(path())});
        QCOMPARE(frontEnd.state(), unlockedSample());
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void aBackupOfANewerControllerDoesNotFit()
    {
        FrontEnd frontEnd(unlockedSample());
        backUp(frontEnd, path());
        frontEnd.versions.ptVersion = {4, 1, 9};
        chooseBackup(frontEnd, path(), {overwriteQuestion(QMessageBox::Yes), unfitBox(path())});
        QCOMPARE(frontEnd.state(), unlockedSample());
    }

    void aDamagedBackupIsNoBackup_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("flippedByte");
        for (const int size : {20, 300, 1000, 400000}) {
            QTest::addRow("cut to %d bytes", size) << size << -1;
        }
        QTest::newRow("a broken mark-up") << std::numeric_limits<int>::max() << 42;
    }

    // It is taken for a configuration file then, which the controller does not recognise.
    void aDamagedBackupIsNoBackup()
    {
        QFETCH(int, size);
        QFETCH(int, flippedByte);
        FrontEnd frontEnd(unlockedSample());
        backUp(frontEnd, path());
        QByteArray contents = TransferFiles::contentsOf(path());
        QVERIFY(contents.size() > 400000);
        contents.truncate(size);
        if (flippedByte >= 0) {
            contents[flippedByte] = '\1';
        }
        TransferFiles::write(path(), contents);
        chooseBackup(frontEnd, path(), {});
        QCOMPARE(frontEnd.record.takeMessages(),
                 QStringList{errorMessage("Error: Configuration file can not be recognized")});
        QCOMPARE(frontEnd.state(), unlockedSample());
    }

    // The document is well, but the controller's own check of the data in it fails.
    void damagedConfigurationsInsideAreToldOf()
    {
        FrontEnd frontEnd(unlockedSample());
        backUp(frontEnd, path());
        QByteArray contents = TransferFiles::contentsOf(path());
        const int middle = contents.size() / 2;
        contents[middle] = contents.at(middle) == 'A' ? 'B' : 'A';
        TransferFiles::write(path(), contents);
        restore(frontEnd, path(), failedBox(path()));
        QCOMPARE(frontEnd.state(), unlockedSample());
    }

    void aLostConnectionChangesNothing()
    {
        FrontEnd frontEnd(unlockedSample());
        backUp(frontEnd, path());
        wreckBehindTheScenes(frontEnd.controller);
        const ControllerState wreck = frontEnd.state();
        QString error;
        QVERIFY(frontEnd.channel.faults().add("system controller_embedded", &error));
        // No box says so: the list that is read again does.
        chooseBackup(frontEnd, path(), {overwriteQuestion(QMessageBox::Yes)});
        QCOMPARE(frontEnd.state(), wreck);
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void aConnectionLostOnTheWayCanBeMadeGood()
    {
        FrontEnd frontEnd(unlockedSample());
        backUp(frontEnd, path());
        wreckBehindTheScenes(frontEnd.controller);
        QString error;
        QVERIFY(frontEnd.channel.faults().add("system controller_embedded#3", &error));
        chooseBackup(frontEnd, path(),
                     {overwriteQuestion(QMessageBox::Yes), networkQuestion(QMessageBox::Yes)});
        QVERIFY(!QGuiApplication::overrideCursor());
        restore(frontEnd, path(), restoredBox());
        QCOMPARE(frontEnd.state(), unlockedSample());
    }

    void afterAnyFailureAnotherRestoreMendsAll_data()
    {
        QTest::addColumn<QString>("fault");
        for (const char *fault :
             {"system hostname *", "system ntp_server *", "config config t03#2",
              "/^system upload \\d+ /#40", "system import available", "/^system import 'config'/#4",
              "/delete_config/#6", "cascade number_of_connected_slaves",
              "veltra2 cascade sub_slave *", "veltra2 cascade add_slave *"}) {
            QTest::newRow(fault) << QString::fromLatin1(fault);
        }
    }

    void afterAnyFailureAnotherRestoreMendsAll()
    {
        QFETCH(QString, fault);
        const ControllerState before = unlockedSample();
        FrontEnd frontEnd(before);
        backUp(frontEnd, path());
        wreckBehindTheScenes(frontEnd.controller);
        QString error;
        QVERIFY2(frontEnd.channel.faults().add(fault, &error), qPrintable(error));
        restore(frontEnd, path(), failedBox(path()));
        QVERIFY(frontEnd.state() != before);
        frontEnd.channel.faults().clear();
        restore(frontEnd, path(), restoredBox());
        QCOMPARE(frontEnd.state(), before);
    }

private:
    QString path() const { return m_home->filePath("backup.xml"); }

    std::optional<TemporaryHome> m_home;
};

VELTRA4_TEST(TestEndToEndRestore)
#include "tst_endtoendrestore.moc"

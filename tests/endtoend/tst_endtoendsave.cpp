#include "backup/fullbackup.h"
#include "backup/version.h"
#include "tests/endtoend/frontend.h"
#include "tests/endtoend/table.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QLocale>
#include <QProcess>
#include <QTableWidget>
#include <QtTest>

#include <optional>

namespace {

constexpr int patienceMs = 60000; // for what happens on its own, however busy the machine is

ExpectedBox saveBox(QMessageBox::Icon icon, const QString &text)
{
    return {icon, QStringLiteral("Save Configurations"), text};
}

ExpectedBox savedBox(const QString &path)
{
    return saveBox(QMessageBox::Information,
                   QStringLiteral("Configuration data successfully written to the file\n") + path);
}

ExpectedBox overwriteBox(const QString &fileName, QMessageBox::StandardButton answer)
{
    return {QMessageBox::Warning,
            QStringLiteral("Save configuration(s)"),
            QStringLiteral("%1 already exists.\nDo you want to replace it?").arg(fileName),
            answer,
            QMessageBox::Yes | QMessageBox::No,
            QMessageBox::No};
}

ExpectedBox backedUpBox()
{
    return {QMessageBox::Information, QStringLiteral("Success"), QStringLiteral("Backup created!")};
}

// The configurations to be copied, and the copies that the plug-in made of them, in order.
QVector<Archive::Item> copiedItems(const QByteArrayList &commands, const ControllerState &state)
{
    const QByteArray clone = "veltra2 config clone_config ";
    const QByteArray today =
        QLocale::c().toString(QDate::currentDate(), QStringLiteral("dd-MM-yyyy")).toLatin1();
    QVector<Archive::Item> items;
    for (const QByteArray &command : commands) {
        if (command.startsWith(clone)) {
            const QList<QByteArray> words = command.mid(clone.size()).split(' ');
            Archive::Item item = TransferFiles::item(configurationIn(state, words.at(1)));
            item.identifier = words.at(0);
            item.description += ' ' + today;
            items << item;
        }
    }
    return items;
}

QString automaticBackupPath(const TemporaryHome &home, const ControllerState &state)
{
    return home.filePath(
        QStringLiteral(".ZOR/VELTRA4/v4.2.0/backup/backup_%1_%2.xml")
            .arg(QLocale::c().toString(QDate::currentDate(), QStringLiteral("yyyy-MM-dd")),
                 QString::fromLatin1(state.hostName)));
}

} // namespace

class TestEndToEndSave : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_home.emplace(); }

    void cleanup()
    {
        m_home.reset();
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    // Configurations
    void twoConfigurationsAreSavedAsTheControllersArchive()
    {
        const QString path = m_home->filePath("two.dat");
        FrontEnd frontEnd;
        save(frontEnd, {Sample::fairText, Sample::rotorText}, path, {savedBox(path)});
        const QVector<Archive::Item> items =
            copiedItems(frontEnd.record.takeCommands(), ControllerState::sample());
        QCOMPARE(items.size(), 2);
        QCOMPARE(TransferFiles::contentsOf(path), Archive::pack(items));
        QCOMPARE(items.at(1).data, configurationIn(ControllerState::sample(), Sample::fair).data);
        // The copies are gone, and the one that was active is so again.
        QCOMPARE(frontEnd.state(), ControllerState::sample());
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void whatIsSavedOfALockedOneIsWhole()
    {
        const QString path = m_home->filePath("locked.dat");
        FrontEnd frontEnd;
        save(frontEnd, {Sample::lockedText}, m_home->filePath("locked"), {savedBox(path)});
        QVector<Archive::Item> items;
        QString error;
        QVERIFY(Archive::unpack(TransferFiles::contentsOf(path), &items, &error));
        QCOMPARE(items.size(), 1);
        QCOMPARE(items.at(0).data, configurationIn(ControllerState::sample(), Sample::locked).data);
        QCOMPARE(frontEnd.state(), ControllerState::sample());
    }

    void anOlderFileIsKept()
    {
        const QString path = TransferFiles::write(m_home->filePath("old.dat"), "the older one");
        FrontEnd frontEnd;
        save(frontEnd, {Sample::fairText}, path,
             {overwriteBox("old.dat", QMessageBox::Yes), savedBox(path)});
        QCOMPARE(TransferFiles::contentsOf(path + ".bak"), QByteArray("the older one"));
        QCOMPARE(
            TransferFiles::contentsOf(path),
            Archive::pack(copiedItems(frontEnd.record.takeCommands(), ControllerState::sample())));
    }

    void theUserMayKeepTheOlderFileAsItIs()
    {
        const QString path = TransferFiles::write(m_home->filePath("old.dat"), "the older one");
        FrontEnd frontEnd;
        frontEnd.useList([&](QDialog *list) {
            frontEnd.driver.expectDialog("ConfigSaveDlgClass", [&](QDialog *dialog) {
                UserInput::click(dialog, "checkBox_allSettings");
                frontEnd.driver.expectDialog("QFileDialog", [&](QDialog *chooser) {
                    auto *name = UserInput::named<QLineEdit>(chooser, "fileNameEdit");
                    name->setText(path);
                    frontEnd.driver.expectBox(overwriteBox("old.dat", QMessageBox::No));
                    QTest::keyClick(name, Qt::Key_Return);
                    QVERIFY(chooser->isVisible());
                    chooser->reject();
                });
                UserInput::click(dialog, "pushButton_save");
                UserInput::click(dialog, "pushButton_exit");
            });
            UserInput::click(list, "pushButton_save");
        });
        QCOMPARE(TransferFiles::contentsOf(path), QByteArray("the older one"));
        QVERIFY(!QFileInfo::exists(path + ".bak"));
    }

    void cancellingTheChooserSavesNothing()
    {
        FrontEnd frontEnd;
        frontEnd.record.takeCommands();
        save(frontEnd, {Sample::fairText}, QString(), {});
        QCOMPARE(QDir(m_home->filePath(QString())).entryList(QDir::Files), QStringList());
        QCOMPARE(frontEnd.state(), ControllerState::sample());
    }

    void aDownloadThatBreaksOffLeavesTheControllerAsItWas()
    {
        const QString path = m_home->filePath("broken.dat");
        FrontEnd frontEnd;
        QString error;
        QVERIFY(frontEnd.channel.faults().add("/^system download \\d+$/#17", &error));
        save(frontEnd, {Sample::fairText}, path,
             {saveBox(
                 QMessageBox::Critical,
                 QStringLiteral("Configuration data written to the file %1 failed!\n").arg(path))});
        QCOMPARE(frontEnd.state(), ControllerState::sample());
    }

    // No copy can be made, so there is nothing to download.
    void aFullStoreIsToldOf()
    {
        ControllerState full = ControllerState::sample();
        full.storeCapacity = full.usedBytes();
        FrontEnd frontEnd(full);
        save(frontEnd, {Sample::fairText}, m_home->filePath("none.dat"),
             {saveBox(QMessageBox::Critical, "Configuration data can not be recognized.")});
        QVERIFY(!QFileInfo::exists(m_home->filePath("none.dat")));
        QCOMPARE(frontEnd.state().configurations, full.configurations);
        QCOMPARE(frontEnd.state().activeIdentifier, full.activeIdentifier);
    }

    void aFolderThatIsNotThereIsToldOf()
    {
        // Gone between the choice and the first byte.
        QVERIFY(QDir(m_home->filePath(QString())).mkpath("folder"));
        const QString path = m_home->filePath("folder/new.dat");
        FrontEnd frontEnd;
        frontEnd.record.onCommand = [this](const QByteArray &command) {
            if (command == "system download cancel") {
                QDir(m_home->filePath("folder")).removeRecursively();
            }
        };
        save(frontEnd, {Sample::fairText}, path,
             {saveBox(
                 QMessageBox::Critical,
                 QStringLiteral("Configuration data written to the file %1 failed!\n").arg(path))});
        QCOMPARE(frontEnd.state(), ControllerState::sample());
    }

    // Backup by hand
    void aBackupHoldsEverything()
    {
        const QString path = m_home->filePath("all.xml");
        FrontEnd frontEnd;
        backUp(frontEnd, path, backedUpBox());
        QCOMPARE(frontEnd.state(), ControllerState::sample());

        FullBackup backup(&frontEnd.channel, &frontEnd.versions);
        QVERIFY(backup.readFromFile(path));
        QCOMPARE(backup.name, QStringLiteral("tracker-lab2"));
        QCOMPARE(backup.serial, QStringLiteral("40217"));
        QCOMPARE(versionToString(backup.ptVersion), versionToString(frontEnd.versions.ptVersion));
        QCOMPARE(versionToString(backup.ctVersion), versionToString(frontEnd.versions.ctVersion));
        QCOMPARE(backup.systemModel, QStringLiteral("XQU"));
        QCOMPARE(backup.slaves, QStringList({"tracker-lab3", "tracker-lab4"}));
        QCOMPARE(backup.net, QStringLiteral("192.168.40.17/24"));
        QCOMPARE(backup.domain, QStringLiteral("lab.example"));
        QCOMPARE(backup.nameServer, QStringLiteral("192.168.40.1"));
        QCOMPARE(backup.ntpServer, QStringLiteral("ntp.lab.example"));
        QCOMPARE(backup.activeConfig, QString::fromLatin1(Sample::active));
        QCOMPARE(backup.configData, TransferFiles::wholeArchive(ControllerState::sample()));
    }

    void aBackupIsValid()
    {
        const QString path = m_home->filePath("all.xml");
        FrontEnd frontEnd;
        backUp(frontEnd, path, backedUpBox());
        QProcess xmllint;
        xmllint.setProcessChannelMode(QProcess::MergedChannels);
        xmllint.start("xmllint", {"--huge", "--noout", "--schema", VELTRA4_SCHEMA_PATH, path});
        QVERIFY2(xmllint.waitForFinished(), qPrintable(xmllint.errorString()));
        QVERIFY2(xmllint.exitCode() == 0, xmllint.readAll().constData());
    }

    void aBackupThatBreaksOffLeavesNoFile_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::newRow("connection error") << "system controller_embedded";
        QTest::newRow("no configurations")
            << "config number_of_configs#2"; // the first is the list's
        QTest::newRow("a garbled chunk") << "/^system download \\d+$/#5=1%20'%25'";
        QTest::newRow("a missing chunk") << "/^system download \\d+$/#900";
    }

    void aBackupThatBreaksOffLeavesNoFile()
    {
        QFETCH(QString, fault);
        const QString path = m_home->filePath("all.xml");
        FrontEnd frontEnd;
        QString error;
        QVERIFY2(frontEnd.channel.faults().add(fault, &error), qPrintable(error));
        backUp(
            frontEnd, path,
            {QMessageBox::Critical, "Invalid backup", "Error while receiving backup information!"});
        QCOMPARE(QDir(m_home->filePath(QString())).entryList(QDir::Files), QStringList());
        QCOMPARE(frontEnd.state(), ControllerState::sample());
    }

    // Backup of every day
    void everyDayIsBackedUpOnce()
    {
        const QString path = automaticBackupPath(*m_home, ControllerState::sample());
        {
            FrontEnd frontEnd;
            frontEnd.tellVersion(HostVersion::current);
            QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(path), patienceMs);
            QCOMPARE(frontEnd.state(), ControllerState::sample());
            FullBackup backup(&frontEnd.channel, &frontEnd.versions);
            QVERIFY(backup.readFromFile(path));
            QCOMPARE(backup.configData, TransferFiles::wholeArchive(ControllerState::sample()));
        }
        const QByteArray first = TransferFiles::contentsOf(path);
        const QDateTime written = QFileInfo(path).lastModified();
        FrontEnd frontEnd;
        frontEnd.tellVersion(HostVersion::current);
        frontEnd.record.takeCommands();
        QByteArrayList commands;
        QTRY_VERIFY_WITH_TIMEOUT(!(commands += frontEnd.record.takeCommands()).isEmpty(),
                                 patienceMs);
        QCOMPARE(commands, QByteArrayList({"status active", "system hostname"}));
        QCOMPARE(TransferFiles::contentsOf(path), first);
        QCOMPARE(QFileInfo(path).lastModified(), written);
        QCOMPARE(QFileInfo(path).dir().entryList(QDir::Files).size(), 1);
    }

private:
    // Opens the save dialog, chooses the configurations of these descriptions and then @p path.
    static void save(FrontEnd &frontEnd, const QStringList &descriptions, const QString &path,
                     const QVector<ExpectedBox> &boxes)
    {
        frontEnd.useList([&](QDialog *list) {
            frontEnd.driver.expectDialog("ConfigSaveDlgClass", [&](QDialog *dialog) {
                UserInput::click(dialog, "checkBox_allSettings");
                UserInput::click(dialog, "pushButton_clearSelection");
                for (const QString &description : descriptions) {
                    Table::click(dialog, description, Qt::ControlModifier);
                }
                frontEnd.driver.expectFileDialog("Save configuration(s)", path);
                for (const ExpectedBox &box : boxes) {
                    frontEnd.driver.expectBox(box);
                }
                UserInput::click(dialog, "pushButton_save");
                UserInput::click(dialog, "pushButton_exit");
            });
            UserInput::click(list, "pushButton_save");
        });
    }

    static void backUp(FrontEnd &frontEnd, const QString &path, const ExpectedBox &box)
    {
        frontEnd.useList([&](QDialog *list) {
            frontEnd.driver.expectDialog("ConfigSaveDlgClass", [&](QDialog *dialog) {
                frontEnd.driver.expectFileDialog("Backup all settings", path);
                frontEnd.driver.expectBox(box);
                UserInput::click(dialog, "pushButton_save"); // everything is chosen at first
                UserInput::click(dialog, "pushButton_exit");
            });
            UserInput::click(list, "pushButton_save");
        });
    }

    std::optional<TemporaryHome> m_home;
};

VELTRA4_TEST(TestEndToEndSave)
#include "tst_endtoendsave.moc"

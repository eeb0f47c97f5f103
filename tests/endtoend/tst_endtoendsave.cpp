#include "backup/fullbackup.h"
#include "backup/version.h"
#include "tests/endtoend/scene.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QProcess>
#include <QTest>

using namespace Story;

namespace {

Step overwriteBox(const QString &fileName)
{
    return box({QMessageBox::Warning, "Save configuration(s)",
                fileName + " already exists.\nDo you want to replace it?", QMessageBox::Yes,
                QMessageBox::Yes | QMessageBox::No, QMessageBox::No});
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

QString automaticBackupPath(const QString &hostName)
{
    return QStringLiteral(".ZOR/VELTRA4/v4.2.0/backup/backup_%1_%2.xml")
        .arg(QLocale::c().toString(QDate::currentDate(), QStringLiteral("yyyy-MM-dd")), hostName);
}

} // namespace

class TestEndToEndSave : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QVERIFY(!QGuiApplication::overrideCursor()); }

    // Configurations
    void twoConfigurationsAreSavedAsTheControllersArchive()
    {
        Scene scene;
        scene.play(save({Sample::fairText, Sample::rotorText}, "two.dat", {savedBox("two.dat")}));
        const QVector<Archive::Item> items =
            copiedItems(scene.record.takeCommands(), ControllerState::sample());
        QCOMPARE(items.size(), 2);
        QCOMPARE(TransferFiles::contentsOf(scene.filePath("two.dat")), Archive::pack(items));
        QCOMPARE(items.at(1).data, configurationIn(ControllerState::sample(), Sample::fair).data);
        // The copies are gone, and the one that was active is so again.
        QCOMPARE(scene.state(), ControllerState::sample());
        QCOMPARE(scene.record.takeMessages(), QStringList());
    }

    void whatIsSavedOfALockedOneIsWhole()
    {
        Scene scene;
        scene.play(save({Sample::lockedText}, "locked", {savedBox("locked.dat")}));
        const QVector<Archive::Item> items =
            copiedItems(scene.record.takeCommands(), ControllerState::sample());
        QCOMPARE(items.size(), 1);
        QCOMPARE(TransferFiles::contentsOf(scene.filePath("locked.dat")), Archive::pack(items));
        QCOMPARE(scene.state(), ControllerState::sample());
    }

    void anOlderFileIsKept()
    {
        Scene scene;
        const QString path = TransferFiles::write(scene.filePath("old.dat"), "the older one");
        scene.play(
            save({Sample::fairText}, "old.dat", {overwriteBox("old.dat"), savedBox("old.dat")}));
        QCOMPARE(TransferFiles::contentsOf(path + ".bak"), QByteArray("the older one"));
        QCOMPARE(
            TransferFiles::contentsOf(path),
            Archive::pack(copiedItems(scene.record.takeCommands(), ControllerState::sample())));
    }

    // No copy can be made, so there is nothing to download.
    void aFullStoreIsToldOf()
    {
        ControllerState full = ControllerState::sample();
        full.storeCapacity = full.usedBytes();
        Scene scene(full);
        scene.play(save({Sample::fairText}, "none.dat",
                        {box({QMessageBox::Critical, "Save Configurations",
                              "Configuration data can not be recognized."})}));
        QVERIFY(!QFileInfo::exists(scene.filePath("none.dat")));
        QCOMPARE(scene.state().configurations, full.configurations);
        QCOMPARE(scene.state().activeIdentifier, full.activeIdentifier);
    }

    // Backup by hand
    void aBackupHoldsEverything()
    {
        Scene scene;
        scene.play(backUp("all.xml"));
        QCOMPARE(scene.state(), ControllerState::sample());
        const QString path = scene.filePath("all.xml");

        FullBackup backup(&scene.channel, &scene.versions);
        QVERIFY(backup.readFromFile(path));
        QCOMPARE(backup.name, QStringLiteral("tracker-lab2"));
        QCOMPARE(backup.serial, QStringLiteral("40217"));
        QCOMPARE(versionToString(backup.ptVersion), versionToString(scene.versions.ptVersion));
        QCOMPARE(versionToString(backup.ctVersion), versionToString(scene.versions.ctVersion));
        QCOMPARE(backup.systemModel, QStringLiteral("XQU"));
        QCOMPARE(backup.slaves, QStringList({"tracker-lab3", "tracker-lab4"}));
        QCOMPARE(backup.net, QStringLiteral("192.168.40.17/24"));
        QCOMPARE(backup.domain, QStringLiteral("lab.example"));
        QCOMPARE(backup.nameServer, QStringLiteral("192.168.40.1"));
        QCOMPARE(backup.ntpServer, QStringLiteral("ntp.lab.example"));
        QCOMPARE(backup.activeConfig, QString::fromLatin1(Sample::active));
        QCOMPARE(backup.configData, TransferFiles::wholeArchive(ControllerState::sample()));

        QProcess xmllint;
        xmllint.setProcessChannelMode(QProcess::MergedChannels);
        xmllint.start("xmllint", {"--huge", "--noout", "--schema", VELTRA4_SCHEMA_PATH, path});
        QVERIFY2(xmllint.waitForFinished(), qPrintable(xmllint.errorString()));
        QVERIFY2(xmllint.exitCode() == 0, xmllint.readAll().constData());
    }

    void aBackupThatBreaksOffLeavesNoFile()
    {
        Scene scene;
        fault("/^system download \\d+$/#900")(scene);
        scene.play(backUp("all.xml",
                          box({QMessageBox::Critical, "Invalid backup",
                               "Error while receiving backup information!"})));
        QCOMPARE(QDir(scene.filePath("")).entryList(QDir::Files), QStringList());
        QCOMPARE(scene.state(), ControllerState::sample());
    }

    // Backup of every day
    void everyDayIsBackedUpOnce()
    {
        const TemporaryHome home;
        const QString path = home.filePath(automaticBackupPath("tracker-lab2"));
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
};

VELTRA4_TEST(TestEndToEndSave)
#include "tst_endtoendsave.moc"

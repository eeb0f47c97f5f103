#include "channel/controller.h"
#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/configurationimport.h"

#include <QDialog>
#include <QtTest>

#include <memory>

using TransferTesting::BoxCursors;
using TransferTesting::isWaiting;
using TransferTesting::takeCursors;

namespace {

ExpectedBox information(QWidget *parent, const QString &text)
{
    ExpectedBox box;
    box.icon = QMessageBox::Information;
    box.title = "Load Configurations";
    box.text = text;
    box.parent = parent;
    return box;
}

QStringList importOf(const QString &identifier)
{
    return {"setTimeout 0 20000 0", "sendCommand system import 'config' '" + identifier + "'"};
}

QString deletionOf(const QString &identifier)
{
    return "sendCommandReply veltra2 config delete_config " + identifier;
}

} // namespace

class TestConfigurationImport : public QObject
{
    Q_OBJECT

private slots:
    void newConfigurationsAreImportedInOrder()
    {
        ScriptedChannel channel;
        QDialog dialog;
        ModalDriver driver;
        driver.expectBox(information(&dialog, "Loading configuration successfully."));
        importConfigurations(Controller(&channel), {"config2", "config1", "config3"}, {}, &dialog);
        QCOMPARE(channel.trace(),
                 QStringList() << importOf("config2") << importOf("config1") << importOf("config3")
                               << ScriptedChannel::announced());
    }

    void existingConfigurationsAreAllDeletedBeforeTheFirstImport()
    {
        ScriptedChannel channel;
        QDialog dialog;
        ModalDriver driver;
        driver.expectBox(information(&dialog, "Loading configuration successfully."));
        const LockStates existing{{"config1", false}, {"config3", false}, {"config4", false}};
        importConfigurations(Controller(&channel), {"config3", "config2", "config1"}, existing,
                             &dialog);
        QCOMPARE(channel.trace(),
                 QStringList() << deletionOf("config3") << deletionOf("config1")
                               << importOf("config3") << importOf("config2") << importOf("config1")
                               << ScriptedChannel::announced());
    }

    void lockedConfigurationsAreLeftAlone()
    {
        ScriptedChannel channel;
        QDialog dialog;
        ModalDriver driver;
        driver.expectBox(information(&dialog, "Loading configuration successfully."));
        const LockStates existing{{"config1", true}, {"config2", false}};
        importConfigurations(Controller(&channel), {"config1", "config2"}, existing, &dialog);
        QCOMPARE(channel.trace(),
                 QStringList() << deletionOf("config2") << importOf("config2")
                               << ScriptedChannel::announced());
    }

    void whereNothingIsLeftNothingIsSentNorAnnounced_data()
    {
        QTest::addColumn<QStringList>("identifiers");
        QTest::newRow("nothing wanted") << QStringList();
        QTest::newRow("all locked") << QStringList({"config1", "config2"});
    }

    void whereNothingIsLeftNothingIsSentNorAnnounced()
    {
        QFETCH(const QStringList, identifiers);
        ScriptedChannel channel;
        QDialog dialog;
        ModalDriver driver;
        driver.expectBox(information(&dialog, "No configuration is loaded."));
        const LockStates existing{{"config1", true}, {"config2", true}, {"config3", false}};
        importConfigurations(Controller(&channel), identifiers, existing, &dialog);
        QCOMPARE(channel.trace(), QStringList());
    }

    void aFailedDeletionDoesNotMatter_data()
    {
        QTest::addColumn<bool>("fails");
        QTest::newRow("command fails") << true;
        QTest::newRow("controller refuses") << false;
    }

    void aFailedDeletionDoesNotMatter()
    {
        QFETCH(const bool, fails);
        ScriptedChannel channel;
        if (fails) {
            channel.fail("veltra2 config delete_config config1");
        } else {
            channel.answer("veltra2 config delete_config config1", "veltra2 error");
        }
        QDialog dialog;
        ModalDriver driver;
        driver.expectBox(information(&dialog, "Loading configuration successfully."));
        importConfigurations(Controller(&channel), {"config1"}, {{"config1", false}}, &dialog);
        QCOMPARE(channel.trace(),
                 QStringList() << deletionOf("config1") << importOf("config1")
                               << ScriptedChannel::announced());
    }

    void theFirstFailedImportEndsTheRestAndIsAnnounced_data()
    {
        QTest::addColumn<int>("failing");
        QTest::newRow("first") << 1;
        QTest::newRow("second") << 2;
        QTest::newRow("third") << 3;
    }

    void theFirstFailedImportEndsTheRestAndIsAnnounced()
    {
        QFETCH(const int, failing);
        ScriptedChannel channel;
        channel.failNth(failing);
        QDialog dialog;
        ModalDriver driver;
        driver.expectBox(information(&dialog, "Loading configuration unsuccessfully."));
        importConfigurations(Controller(&channel), {"config1", "config2", "config3"}, {}, &dialog);
        QStringList expected;
        for (int i = 1; i <= failing; ++i) {
            expected << importOf("config" + QString::number(i));
        }
        QCOMPARE(channel.trace(), expected << ScriptedChannel::announced());
    }

    void anIdentifierIsSentAsItWasRead()
    {
        const QString identifier = QString::fromLatin1("caf\xe9 %s%n");
        ScriptedChannel channel;
        QDialog dialog;
        ModalDriver driver;
        driver.expectBox(information(&dialog, "Loading configuration successfully."));
        importConfigurations(Controller(&channel), {identifier}, {{identifier, false}}, &dialog);
        QCOMPARE(channel.trace(),
                 QStringList() << deletionOf(identifier) << importOf(identifier)
                               << ScriptedChannel::announced());
    }

    void theWaitCursorCoversTheCommandsAndNoBox_data()
    {
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<bool>("fails");
        QTest::addColumn<QString>("outcome");
        QTest::newRow("success") << "config1" << false << "Loading configuration successfully.";
        QTest::newRow("failure") << "config1" << true << "Loading configuration unsuccessfully.";
        QTest::newRow("nothing") << "config2" << false << "No configuration is loaded.";
    }

    void theWaitCursorCoversTheCommandsAndNoBox()
    {
        QFETCH(const QString, identifier);
        QFETCH(const bool, fails);
        QFETCH(const QString, outcome);
        ScriptedChannel channel;
        QList<bool> waiting;
        const auto note = [&waiting] { waiting << isWaiting(); };
        channel.whenSent("veltra2 config delete_config config1", note);
        channel.whenSent("system import 'config' 'config1'", note);
        if (fails) {
            channel.fail("system import 'config' 'config1'");
        }
        QDialog dialog;
        const BoxCursors boxes;
        ModalDriver driver;
        driver.expectBox(information(&dialog, outcome));
        const LockStates existing{{"config1", false}, {"config2", true}};
        importConfigurations(Controller(&channel), {identifier}, existing, &dialog);
        QCOMPARE(waiting, identifier == "config1" ? QList<bool>({true, true}) : QList<bool>());
        QCOMPARE(boxes.boxes(), 1);
        QVERIFY(!boxes.wasAnyWaiting());
        QCOMPARE(takeCursors(), 0);
    }

    void theHostMayDestroyTheDialogWhileTheBoxIsOpen_data()
    {
        QTest::addColumn<QStringList>("identifiers");
        QTest::newRow("after an import") << QStringList("config1");
        QTest::newRow("where nothing is left") << QStringList();
    }

    void theHostMayDestroyTheDialogWhileTheBoxIsOpen()
    {
        QFETCH(const QStringList, identifiers);
        ScriptedChannel channel;
        auto dialog = std::make_unique<QDialog>();
        ModalDriver driver;
        driver.expectDialog(QString(), [&dialog](QDialog *) { dialog.reset(); });
        importConfigurations(Controller(&channel), identifiers, {}, dialog.get());
        QVERIFY(!dialog);
        QCOMPARE(takeCursors(), 0);
    }
};

VELTRA4_TEST(TestConfigurationImport)
#include "tst_configurationimport.moc"

#include "channel/controller.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transferstage.h"
#include "transfer/configurationimport.h"

#include <QTest>

namespace {

const QString success = "Loading configuration successfully.";
const QString importFailure = "Loading configuration unsuccessfully.";
const QString nothingLoaded = "No configuration is loaded.";

struct ImportStage : TransferStage
{
    /// @return what is sent, up to the box that tells @p outcome
    QStringList import(const QStringList &identifiers, const LockStates &existing,
                       const QString &outcome)
    {
        driver.expectBox(TransferTesting::okBox(QMessageBox::Information, "Load Configurations",
                                                outcome, dialog));
        importConfigurations(Controller(&channel), identifiers, existing, dialog);
        return channel.trace();
    }
};

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
    void existingConfigurationsAreAllDeletedBeforeTheFirstImport()
    {
        const LockStates existing{{"config1", false}, {"config3", false}, {"config4", false}};
        QCOMPARE(ImportStage().import({"config3", "config2", "config1"}, existing, success),
                 QStringList() << deletionOf("config3") << deletionOf("config1")
                               << importOf("config3") << importOf("config2") << importOf("config1")
                               << ScriptedChannel::announced());
    }

    void lockedConfigurationsAreLeftAlone()
    {
        const LockStates existing{{"config1", true}, {"config2", false}};
        QCOMPARE(ImportStage().import({"config1", "config2"}, existing, success),
                 QStringList() << deletionOf("config2") << importOf("config2")
                               << ScriptedChannel::announced());
    }

    void whereNothingIsLeftNothingIsSentNorAnnounced()
    {
        const LockStates existing{{"config1", true}, {"config2", true}, {"config3", false}};
        QCOMPARE(ImportStage().import({}, existing, nothingLoaded), QStringList());
        QCOMPARE(ImportStage().import({"config1", "config2"}, existing, nothingLoaded),
                 QStringList());
    }

    void aFailedDeletionDoesNotMatter()
    {
        const LockStates existing{{"config1", false}};
        for (const bool isAnswered : {false, true}) {
            ImportStage f;
            if (isAnswered) {
                f.channel.answer("veltra2 config delete_config config1", "veltra2 error");
            } else {
                f.channel.fail("veltra2 config delete_config config1");
            }
            QCOMPARE(f.import({"config1"}, existing, success),
                     QStringList() << deletionOf("config1") << importOf("config1")
                                   << ScriptedChannel::announced());
        }
    }

    void theFirstFailedImportEndsTheRestAndIsAnnounced()
    {
        QStringList expected;
        for (int failing = 1; failing <= 3; ++failing) {
            ImportStage f;
            f.channel.failNth(failing);
            expected << importOf("config" + QString::number(failing));
            QCOMPARE(f.import({"config1", "config2", "config3"}, {}, importFailure),
                     expected + QStringList(ScriptedChannel::announced()));
        }
    }

    void anIdentifierIsSentAsItWasRead()
    {
        const QString identifier = QString::fromLatin1("caf\xe9 %s%n");
        QCOMPARE(ImportStage().import({identifier}, {{identifier, false}}, success),
                 QStringList() << deletionOf(identifier) << importOf(identifier)
                               << ScriptedChannel::announced());
    }

    void theWaitCursorCoversTheCommands()
    {
        ImportStage f;
        f.noteCursorAt("veltra2 config delete_config config1");
        f.noteCursorAt("system import 'config' 'config1'");
        f.import({"config1"}, {{"config1", false}}, success);
        QCOMPARE(f.cursors, QList<bool>({true, true}));
    }

    void theHostMayDestroyTheDialogWhileTheBoxIsOpen()
    {
        for (const QStringList &identifiers : {QStringList("config1"), QStringList()}) {
            ImportStage f;
            f.expectDestruction();
            importConfigurations(Controller(&f.channel), identifiers, {}, f.dialog);
            QVERIFY(!f.parent);
        }
    }
};

VELTRA4_TEST(TestConfigurationImport)
#include "tst_configurationimport.moc"

#include "hostapi/backendversions.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transferstage.h"
#include "transfer/configloaddlg.h"

#include <QPointer>
#include <QTest>

#include <functional>

namespace {

struct BrokenSchemaStage : TransferStage
{
    void chooseFile(const QByteArray &contents)
    {
        driver.expectFileDialog("Load Configurations",
                                TransferTesting::writeFile(path("some.xml"), contents));
    }

    BackendVersions versions;
    QPointer<ConfigLoadDlg> loadDialog = new ConfigLoadDlg(&channel, &versions, parent.get());
};

} // namespace

/// The load dialog of a plug-in that was built with a broken schema.
class TestBrokenSchema : public QObject
{
    Q_OBJECT

private slots:
    void noFileCanBeLoaded()
    {
        for (const char *contents : {"<ZOR/>", "\x01", ""}) {
            BrokenSchemaStage f;
            f.chooseFile(contents);
            f.driver.expectBox(TransferTesting::okBox(QMessageBox::Critical, "Development error",
                                                      "XMLSchema is invalid!", f.loadDialog));
            QCOMPARE(f.loadDialog->openAndExec(), -1);
            QCOMPARE(f.channel.trace(),
                     QStringList(ScriptedChannel::reported(
                         "Error: Unable to validate backup or configuration file")));
        }
    }

    void theHostMayDestroyTheWindowWhileTheBoxIsOpen()
    {
        expectSilentEnd([](BrokenSchemaStage &f) { f.parent.reset(); });
    }

    void theHostMayReleaseTheModuleWhileTheBoxIsOpen()
    {
        expectSilentEnd([](BrokenSchemaStage &f) { delete f.loadDialog; });
    }

private:
    static void expectSilentEnd(const std::function<void(BrokenSchemaStage &)> &destroy)
    {
        BrokenSchemaStage f;
        f.chooseFile("data");
        f.driver.expectDialog({}, [&](QDialog *) { destroy(f); });
        f.loadDialog->openAndExec();
        QVERIFY(!f.loadDialog);
        QCOMPARE(f.channel.trace(), QStringList());
    }
};

VELTRA4_TEST(TestBrokenSchema)
#include "tst_brokenschema.moc"

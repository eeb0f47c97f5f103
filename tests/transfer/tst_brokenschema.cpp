#include "hostapi/backendversions.h"
#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/configloaddlg.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

/// The load dialog of a plug-in that was built with a broken schema.
class TestBrokenSchema : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void noFileCanBeLoaded_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::newRow("backup") << QByteArray("<ZOR/>");
        QTest::newRow("configurations") << QByteArray("\x01");
        QTest::newRow("nothing") << QByteArray();
    }

    void noFileCanBeLoaded()
    {
        QFETCH(const QByteArray, contents);
        const QString path = TransferTesting::writeFile(m_folder.filePath("some.xml"), contents);
        ScriptedChannel channel;
        BackendVersions versions;
        QWidget parent;
        ConfigLoadDlg dialog(&channel, &versions, &parent);
        ModalDriver driver;
        driver.expectFileDialog("Load Configurations", path);
        ExpectedBox box;
        box.icon = QMessageBox::Critical;
        box.title = "Development error";
        box.text = "XMLSchema is invalid!";
        box.parent = &dialog;
        driver.expectBox(box);
        QCOMPARE(dialog.openAndExec(), -1);
        QCOMPARE(channel.trace(),
                 QStringList(ScriptedChannel::reported(
                     "Error: Unable to validate backup or configuration file")));
        QCOMPARE(TransferTesting::takeCursors(), 0);
    }

    void theHostMayDestroyTheDialogWhileTheBoxIsOpen_data()
    {
        QTest::addColumn<bool>("isWindow");
        QTest::newRow("the module is released") << false;
        QTest::newRow("the window is destroyed") << true;
    }

    void theHostMayDestroyTheDialogWhileTheBoxIsOpen()
    {
        QFETCH(const bool, isWindow);
        const QString path = TransferTesting::writeFile(m_folder.filePath("some.dat"), "data");
        ScriptedChannel channel;
        BackendVersions versions;
        auto parent = std::make_unique<QWidget>();
        const QPointer<ConfigLoadDlg> dialog(new ConfigLoadDlg(&channel, &versions, parent.get()));
        ModalDriver driver;
        driver.expectFileDialog("Load Configurations", path);
        driver.expectDialog({}, [&](QDialog *) {
            if (isWindow) {
                parent.reset();
            } else {
                delete dialog;
            }
        });
        dialog->openAndExec();
        QVERIFY(!dialog);
        QCOMPARE(channel.trace(), QStringList());
    }

private:
    QTemporaryDir m_folder;
};

VELTRA4_TEST(TestBrokenSchema)
#include "tst_brokenschema.moc"

#include "channel/transferencoding.h"
#include "hostapi/backendversions.h"
#include "hostapi/messagereceiver.h"
#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/transfer/formtesting.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/configsavedlg.h"

#include <QAbstractEventDispatcher>
#include <QCheckBox>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

using namespace FormTesting;
using namespace TransferTesting;

namespace {

using Action = std::function<void()>;

// What the automatic backup asks first.
const QStringList automaticBackup("queryString status active");

// The objects behind QTimer::singleShot() belong to the event dispatcher.
QObjectList singleShotTimers()
{
    QObjectList timers;
    for (QObject *object : QAbstractEventDispatcher::instance()->children()) {
        if (object->inherits("QSingleShotTimer")) {
            timers << object;
        }
    }
    return timers;
}

QList<QAbstractEventDispatcher::TimerInfo> running(QObject *timer)
{
    return QAbstractEventDispatcher::instance()->registeredTimers(timer);
}

void letExpire(QObject *timer)
{
    QTimerEvent due(running(timer).first().timerId);
    QCoreApplication::sendEvent(timer, &due);
}

} // namespace

class TestConfigSaveDlg : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_channel = std::make_unique<ScriptedChannel>();
        m_channel->answer("status active", "tracking"); // too busy for an automatic backup
        m_channel->answer("config active_config", "id1");
        m_channel->answer("config desc", "Lab");
        m_channel->answer("system download available", "yes");
        m_channel->answer("system download 1", "1 '" + TransferEncoding::encode("data") + '\'');
        m_dialog = std::make_unique<ConfigSaveDlg>(m_channel.get(), &m_versions, nullptr);
        m_dialog->setConfigurationList(someEntries());
        m_channel->takeTrace();
        m_driver = std::make_unique<ModalDriver>();
    }

    void cleanup()
    {
        m_driver.reset();
        m_dialog.reset();
        m_channel.reset();
        QCOMPARE(takeCursors(), 0);
    }

    void theFormIsAsDesigned()
    {
        compareWidgets(
            m_dialog.get(),
            {{"label_selectConfigs", "QLabel", "select configuration(s) to save"},
             {"pushButton_selectAll", "QPushButton", "Select &all",
              "Select all entries in the list"},
             {"pushButton_clearSelection", "QPushButton", "&Clear",
              "Clear the selection in the list"},
             {"checkBox_allSettings", "QCheckBox", "a&ll settings and configurations (backup)"},
             {"pushButton_save", "QPushButton", "&Save",
              "Save selected configurations into one .dat file"},
             {"pushButton_exit", "QPushButton", "E&xit", "Close dialog without saving"},
             {"label_error", "QLabel", ""}});
        QCOMPARE(m_dialog->objectName(), "ConfigSaveDlgClass");
        QCOMPARE(m_dialog->windowTitle(), "Save Configurations");
        QCOMPARE(m_dialog->whatsThis(), "Save configurations");
        QCOMPARE(m_dialog->size(), QSize(600, 400));
        QCOMPARE(m_dialog->minimumSize(), QSize(600, 400));
        QCOMPARE(find<QFrame>("line")->frameShape(), QFrame::HLine);
        QVERIFY(!find<QCheckBox>("checkBox_allSettings")->isChecked());
        for (const char *name :
             {"pushButton_selectAll", "pushButton_clearSelection", "pushButton_save"}) {
            QVERIFY2(!find<QPushButton>(name)->autoDefault(), name);
        }
        QVERIFY(find<QPushButton>("pushButton_exit")->autoDefault());
    }

    void theLayoutIsAsDesigned()
    {
        for (const char *name : {"verticalLayout", "verticalLayout_selectConfigs",
                                 "horizontalLayout_selectConfigsButtons",
                                 "horizontalLayout_allSettings", "horizontalLayout"}) {
            QVERIFY2(m_dialog->findChild<QLayout *>(name), name);
        }
        for (const char *name : {"tableWidget_selectConfigs", "label_selectConfigs",
                                 "pushButton_selectAll", "pushButton_clearSelection"}) {
            QCOMPARE(find<QWidget>(name)->parentWidget()->objectName(), "widget_selectConfigs");
        }
        QCOMPARE(find<QWidget>("checkBox_allSettings")->parentWidget(), m_dialog.get());
    }

    void theTableIsAsDesigned()
    {
        QCOMPARE(table()->rowCount(), 0);
        QCOMPARE(headersOf(table()), QStringList({"Description", "Owner", "ID"}));
        QCOMPARE(table()->editTriggers(), QAbstractItemView::NoEditTriggers);
        QCOMPARE(table()->selectionMode(), QAbstractItemView::MultiSelection);
        QCOMPARE(table()->selectionBehavior(), QAbstractItemView::SelectRows);
        const auto *horizontal = table()->horizontalHeader();
        QCOMPARE(horizontal->minimumSectionSize(), 50);
        QCOMPARE(horizontal->defaultSectionSize(), 100);
        QVERIFY(horizontal->stretchLastSection());
        QVERIFY(!horizontal->sectionsClickable());
        QCOMPARE(table()->verticalHeader()->minimumSectionSize(), 28);
        QCOMPARE(table()->verticalHeader()->defaultSectionSize(), 28);
    }

    void theTabOrderFollowsTheLayout()
    {
        showSelection([&] {
            selectRows({1}); // so that all buttons are enabled
            QCOMPARE(tabOrder(table()),
                     QStringList({"tableWidget_selectConfigs", "pushButton_selectAll",
                                  "pushButton_clearSelection", "checkBox_allSettings",
                                  "pushButton_save", "pushButton_exit"}));
        });
        QCOMPARE(find<QLabel>("label_selectConfigs")->buddy(), table());
    }

    void theColumnsTakeThreeTenthsOfTheDialog()
    {
        show([&] {
            table()->horizontalHeader()->setStretchLastSection(false); // which widens the last one
            m_dialog->resize(1009, 500);
            for (int column = 0; column < 3; ++column) {
                QCOMPARE(table()->columnWidth(column), 302); // truncated
            }
        });
    }

    void registersItsReceiverAndUnregistersItUnderTheOtherName()
    {
        ScriptedChannel channel;
        {
            const ConfigSaveDlg dialog(&channel, &m_versions, nullptr);
            QCOMPARE(channel.takeTrace(), QStringList("addMessageReceiver ConfigurationsModule"));
            QCOMPARE(channel.receivers().size(), 1);
        }
        QCOMPARE(channel.takeTrace(), QStringList("removeMessageReceiver ServiceModule"));
        QCOMPARE(channel.receivers().size(), 0);
    }

    void armsTheAutomaticBackupOnce()
    {
        const int before = singleShotTimers().size();
        const ConfigSaveDlg dialog(m_channel.get(), &m_versions, nullptr);
        QCOMPARE(singleShotTimers().size(), before + 1);
        QObject *timer = singleShotTimers().constLast();
        QCOMPARE(running(timer).size(), 1);
        QCOMPARE(running(timer).first().interval, 2000);
        m_channel->takeTrace();
        letExpire(timer);
        QCOMPARE(m_channel->takeTrace(), automaticBackup);
    }

    void theAutomaticBackupDiesWithTheDialog()
    {
        auto dialog = std::make_unique<ConfigSaveDlg>(m_channel.get(), &m_versions, nullptr);
        QObject *timer = singleShotTimers().constLast();
        dialog.reset();
        m_channel->takeTrace();
        letExpire(timer);
        QCOMPARE(m_channel->takeTrace(), QStringList());
    }

    void theHostVersionDecidesOnAutomaticBackups()
    {
        MessageReceiver *receiver = m_channel->receivers().first().second;
        const auto isBackedUp = [&](const char *version) {
            receiver->receiveMessage(7, "Veltra2", version);
            m_dialog->doAutomaticBackup();
            return m_channel->takeTrace() == automaticBackup;
        };
        for (const char *version :
             {"v5.0", "v2.9", "V4.1", "v4", "v40.1", "v33.1", "4.1", " v4.1", ""}) {
            QVERIFY2(!isBackedUp(version), version);
        }
        for (const char *version : {"v4.12.3", "v4.", "v3.0"}) {
            QVERIFY2(isBackedUp(version), version);
        }
    }

    void aHostVersionThatComesAfterTheTimerWasArmedCounts()
    {
        m_channel->answer("status active", "none");
        m_channel->answer("system hostname", "lab");
        m_dialog->onSendModulParentVersion("v4.2-late");
        m_dialog->doAutomaticBackup();
        QVERIFY(QDir(inHome(".ZOR/VELTRA4/v4.2-late/backup")).exists());
    }

    void opensInBackupModeWithEverythingSelected()
    {
        show([&] {
            QVERIFY(find<QCheckBox>("checkBox_allSettings")->isChecked());
            QVERIFY(!isEnabled("widget_selectConfigs"));
            QVERIFY(isEnabled("pushButton_save"));
            QVERIFY(!find<QLabel>("label_error")->isVisible());
            QCOMPARE(find<QLabel>("label_error")->text(), "");
            QCOMPARE(selection(), QList<int>({0, 1, 2}));
            QVERIFY(m_dialog->isModal());
        });
        QCOMPARE(m_channel->takeTrace(), QStringList());
    }

    void showsTheEntriesInOrder()
    {
        show([&] {
            QCOMPARE(table()->rowCount(), 3);
            for (int row = 0; row < 3; ++row) {
                const QString number = QString::number(row + 1);
                QCOMPARE(rowOf(table(), row),
                         QStringList({"description " + number, "owner " + number, "id" + number}));
                QCOMPARE(table()->rowHeight(row), 28);
            }
        });
    }

    void withoutConfigurationsNothingCanBeSaved()
    {
        m_dialog->setConfigurationList({});
        show([&] {
            QCOMPARE(table()->rowCount(), 0);
            QVERIFY(find<QLabel>("label_error")->isVisible());
            QCOMPARE(find<QLabel>("label_error")->text(),
                     "<b><font color=red>No configuration available!</font></b>");
            toggleBackup();
            QVERIFY(isEnabled("widget_selectConfigs"));
            for (const char *name :
                 {"label_selectConfigs", "tableWidget_selectConfigs", "pushButton_selectAll",
                  "pushButton_clearSelection", "pushButton_save"}) {
                QVERIFY2(!isEnabled(name), name);
            }
            toggleBackup();
            QVERIFY(!isEnabled("pushButton_save"));
            click("pushButton_save");
        });
        QCOMPARE(m_channel->takeTrace(), QStringList());
    }

    void aLaterShowingReplacesTheEntries()
    {
        showSelection([] {});
        m_dialog->setConfigurationList({{"id9", "description 9", "owner 9", false}});
        show([&] {
            QCOMPARE(table()->rowCount(), 1);
            QCOMPARE(table()->item(0, 2)->text(), "id9");
            QVERIFY(find<QCheckBox>("checkBox_allSettings")->isChecked());
            QVERIFY(!isEnabled("widget_selectConfigs"));
            QCOMPARE(selection(), QList<int>({0}));
        });
    }

    void aLaterShowingWithTheBoxStillTickedIsForABackup()
    {
        show([] {});
        QVERIFY(find<QCheckBox>("checkBox_allSettings")->isChecked());
        show([&] {
            QVERIFY(!isEnabled("widget_selectConfigs"));
            QCOMPARE(selection(), QList<int>({0, 1, 2}));
        });
    }

    void whetherItCanSaveFollowsTheEntries()
    {
        for (const bool isAny : {true, false, true}) {
            m_dialog->setConfigurationList(isAny ? someEntries() : ConfigEntryList());
            show([&] {
                QCOMPARE(isEnabled("pushButton_save"), isAny);
                QCOMPARE(find<QLabel>("label_error")->isVisible(), !isAny);
            });
        }
    }

    void uncheckingTheBoxEnablesTheSelection()
    {
        showSelection([&] {
            QVERIFY(isEnabled("widget_selectConfigs"));
            QVERIFY(isEnabled("tableWidget_selectConfigs"));
            QCOMPARE(buttons(), "-C!");
            QCOMPARE(selection(), QList<int>({0, 1, 2}));
        });
    }

    void checkingTheBoxSelectsEverythingAgain()
    {
        showSelection([&] {
            click("pushButton_clearSelection");
            QVERIFY(!isEnabled("pushButton_save"));
            toggleBackup();
            QCOMPARE(selection(), QList<int>({0, 1, 2}));
            QVERIFY(!isEnabled("widget_selectConfigs"));
            QVERIFY(isEnabled("pushButton_save"));
        });
    }

    void clearAndSelectAllSelect()
    {
        showSelection([&] {
            click("pushButton_clearSelection");
            QCOMPARE(selection(), QList<int>());
            QCOMPARE(m_dialog->focusWidget(), table());
            find<QWidget>("pushButton_selectAll")->setFocus();
            click("pushButton_selectAll");
            QCOMPARE(selection(), QList<int>({0, 1, 2}));
            QCOMPARE(m_dialog->focusWidget(), table());
        });
    }

    void theButtonsFollowTheSelection()
    {
        showSelection([&] {
            const QList<QPair<QList<int>, const char *>> selections{
                {{}, "A--"}, {{1}, "AC!"}, {{0, 2}, "AC!"}, {{0, 1, 2}, "-C!"}};
            for (const auto &[rows, expected] : selections) {
                selectRows(rows);
                QCOMPARE(buttons(), expected);
            }
        });
    }

    void withoutColumnsThereIsNoSelectionToFollow()
    {
        showSelection([&] {
            auto *save = find<QPushButton>("pushButton_save");
            table()->setColumnCount(0);
            save->setEnabled(true);
            QVERIFY(QMetaObject::invokeMethod(m_dialog.get(),
                                              "on_tableWidget_selectConfigs_itemSelectionChanged"));
            QVERIFY(save->isEnabled());
        });
    }

    void everyWayOutCountsAsAccepted()
    {
        const QList<Action> ways{
            [&] { click("pushButton_exit"); },
            [&] { QTest::keyClick(m_dialog.get(), Qt::Key_Escape); }, [&] { m_dialog->close(); },
            [&] { QTest::keyClick(m_dialog.get(), Qt::Key_Return); }, // which is "Exit"
        };
        for (const Action &way : ways) {
            m_dialog->setResult(-1);
            m_driver->expectDialog("ConfigSaveDlgClass", [way](QDialog *) { way(); });
            m_dialog->runSaveDialog();
            QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
            QVERIFY(!m_dialog->isVisible());
        }
    }

    void savesTheSelectedRowsInTableOrder()
    {
        showSelection([&] {
            selectRows({2, 0});
            answerSave(inHome("ordered")); // completed with the extension
            click("pushButton_save");
        });
        const QStringList clones = m_channel->trace().filter("clone_config");
        QCOMPARE(clones.size(), 2);
        QVERIFY(clones.at(0).endsWith(" id1"));
        QVERIFY(clones.at(1).endsWith(" id3"));
        QCOMPARE(contentsOf(inHome("ordered.dat")), QByteArray("data"));
    }

    void proposesANameInTheLastDirectory()
    {
        const QTemporaryDir elsewhere;
        const auto choose = [&](const QString &path, const QString &proposal) {
            m_driver->expectFileDialog("Save configuration(s)", path, [=](QFileDialog *chooser) {
                QCOMPARE(chooser->directory().path() + '/'
                             + chooser->findChild<QLineEdit *>("fileNameEdit")->text(),
                         proposal);
                QCOMPARE(chooser->nameFilters(), QStringList("Configuration file (*.dat)"));
                QCOMPARE(chooser->parentWidget(), m_dialog.get());
                QCOMPARE(chooser->acceptMode(), QFileDialog::AcceptSave);
            });
        };
        showSelection([&] {
            choose(elsewhere.filePath("cal"), inHome("configuration.dat"));
            m_driver->expectDialog({}, [](QDialog *box) { box->accept(); });
            click("pushButton_save");
        });
        showSelection([&] { // once more, in the directory of the last choice; nothing is chosen
            for (int i = 0; i < 2; ++i) {
                choose({}, elsewhere.filePath("configuration.dat"));
                click("pushButton_save");
            }
        });
    }

    void aCancelledChoiceSendsNothing()
    {
        showSelection([&] {
            find<QWidget>("pushButton_save")->setFocus();
            m_driver->expectFileDialog("Save configuration(s)", {});
            click("pushButton_save");
            QCOMPARE(m_dialog->focusWidget(), table());
        });
        QCOMPARE(m_channel->takeTrace(), QStringList());
    }

    void nothingSelectedSavesNothing()
    {
        showSelection([&] {
            click("pushButton_clearSelection");
            // The button is disabled; whoever reaches the slot otherwise gets no further either.
            QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), "on_pushButton_save_clicked"));
        });
        QCOMPARE(m_channel->takeTrace(), QStringList());
    }

    void aListThatShrankMeanwhileIsNoHarm()
    {
        showSelection([&] {
            m_dialog->setConfigurationList(someEntries().mid(0, 1));
            answerSave(inHome("shrunken.dat"));
            click("pushButton_save");
        });
        QCOMPARE(m_channel->trace().filter("clone_config").size(), 1);
    }

    void theCheckedBoxStartsTheManualBackup()
    {
        show([&] {
            m_driver->expectFileDialog("Backup all settings", {});
            click("pushButton_save");
            QVERIFY(m_dialog->isVisible());
        });
        QCOMPARE(m_channel->takeTrace(),
                 QStringList({"queryString system controller_serial", "queryString system model",
                              "queryString system model_description"}));
    }

    void theDialogMayVanishWhileAFileIsChosen()
    {
        showSelection([this] { saveAndVanishAt("QFileDialog"); });
        QVERIFY(!m_dialog);
        QCOMPARE(m_channel->trace().filter("sendCommand").size(), 0);
    }

    void theDialogMayVanishWhileTheFileOfABackupIsChosen()
    {
        show([this] { saveAndVanishAt("QFileDialog"); });
        QVERIFY(!m_dialog);
        QCOMPARE(m_channel->trace().filter("sendCommand").size(), 0);
    }

    void theDialogMayVanishWhileABoxIsOpen()
    {
        showSelection([this] {
            m_driver->expectFileDialog("Save configuration(s)", inHome("vanished.dat"));
            saveAndVanishAt({});
        });
        QVERIFY(!m_dialog);
    }

    void theDialogMayVanishWhileItIsShown()
    {
        show([this] { m_dialog.reset(); });
        QVERIFY(!m_dialog);
    }

private:
    static ConfigEntryList someEntries()
    {
        return {{"id1", "description 1", "owner 1", false},
                {"id2", "description 2", "owner 2", true},
                {"id3", "description 3", "owner 3", false}};
    }

    template <typename Widget>
    Widget *find(const char *name) const
    {
        return UserInput::named<Widget>(m_dialog.get(), name);
    }
    QTableWidget *table() const { return find<QTableWidget>("tableWidget_selectConfigs"); }
    bool isEnabled(const char *name) const { return find<QWidget>(name)->isEnabled(); }
    QString buttons() const { return enabledButtons(m_dialog.get(), "pushButton_save"); }
    QList<int> selection() const { return selectedRows(table()); }
    void click(const char *button) const { UserInput::click(m_dialog.get(), button); }
    void toggleBackup() const { click("checkBox_allSettings"); }

    void selectRows(const QList<int> &rows) const
    {
        table()->clearSelection();
        for (const int row : rows) {
            table()->selectRow(row);
        }
    }

    // Shows the dialog, runs the action inside and closes it.
    void show(const Action &action)
    {
        m_driver->expectDialog("ConfigSaveDlgClass", [this, action](QDialog *) {
            action();
            if (m_dialog) {
                click("pushButton_exit");
            }
        });
        m_dialog->runSaveDialog();
        m_driver->verify();
    }

    // The same, after the user has chosen to select configurations.
    void showSelection(const Action &action)
    {
        show([this, action] {
            toggleBackup();
            action();
        });
    }

    // The user chooses the file and sees the outcome.
    void answerSave(const QString &fileName)
    {
        m_driver->expectFileDialog("Save configuration(s)", fileName);
        m_driver->expectDialog({}, [](QDialog *box) { box->accept(); });
    }

    void saveAndVanishAt(const QString &window)
    {
        m_driver->expectDialog(window, [this](QDialog *) { m_dialog.reset(); });
        click("pushButton_save");
    }

    QString inHome(const QString &name) const { return QDir::homePath() + '/' + name; }

    std::unique_ptr<ScriptedChannel> m_channel;
    BackendVersions m_versions;
    std::unique_ptr<ConfigSaveDlg> m_dialog;
    std::unique_ptr<ModalDriver> m_driver;
};

VELTRA4_TEST(TestConfigSaveDlg)
#include "tst_configsavedlg.moc"

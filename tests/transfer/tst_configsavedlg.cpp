#include "channel/transferencoding.h"
#include "hostapi/backendversions.h"
#include "hostapi/messagereceiver.h"
#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
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
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace TransferTesting;

namespace {

ConfigEntryList someEntries()
{
    return {{"id1", "description 1", "owner 1", false},
            {"id2", "description 2", "owner 2", true},
            {"id3", "description 3", "owner 3", false}};
}

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

} // namespace

class TestConfigSaveDlg : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_channel = std::make_unique<ScriptedChannel>();
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
        QDir home(QDir::homePath());
        for (const QString &name : home.entryList({"*.dat", "*.bak", "*.DAT"}, QDir::Files)) {
            home.remove(name);
        }
        QCOMPARE(takeCursors(), 0);
    }

    void theFormIsAsDesigned()
    {
        QCOMPARE(m_dialog->objectName(), QString("ConfigSaveDlgClass"));
        QCOMPARE(m_dialog->windowTitle(), QString("Save Configurations"));
        QCOMPARE(m_dialog->whatsThis(), QString("Save configurations"));
        QCOMPARE(m_dialog->size(), QSize(600, 400));
        QCOMPARE(m_dialog->minimumSize(), QSize(600, 400));
        for (const char *name : {"verticalLayout", "verticalLayout_selectConfigs",
                                 "horizontalLayout_selectConfigsButtons",
                                 "horizontalLayout_allSettings", "horizontalLayout"}) {
            find<QLayout>(name);
        }
        auto *area = find<QWidget>("widget_selectConfigs");
        QCOMPARE(table()->parentWidget(), area);
        QCOMPARE(find<QWidget>("label_selectConfigs")->parentWidget(), area);
        QCOMPARE(find<QWidget>("pushButton_selectAll")->parentWidget(), area);
        QCOMPARE(find<QWidget>("pushButton_clearSelection")->parentWidget(), area);
        QCOMPARE(find<QWidget>("checkBox_allSettings")->parentWidget(), m_dialog.get());
        QCOMPARE(find<QFrame>("line")->frameShape(), QFrame::HLine);
        QVERIFY(!find<QPushButton>("pushButton_selectAll")->autoDefault());
        QVERIFY(!find<QPushButton>("pushButton_clearSelection")->autoDefault());
        QVERIFY(!find<QPushButton>("pushButton_save")->autoDefault());
        QVERIFY(find<QPushButton>("pushButton_exit")->autoDefault());
        QVERIFY(!find<QCheckBox>("checkBox_allSettings")->isChecked());
    }

    void theTextsAreAsDesigned_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("whatsThis");
        const auto row = [](const char *name, const char *text, const char *whatsThis) {
            QTest::newRow(name) << name << text << whatsThis;
        };
        row("label_selectConfigs", "select configuration(s) to save", "");
        row("pushButton_selectAll", "Select &all", "Select all entries in the list");
        row("pushButton_clearSelection", "&Clear", "Clear the selection in the list");
        row("checkBox_allSettings", "a&ll settings and configurations (backup)", "");
        row("pushButton_save", "&Save", "Save selected configurations into one .dat file");
        row("pushButton_exit", "E&xit", "Close dialog without saving");
        row("label_error", "", "");
    }

    void theTextsAreAsDesigned()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, text);
        QFETCH(const QString, whatsThis);
        auto *widget = find<QWidget>(name.toLatin1());
        QCOMPARE(widget->property("text").toString(), text);
        QCOMPARE(widget->whatsThis(), whatsThis);
    }

    void theTableIsAsDesigned()
    {
        QCOMPARE(table()->rowCount(), 0);
        QStringList headers;
        for (int column = 0; column < table()->columnCount(); ++column) {
            headers << table()->horizontalHeaderItem(column)->text();
        }
        QCOMPARE(headers, QStringList({"Description", "Owner", "ID"}));
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
        const QList<const char *> order{"tableWidget_selectConfigs", "pushButton_selectAll",
                                        "pushButton_clearSelection", "checkBox_allSettings",
                                        "pushButton_save",           "pushButton_exit"};
        showSelection([&] {
            selectRows({1}); // so that all buttons are enabled
            table()->setFocus();
            for (const char *name : order) {
                QCOMPARE(m_dialog->focusWidget()->objectName(), QString(name));
                QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Tab);
            }
        });
        QCOMPARE(find<QLabel>("label_selectConfigs")->buddy(), table());
    }

    void theColumnsTakeThreeTenthsOfTheDialog_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("columnWidth");
        QTest::newRow("700") << 700 << 210;
        QTest::newRow("truncated") << 1001 << 300;
        QTest::newRow("truncated, just below the next") << 1009 << 302;
    }

    void theColumnsTakeThreeTenthsOfTheDialog()
    {
        QFETCH(const int, width);
        QFETCH(const int, columnWidth);
        show([&] {
            table()->horizontalHeader()->setStretchLastSection(false); // which widens the last one
            m_dialog->resize(width, 500);
            for (int column = 0; column < 3; ++column) {
                QCOMPARE(table()->columnWidth(column), columnWidth);
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
        const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(timer);
        QCOMPARE(timers.size(), 1);
        QCOMPARE(timers.first().interval, 2000);
        m_channel->takeTrace();

        m_channel->answer("status active", "tracking");
        QTimerEvent due(timers.first().timerId);
        QCoreApplication::sendEvent(timer, &due);
        QCOMPARE(m_channel->takeTrace(), QStringList("queryString status active"));
    }

    void theAutomaticBackupDiesWithTheDialog()
    {
        auto dialog = std::make_unique<ConfigSaveDlg>(m_channel.get(), &m_versions, nullptr);
        QObject *timer = singleShotTimers().constLast();
        const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(timer);
        dialog.reset();
        m_channel->takeTrace();
        QTimerEvent due(timers.first().timerId);
        QCoreApplication::sendEvent(timer, &due);
        QCOMPARE(m_channel->takeTrace(), QStringList());
    }

    void theHostVersionDecidesOnAutomaticBackups_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<bool>("isAllowed");
        QTest::newRow("v4.12.3") << "v4.12.3" << true;
        QTest::newRow("v4.") << "v4." << true;
        QTest::newRow("v3.0") << "v3.0" << true;
        QTest::newRow("v5.0") << "v5.0" << false;
        QTest::newRow("v2.9") << "v2.9" << false;
        QTest::newRow("V4.1") << "V4.1" << false;
        QTest::newRow("v4") << "v4" << false;
        QTest::newRow("v40.1") << "v40.1" << false;
        QTest::newRow("v33.1") << "v33.1" << false;
        QTest::newRow("4.1") << "4.1" << false;
        QTest::newRow("blank") << " v4.1" << false;
        QTest::newRow("empty") << "" << false;
    }

    void theHostVersionDecidesOnAutomaticBackups()
    {
        QFETCH(const QString, version);
        QFETCH(const bool, isAllowed);
        MessageReceiver *receiver = m_channel->receivers().first().second;
        QCOMPARE(receiver->receiveMessage(7, "Veltra2", version.toUtf8().constData()), 0);
        m_channel->answer("status active", "tracking");
        m_dialog->doAutomaticBackup();
        QCOMPARE(m_channel->takeTrace(),
                 isAllowed ? QStringList("queryString status active") : QStringList());
    }

    void aHostVersionThatComesAfterTheTimerWasArmedCounts()
    {
        m_channel->answer("status active", "none");
        m_channel->answer("system hostname", "lab");
        m_dialog->onSendModulParentVersion("v4.2-late");
        m_dialog->doAutomaticBackup();
        QVERIFY(QDir(inHome(".ZOR/VELTRA4/v4.2-late/backup")).exists());
    }

    void anotherVersionAllowsBackupsAgain()
    {
        m_channel->answer("status active", "tracking");
        m_dialog->onSendModulParentVersion("v5.0");
        m_dialog->onSendModulParentVersion("v4.0");
        m_dialog->doAutomaticBackup();
        QCOMPARE(m_channel->takeTrace(), QStringList("queryString status active"));
    }

    void messagesOfOthersChangeNothing()
    {
        MessageReceiver *receiver = m_channel->receivers().first().second;
        for (const char *source : {"veltra2", "LAST_FRONTEND_UPDATE", "", "Veltra2 "}) {
            QCOMPARE(receiver->receiveMessage(0, source, "v5.0"), 0);
        }
        QCOMPARE(receiver->receiveMessage(0, nullptr, "v5.0"), 0);
        m_channel->answer("status active", "tracking");
        m_dialog->doAutomaticBackup(); // still allowed
        QCOMPARE(m_channel->takeTrace(), QStringList("queryString status active"));
    }

    void opensInBackupModeWithEverythingSelected()
    {
        show([&] {
            QVERIFY(find<QCheckBox>("checkBox_allSettings")->isChecked());
            QVERIFY(!isEnabled("widget_selectConfigs"));
            QVERIFY(isEnabled("pushButton_save"));
            QVERIFY(!isEnabled("pushButton_selectAll"));
            QVERIFY(!find<QLabel>("label_error")->isVisible());
            QCOMPARE(find<QLabel>("label_error")->text(), QString());
            QCOMPARE(selectedRows(), QList<int>({0, 1, 2}));
            QVERIFY(m_dialog->isModal());
        });
        QCOMPARE(m_channel->takeTrace(), QStringList());
    }

    void showsTheEntriesInOrder()
    {
        show([&] {
            QStringList cells;
            for (int row = 0; row < table()->rowCount(); ++row) {
                QCOMPARE(table()->rowHeight(row), 28);
                for (int column = 0; column < table()->columnCount(); ++column) {
                    cells << table()->item(row, column)->text();
                }
            }
            QCOMPARE(cells,
                     QStringList({"description 1", "owner 1", "id1", "description 2", "owner 2",
                                  "id2", "description 3", "owner 3", "id3"}));
        });
    }

    void opensWithoutConfigurations()
    {
        m_dialog->setConfigurationList({});
        show([&] {
            QCOMPARE(table()->rowCount(), 0);
            QVERIFY(find<QLabel>("label_error")->isVisible());
            QCOMPARE(find<QLabel>("label_error")->text(),
                     QString("<b><font color=red>No configuration available!</font></b>"));
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
            QCOMPARE(table()->item(0, 2)->text(), QString("id9"));
            QVERIFY(find<QCheckBox>("checkBox_allSettings")->isChecked());
            QVERIFY(!isEnabled("widget_selectConfigs"));
            QCOMPARE(selectedRows(), QList<int>({0}));
        });
    }

    void aLaterShowingWithTheBoxStillTickedIsForABackup()
    {
        show([] {});
        QVERIFY(find<QCheckBox>("checkBox_allSettings")->isChecked());
        show([&] {
            QVERIFY(!isEnabled("widget_selectConfigs"));
            QCOMPARE(selectedRows(), QList<int>({0, 1, 2}));
        });
    }

    void aLaterShowingWithoutConfigurationsCannotSave()
    {
        show([] {});
        m_dialog->setConfigurationList({});
        show([&] {
            QVERIFY(!isEnabled("pushButton_save"));
            QVERIFY(find<QLabel>("label_error")->isVisible());
        });
        m_dialog->setConfigurationList(someEntries());
        show([&] {
            QVERIFY(isEnabled("pushButton_save"));
            QVERIFY(!find<QLabel>("label_error")->isVisible());
        });
    }

    void theDialogKeepsItsOwnListOfEntries()
    {
        ConfigEntryList entries = someEntries();
        m_dialog->setConfigurationList(entries);
        entries.first().description = "changed";
        show([&] { QCOMPARE(table()->item(0, 0)->text(), QString("description 1")); });
    }

    void uncheckingTheBoxEnablesTheSelection()
    {
        showSelection([&] {
            QVERIFY(isEnabled("widget_selectConfigs"));
            QVERIFY(isEnabled("tableWidget_selectConfigs"));
            QVERIFY(isEnabled("pushButton_clearSelection"));
            QVERIFY(!isEnabled("pushButton_selectAll"));
            QCOMPARE(selectedRows(), QList<int>({0, 1, 2}));
        });
    }

    void checkingTheBoxSelectsEverythingAgain()
    {
        showSelection([&] {
            click("pushButton_clearSelection");
            QVERIFY(!isEnabled("pushButton_save"));
            toggleBackup();
            QCOMPARE(selectedRows(), QList<int>({0, 1, 2}));
            QVERIFY(!isEnabled("widget_selectConfigs"));
            QVERIFY(isEnabled("pushButton_save"));
        });
    }

    void clearSelectsNothing()
    {
        showSelection([&] {
            click("pushButton_clearSelection");
            QCOMPARE(selectedRows(), QList<int>());
            QCOMPARE(m_dialog->focusWidget(), table());
        });
    }

    void selectAllSelectsEverything()
    {
        showSelection([&] {
            selectRows({1});
            click("pushButton_selectAll");
            QCOMPARE(selectedRows(), QList<int>({0, 1, 2}));
            QCOMPARE(m_dialog->focusWidget(), table());
        });
    }

    void aClickTogglesARow()
    {
        showSelection([&] {
            const auto clickRow = [this](int row) {
                QTest::mouseClick(table()->viewport(), Qt::LeftButton, {},
                                  table()->visualItemRect(table()->item(row, 1)).center());
            };
            clickRow(1);
            QCOMPARE(selectedRows(), QList<int>({0, 2}));
            clickRow(1);
            QCOMPARE(selectedRows(), QList<int>({0, 1, 2}));
        });
    }

    void theButtonsFollowTheSelection_data()
    {
        QTest::addColumn<QList<int>>("rows");
        QTest::addColumn<bool>("canSave");
        QTest::addColumn<bool>("canSelectAll");
        QTest::newRow("none") << QList<int>() << false << true;
        QTest::newRow("one") << QList<int>({1}) << true << true;
        QTest::newRow("two") << QList<int>({0, 2}) << true << true;
        QTest::newRow("all") << QList<int>({0, 1, 2}) << true << false;
    }

    void theButtonsFollowTheSelection()
    {
        QFETCH(const QList<int>, rows);
        QFETCH(const bool, canSave);
        QFETCH(const bool, canSelectAll);
        showSelection([&] {
            selectRows(rows);
            QCOMPARE(isEnabled("pushButton_save"), canSave);
            QCOMPARE(isEnabled("pushButton_clearSelection"), canSave);
            QCOMPARE(isEnabled("pushButton_selectAll"), canSelectAll);
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

    void everyWayOutCountsAsAccepted_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("Exit") << 0;
        QTest::newRow("Escape") << 1;
        QTest::newRow("the window's own button") << 2;
        QTest::newRow("Return") << 3;
    }

    void everyWayOutCountsAsAccepted()
    {
        QFETCH(const int, way);
        m_driver->expectDialog("ConfigSaveDlgClass", [this, way](QDialog *dialog) {
            switch (way) {
            case 0:
                click("pushButton_exit");
                break;
            case 1:
                QTest::keyClick(dialog, Qt::Key_Escape);
                break;
            case 2:
                dialog->close();
                break;
            default:
                QTest::keyClick(dialog, Qt::Key_Return);
            }
        });
        m_dialog->runSaveDialog();
        QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
        QVERIFY(!m_dialog->isVisible());
    }

    void savesTheSelectedRowsInTableOrder()
    {
        showSelection([&] {
            selectRows({2, 0});
            answerSave(inHome("cal.dat"));
            click("pushButton_save");
        });
        const QStringList clones = m_channel->trace().filter("clone_config");
        QCOMPARE(clones.size(), 2);
        QVERIFY(clones.at(0).endsWith(" id1"));
        QVERIFY(clones.at(1).endsWith(" id3"));
        QCOMPARE(contentsOf(inHome("cal.dat")), QByteArray("data"));
    }

    void proposesANameInTheLastDirectory()
    {
        const QTemporaryDir elsewhere;
        QStringList proposals;
        QStringList filters;
        QList<QWidget *> parents;
        const auto inspect = [&](QFileDialog *dialog) {
            proposals << dialog->directory().path() + '/'
                    + dialog->findChild<QLineEdit *>("fileNameEdit")->text();
            filters << dialog->nameFilters();
            parents << dialog->parentWidget();
            QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        };
        showSelection([&] {
            m_driver->expectFileDialog("Save configuration(s)", elsewhere.filePath("cal"), inspect);
            m_driver->expectDialog(QString(), [](QDialog *box) { box->accept(); });
            click("pushButton_save");
        });
        showSelection([&] { // once more, in the directory of the last choice; nothing is chosen
            m_driver->expectFileDialog("Save configuration(s)", QString(), inspect);
            click("pushButton_save");
            m_driver->expectFileDialog("Save configuration(s)", QString(), inspect);
            click("pushButton_save");
        });
        QCOMPARE(proposals,
                 QStringList({inHome("configuration.dat"), elsewhere.filePath("configuration.dat"),
                              elsewhere.filePath("configuration.dat")}));
        QCOMPARE(filters,
                 QStringList({"Configuration file (*.dat)", "Configuration file (*.dat)",
                              "Configuration file (*.dat)"}));
        QCOMPARE(parents, QList<QWidget *>({m_dialog.get(), m_dialog.get(), m_dialog.get()}));
    }

    void aCancelledChoiceSendsNothing()
    {
        showSelection([&] {
            m_driver->expectFileDialog("Save configuration(s)", QString());
            click("pushButton_save");
        });
        QCOMPARE(m_channel->takeTrace(), QStringList());
    }

    void theExtensionIsAppendedWhereItIsMissing_data()
    {
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<QString>("written");
        QTest::newRow("missing") << "cal"
                                 << "cal.dat";
        QTest::newRow("there") << "cal.dat"
                               << "cal.dat";
        QTest::newRow("capital letters") << "cal.DAT"
                                         << "cal.DAT";
        QTest::newRow("another one") << "cal.txt"
                                     << "cal.txt.dat";
        QTest::newRow("without dot") << "caldat"
                                     << "caldat.dat";
        QTest::newRow("blanks behind") << "cal.dat  "
                                       << "cal.dat";
        QTest::newRow("blanks behind, missing") << "cal  "
                                                << "cal.dat";
    }

    void theExtensionIsAppendedWhereItIsMissing()
    {
        QFETCH(const QString, chosen);
        QFETCH(const QString, written);
        QString text;
        showSelection([&] {
            m_driver->expectFileDialog("Save configuration(s)", inHome(chosen));
            m_driver->expectDialog(QString(), [&text](QDialog *box) {
                text = qobject_cast<QMessageBox *>(box)->text();
                box->accept();
            });
            click("pushButton_save");
        });
        QCOMPARE(text, "Configuration data successfully written to the file\n" + inHome(written));
        QCOMPARE(contentsOf(inHome(written)), QByteArray("data"));
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
            answerSave(inHome("cal.dat"));
            click("pushButton_save");
        });
        QCOMPARE(m_channel->trace().filter("clone_config").size(), 1);
    }

    void theTableHasTheFocusAfterASave()
    {
        showSelection([&] {
            find<QWidget>("pushButton_save")->setFocus();
            m_driver->expectFileDialog("Save configuration(s)", QString());
            click("pushButton_save");
            QCOMPARE(m_dialog->focusWidget(), table());
        });
    }

    void theCheckedBoxStartsTheManualBackup()
    {
        show([&] {
            m_driver->expectFileDialog("Backup all settings", QString());
            click("pushButton_save");
            QVERIFY(m_dialog->isVisible());
        });
        QCOMPARE(m_channel->takeTrace(),
                 QStringList({"queryString system controller_serial", "queryString system model",
                              "queryString system model_description"}));
    }

    void theDialogMayVanishWhileAFileIsChosen_data()
    {
        QTest::addColumn<bool>("isBackup");
        QTest::newRow("save") << false;
        QTest::newRow("backup") << true;
    }

    void theDialogMayVanishWhileAFileIsChosen()
    {
        QFETCH(const bool, isBackup);
        show([&] {
            if (!isBackup) {
                toggleBackup();
            }
            m_driver->expectDialog("QFileDialog", [this](QDialog *) { m_dialog.reset(); });
            click("pushButton_save");
        });
        QVERIFY(!m_dialog);
        QCOMPARE(m_channel->trace().filter("sendCommand").size(), 0);
    }

    void theDialogMayVanishWhileABoxIsOpen()
    {
        showSelection([&] {
            m_driver->expectFileDialog("Save configuration(s)", inHome("cal.dat"));
            m_driver->expectDialog(QString(), [this](QDialog *) { m_dialog.reset(); });
            click("pushButton_save");
        });
        QVERIFY(!m_dialog);
    }

    void theDialogMayVanishWhileItIsShown()
    {
        show([this] { m_dialog.reset(); });
        QVERIFY(!m_dialog);
    }

private:
    template <typename Widget>
    Widget *find(const char *name) const
    {
        auto *widget = m_dialog->findChild<Widget *>(QLatin1String(name));
        if (!widget) {
            qFatal("no %s", name);
        }
        return widget;
    }
    QTableWidget *table() const { return find<QTableWidget>("tableWidget_selectConfigs"); }
    bool isEnabled(const char *name) const { return find<QWidget>(name)->isEnabled(); }
    void click(const char *name) const
    {
        QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton);
    }
    void toggleBackup() const
    {
        QTest::keyClick(find<QCheckBox>("checkBox_allSettings"), Qt::Key_Space);
    }

    void selectRows(const QList<int> &rows) const
    {
        table()->clearSelection();
        for (const int row : rows) {
            table()->selectRow(row);
        }
    }

    QList<int> selectedRows() const
    {
        QList<int> rows;
        for (int row = 0; row < table()->rowCount(); ++row) {
            if (table()->item(row, 0)->isSelected()) {
                rows << row;
            }
        }
        return rows;
    }

    // Shows the dialog, runs the action inside and closes it.
    void show(const std::function<void()> &action)
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
    void showSelection(const std::function<void()> &action)
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
        m_driver->expectDialog(QString(), [](QDialog *box) { box->accept(); });
    }

    QString inHome(const QString &name) const { return QDir::homePath() + '/' + name; }

    std::unique_ptr<ScriptedChannel> m_channel;
    BackendVersions m_versions;
    std::unique_ptr<ConfigSaveDlg> m_dialog;
    std::unique_ptr<ModalDriver> m_driver;
};

VELTRA4_TEST(TestConfigSaveDlg)
#include "tst_configsavedlg.moc"

#include "channel/transferencoding.h"
#include "hostapi/backendversions.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/transfer/formtesting.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/configloaddlg.h"

#include <QDir>
#include <QHeaderView>
#include <QLabel>
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

ConfigEntry entry(const QString &identifier, bool locked = false)
{
    ConfigEntry result;
    result.identifier = identifier;
    result.locked = locked;
    return result;
}

QString imported(const QString &identifier)
{
    return "sendCommand system import 'config' '" + identifier + "'";
}

const QByteArray oneByte("\x01");
const QStringList uploadOfOneByte{"sendCommand system upload cancel",
                                  "sendCommand system upload 1 1 BA"};
const QStringList queriesForThreeItems{
    "queryString system import available", "queryString system import item i01",
    "queryString system import item i02", "queryString system import item i03"};

/// The dialog as the list dialog keeps it, and what is needed to drive it. The controller offers
/// three configurations, whatever it is sent.
struct LoadDialogStage
{
    LoadDialogStage()
    {
        offer({"config1 'Lab 1' 'north'", "config2 'Lab 2' 'south'", "config3 '' ''"});
    }
    ~LoadDialogStage() { QCOMPARE(takeCursors(), 0); }

    void offer(const QList<QByteArray> &items)
    {
        channel.answer("system import available", QByteArray::number(items.size()) + " config");
        for (int i = 0; i < items.size(); ++i) {
            channel.answer("system import item i0" + QByteArray::number(i + 1), items.at(i));
        }
    }

    QString fileWith(const QByteArray &contents, const QString &name = "some.dat") const
    {
        return writeFile(folder.filePath(name), contents);
    }

    /// Chooses a file and runs openAndExec(). @return its result
    int choose(const QString &path)
    {
        driver.expectFileDialog("Load Configurations", path);
        return dialog->openAndExec();
    }

    /// The same with a backup, whose restore is answered with @p answer.
    int restore(QMessageBox::StandardButton answer, const QString &name = "backup.xml")
    {
        const QString path = fileWith(SampleBackup::document(), name);
        driver.expectFileDialog("Load Configurations", path);
        driver.expectBox(restoreConfirmation(parent.get(), answer));
        return dialog->openAndExec();
    }

    /// The same with a file of configurations, and @p action on what is shown, which closes it.
    int run(const Action &action)
    {
        const QString path = fileWith(oneByte);
        driver.expectFileDialog("Load Configurations", path);
        driver.expectDialog("ConfigLoadDlgClass", [action](QDialog *shown) {
            QVERIFY(QTest::qWaitForWindowActive(shown)); // before that nothing has the focus
            action();
        });
        return dialog->openAndExec();
    }

    /// The same, and leaves it with "Exit".
    int look(const Action &action)
    {
        return run([this, action] {
            action();
            click("pushButton_exit");
        });
    }

    /// The same, but loads what is selected. @return what that sends
    QStringList load(const Action &action = [] {})
    {
        run([this, action] {
            action();
            channel.takeTrace();
            driver.expectBox(okBox(QMessageBox::Information, "Load Configurations",
                                   "Loading configuration successfully.", dialog));
            click("pushButton_load");
        });
        return channel.takeTrace();
    }

    QTableWidget *table() const { return UserInput::named<QTableWidget>(dialog, "tableWidget"); }
    void click(const char *button) const { UserInput::click(dialog, button); }
    void clickCell(int row, int column) const
    {
        const QRect cell = table()->visualItemRect(table()->item(row, column));
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
    }
    QList<int> selection() const { return selectedRows(table()); }
    QString buttons() const { return enabledButtons(dialog, "pushButton_load"); }

    QTemporaryDir folder;
    ScriptedChannel channel;
    BackendVersions versions;
    std::unique_ptr<QWidget> parent = std::make_unique<QWidget>();
    ConfigLoadDlg *dialog = new ConfigLoadDlg(&channel, &versions, parent.get()); // the parent's
    ModalDriver driver;
};

} // namespace

class TestConfigLoadDlg : public QObject
{
    Q_OBJECT

private slots:
    void theFormIsAsDesigned()
    {
        const LoadDialogStage f;
        compareWidgets(
            f.dialog,
            {{"label_path", "QLabel", "file"},
             {"lineEdit_path", "QLineEdit", "", "The configuration file opened for loading"},
             {"label_2", "QLabel", "content:"},
             {"pushButton_selectAll", "QPushButton", "Select &all",
              "Select all entries in the list"},
             {"pushButton_clearSelection", "QPushButton", "&Clear",
              "Clear the selection in the list"},
             {"label_error", "QLabel", ""},
             {"pushButton_load", "QPushButton", "&Load",
              "Load selected configurations which are marked in the list above"},
             {"pushButton_exit", "QPushButton", "E&xit", "Close dialog"}});
        QCOMPARE(f.dialog->objectName(), "ConfigLoadDlgClass");
        QCOMPARE(f.dialog->windowTitle(), "Load Configurations");
        QCOMPARE(f.dialog->whatsThis(), "Load configuration");
        QCOMPARE(f.dialog->size(), QSize(459, 288));
        QCOMPARE(f.dialog->minimumSize(), QSize(350, 250));
        QVERIFY(UserInput::named<QLineEdit>(f.dialog, "lineEdit_path")->isReadOnly());
        const auto *line = UserInput::named<QFrame>(f.dialog, "line");
        QCOMPARE(line->frameShape(), QFrame::HLine);
        QCOMPARE(line->frameShadow(), QFrame::Sunken);
        for (const QPushButton *button : f.dialog->findChildren<QPushButton *>()) {
            QVERIFY2(!button->isDefault(), qPrintable(button->objectName()));
        }
    }

    void theTableSelectsWholeRowsAndEditsNothing()
    {
        const LoadDialogStage f;
        const QTableWidget *table = f.table();
        QCOMPARE(headersOf(table), QStringList({"Description", "Owner", "ID", "Status"}));
        QVERIFY(table->verticalHeader()->isHidden());
        QVERIFY(table->horizontalHeader()->stretchLastSection());
        QVERIFY(!table->horizontalHeader()->sectionsClickable());
        QCOMPARE(table->selectionMode(), QAbstractItemView::MultiSelection);
        QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
        const int leastHeight = QTableWidget().verticalHeader()->minimumSectionSize();
        QCOMPARE(table->verticalHeader()->minimumSectionSize(), leastHeight);
        QCOMPARE(table->verticalHeader()->defaultSectionSize(), std::max(20, leastHeight));
        QVERIFY(table->isColumnHidden(3));
        QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
        QVERIFY(!table->isSortingEnabled());
    }

    void theKeyboardReachesEverythingInOrder()
    {
        LoadDialogStage f;
        QStringList order;
        f.look([&] {
            f.clickCell(0, 0); // so that every button is enabled
            order = tabOrder(f.table());
        });
        QCOMPARE(order,
                 QStringList({"tableWidget", "pushButton_selectAll", "pushButton_clearSelection",
                              "pushButton_load", "pushButton_exit", "lineEdit_path"}));
        QCOMPARE(UserInput::named<QLabel>(f.dialog, "label_path")->buddy()->objectName(),
                 "lineEdit_path");
        QCOMPARE(UserInput::named<QLabel>(f.dialog, "label_2")->buddy(), f.table());
    }

    void theChooserStartsAtHome()
    {
        LoadDialogStage f;
        f.driver.expectFileDialog("Load Configurations", {}, [&f](QFileDialog *chooser) {
            QCOMPARE(chooser->directory().absolutePath(), QDir::homePath());
            QCOMPARE(chooser->nameFilters(), QStringList("Configuration file (*.dat *.xml *.*)"));
            QCOMPARE(chooser->parentWidget(), f.parent.get());
            QCOMPARE(chooser->acceptMode(), QFileDialog::AcceptOpen);
            QCOMPARE(chooser->fileMode(), QFileDialog::ExistingFile);
        });
        QCOMPARE(f.dialog->openAndExec(), 1);
        QCOMPARE(f.channel.trace(), QStringList()); // cancelled, it sends nothing
    }

    void theChooserStartsWhereTheLastFileWas()
    {
        LoadDialogStage f;
        QVERIFY(QDir(f.folder.path()).mkpath("deep/down"));
        f.choose(f.fileWith({}, "deep/down/empty.dat"));
        for (int i = 0; i < 2; ++i) { // a cancelled choice changes nothing
            f.driver.expectFileDialog("Load Configurations", {}, [&f](QFileDialog *chooser) {
                QCOMPARE(chooser->directory().absolutePath(), f.folder.filePath("deep/down"));
            });
            f.dialog->openAndExec();
        }
    }

    void aConfigurationFileIsUploadedAndListed()
    {
        LoadDialogStage f;
        f.offer({"config1 'Lab 1' 'north wall'", "__base 'me' 'base'", "config2",
                 "config3 'M\xfcller' '<b>bold</b>'", "__Base '' ''"});
        f.look([&f] {
            QCOMPARE(UserInput::textOf(f.dialog, "lineEdit_path"), f.folder.filePath("some.dat"));
            QCOMPARE(f.table()->rowCount(), 4); // the base is never shown
            QCOMPARE(rowOf(f.table(), 0), QStringList({"north wall", "Lab 1", "config1", ""}));
            QCOMPARE(rowOf(f.table(), 1), QStringList({"", "", "config2", ""}));
            QCOMPARE(rowOf(f.table(), 2),
                     QStringList({"<b>bold</b>", QString::fromLatin1("M\xfcller"), "config3", ""}));
            QCOMPARE(rowOf(f.table(), 3), QStringList({"", "", "__Base", ""}));
            QVERIFY(f.table()->isColumnHidden(3));
            QVERIFY(f.table()->hasFocus());
            QCOMPARE(f.selection(), QList<int>({0, 1, 2, 3}));
            QCOMPARE(f.buttons(), "-C!");
        });
        QCOMPARE(f.channel.trace(),
                 uploadOfOneByte + queriesForThreeItems
                     + QStringList({"queryString system import item i04",
                                    "queryString system import item i05"}));
    }

    void whatIsSelectedIsImportedInRowOrder()
    {
        LoadDialogStage f;
        f.offer({"config3", "__base", "config1", "config2"});
        const QStringList sent = f.load([&f] {
            f.click("pushButton_clearSelection");
            f.clickCell(2, 0);
            f.clickCell(0, 0);
        });
        QCOMPARE(f.dialog->result(), int(QDialog::Accepted));
        QCOMPARE(sent,
                 QStringList({"setTimeout 0 20000 0", imported("config3"), "setTimeout 0 20000 0",
                              imported("config2"), ScriptedChannel::announced()}));
    }

    void anExistingConfigurationIsReplaced()
    {
        LoadDialogStage f;
        f.dialog->setConfigurationList(
            {entry("config3"), entry("config1", true), entry("config2")});
        QCOMPARE(f.load(),
                 QStringList({"sendCommandReply veltra2 config delete_config config2",
                              "sendCommandReply veltra2 config delete_config config3",
                              "setTimeout 0 20000 0", imported("config2"), "setTimeout 0 20000 0",
                              imported("config3"), ScriptedChannel::announced()}));
    }

    void theNextFileReplacesTheTable()
    {
        LoadDialogStage f;
        f.look([&f] { f.clickCell(1, 0); });
        f.offer({"config7 '' 'seven'", "config8 '' 'eight'"});
        f.look([&f] {
            QCOMPARE(f.table()->rowCount(), 2);
            QCOMPARE(rowOf(f.table(), 0), QStringList({"seven", "", "config7", ""}));
            QCOMPARE(f.selection(), QList<int>({0, 1}));
            QCOMPARE(f.buttons(), "-C!");
        });
        f.offer({});
        f.look([&f] {
            QCOMPARE(f.table()->rowCount(), 0);
            QCOMPARE(f.buttons(), "---");
        });
    }

    void theSameFileMayBeLoadedAgain()
    {
        LoadDialogStage f;
        for (int i = 0; i < 2; ++i) {
            f.look([&f] {
                QCOMPARE(f.selection(), QList<int>({0, 1, 2}));
                QCOMPARE(f.buttons(), "-C!");
            });
            QCOMPARE(f.channel.takeTrace(), uploadOfOneByte + queriesForThreeItems);
        }
    }

    void noItemAtAllStillOpensTheDialog()
    {
        LoadDialogStage f;
        f.offer({});
        const int result = f.look([&f] {
            QCOMPARE(f.table()->rowCount(), 0);
            QCOMPARE(f.buttons(), "---");
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(f.channel.trace(), uploadOfOneByte + queriesForThreeItems.mid(0, 1));
    }

    void aFailedUploadIsReported()
    {
        LoadDialogStage f;
        QCOMPARE(f.choose(f.fileWith({})), 1);
        QCOMPARE(f.channel.trace(),
                 QStringList({"sendCommand system upload cancel",
                              ScriptedChannel::reported("Error: Unable to load configurations")}));
    }

    void anUnansweredAnnouncementIsReported()
    {
        LoadDialogStage f;
        f.channel.fail("system import available");
        QCOMPARE(f.choose(f.fileWith(oneByte)), 1);
        QCOMPARE(f.channel.trace(),
                 uploadOfOneByte + queriesForThreeItems.mid(0, 1)
                     + QStringList(
                         ScriptedChannel::reported("Error: Unable to get loaded configurations")));
    }

    void somethingElseThanConfigurationsIsReported()
    {
        LoadDialogStage f;
        f.channel.answer("system import available", "3 rooms");
        QCOMPARE(f.choose(f.fileWith(oneByte)), 1);
        QCOMPARE(f.channel.trace(),
                 uploadOfOneByte + queriesForThreeItems.mid(0, 1)
                     + QStringList(ScriptedChannel::reported(
                         "Error: Configuration file can not be recognized")));
    }

    void aRefusedUploadGoesOn()
    {
        for (const char *command : {"system upload cancel", "system upload 1 1 BA"}) {
            LoadDialogStage f;
            f.channel.fail(command);
            QCOMPARE(f.look([] {}), int(QDialog::Accepted));
            QCOMPARE(f.channel.trace(), uploadOfOneByte + queriesForThreeItems);
        }
    }

    void aDocumentThatIsNoBackupIsUploaded()
    {
        const QByteArray document = "<ZORB/>";
        LoadDialogStage f;
        f.channel.answer("system import available", "0 none");
        QCOMPARE(f.choose(f.fileWith(document, "some.xml")), 1);
        QCOMPARE(f.channel.trace().value(1),
                 "sendCommand system upload 1 1 " + TransferEncoding::encode(document));
    }

    void aBackupIsRestoredWhateverItsName()
    {
        for (const char *name : {"backup.xml", "backup.dat", "backup"}) {
            LoadDialogStage f;
            QCOMPARE(f.restore(QMessageBox::No, name), 2);
            QCOMPARE(f.channel.trace(), QStringList());
            QCOMPARE(UserInput::textOf(f.dialog, "lineEdit_path"), ""); // nothing is loaded
        }
    }

    void aBackupIsRefusedWhileAConfigurationIsLocked()
    {
        LoadDialogStage f;
        f.dialog->setConfigurationList({entry("config1"), entry("config2", true)});
        const QString path = f.fileWith(SampleBackup::document());
        f.driver.expectFileDialog("Load Configurations", path);
        f.driver.expectBox(okBox(QMessageBox::Information, "Cannot load backup",
                                 "Cannot load backup from file '" + path
                                     + "' !\n One or more Configurations are locked.",
                                 f.dialog));
        QCOMPARE(f.dialog->openAndExec(), 1);
        QCOMPARE(f.channel.trace(), QStringList());
    }

    void anExceptionEndsTheRestoreWithTen()
    {
        LoadDialogStage f;
        f.versions = SampleBackup::versions();
        f.channel.fail("system controller_embedded");
        QCOMPARE(f.restore(QMessageBox::Yes), 10);
        QCOMPARE(f.channel.trace(),
                 QStringList({"setTimeout 0 3000 1", "queryBool system controller_embedded"}));
    }

    void lockedConfigurationsAreShownAsLocked()
    {
        LoadDialogStage f;
        f.dialog->setConfigurationList(
            {entry("config2", true), entry("config3"), entry("x", true)});
        f.look([&f] {
            QCOMPARE(rowOf(f.table(), 0), QStringList({"north", "Lab 1", "config1", ""}));
            QCOMPARE(rowOf(f.table(), 1), QStringList({"south", "Lab 2", "config2", "locked"}));
            QCOMPARE(rowOf(f.table(), 2), QStringList({"", "", "config3", ""}));
            const Qt::ItemFlags forbidden = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
            for (int column = 0; column < 4; ++column) {
                QCOMPARE(f.table()->item(1, column)->flags() & forbidden, Qt::ItemFlags());
                QCOMPARE(f.table()->item(0, column)->flags() & forbidden, forbidden);
            }
        });
    }

    void lockedConfigurationsCannotBeSelected()
    {
        LoadDialogStage f;
        f.dialog->setConfigurationList({entry("config2", true)});
        f.look([&f] {
            QCOMPARE(f.selection(), QList<int>({0, 2}));
            f.click("pushButton_clearSelection");
            f.clickCell(1, 0);
            QCOMPARE(f.selection(), QList<int>());
            f.click("pushButton_selectAll");
            QCOMPARE(f.selection(), QList<int>({0, 2}));
        });
    }

    void anIdentifierThatOccursTwiceIsLockedIfEitherIs()
    {
        LoadDialogStage f;
        f.dialog->setConfigurationList(
            {entry("config1"), entry("config1", true), entry("config2", true), entry("config2")});
        f.look([&f] { QCOMPARE(f.selection(), QList<int>({2})); });
    }

    void theStatusColumnComesAndGoes()
    {
        LoadDialogStage f;
        for (const bool isLocked : {false, true, false, true}) {
            f.dialog->setConfigurationList({entry("config2", isLocked)});
            f.look([&f, isLocked] { QCOMPARE(f.table()->isColumnHidden(3), !isLocked); });
        }
    }

    void theButtonsFollowTheSelection()
    {
        LoadDialogStage f;
        f.look([&f] {
            const QList<QPair<int, const char *>> clicks{
                {0, "AC!"}, {1, "AC!"}, {2, "A--"}, {2, "AC!"}};
            for (const auto &[row, expected] : clicks) {
                f.clickCell(row, 1);
                QCOMPARE(f.buttons(), expected);
            }
        });
    }

    void withTheStatusColumnTheSelectionCountsMore()
    {
        LoadDialogStage f;
        f.offer({"config1", "config2", "config3", "config4"});
        f.dialog->setConfigurationList({entry("config4", true)});
        f.look([&f] {
            // Three rows of four cells count as four rows, which are all there are.
            QCOMPARE(f.selection(), QList<int>({0, 1, 2}));
            QCOMPARE(f.buttons(), "-C!");
            f.clickCell(0, 0); // eight cells, two rows
            QCOMPARE(f.buttons(), "AC!");
        });
        f.offer({"config1", "config2", "config4"});
        f.look([&f] {
            // Two of three rows, eight cells, count as two: all that can be selected is, yet the
            // button stays on.
            QCOMPARE(f.selection(), QList<int>({0, 1}));
            QCOMPARE(f.buttons(), "AC!");
        });
    }

    void aTableWithoutColumnsChangesNoButton()
    {
        LoadDialogStage f;
        f.look([&f] {
            f.table()->setColumnCount(0);
            auto *load = UserInput::named<QPushButton>(f.dialog, "pushButton_load");
            load->setEnabled(true);
            QMetaObject::invokeMethod(f.dialog, "on_tableWidget_itemSelectionChanged");
            QVERIFY(load->isEnabled());
            f.dialog->resize(500, 300);
        });
    }

    void selectAllAndClearSelect()
    {
        LoadDialogStage f;
        f.look([&f] {
            f.click("pushButton_clearSelection");
            QCOMPARE(f.selection(), QList<int>());
            QCOMPARE(f.buttons(), "A--");
            UserInput::widgetNamed(f.dialog, "pushButton_selectAll")->setFocus();
            f.click("pushButton_selectAll");
            QCOMPARE(f.selection(), QList<int>({0, 1, 2}));
            QVERIFY(f.table()->hasFocus());
        });
    }

    void everyWayOutAccepts()
    {
        LoadDialogStage f;
        const QList<Action> ways{[&f] { f.click("pushButton_exit"); },
                                 [&f] { QTest::keyClick(f.table(), Qt::Key_Escape); },
                                 [&f] { f.dialog->close(); }};
        for (const Action &way : ways) {
            QCOMPARE(f.run(way), int(QDialog::Accepted));
            QCOMPARE(f.channel.takeTrace(), uploadOfOneByte + queriesForThreeItems);
        }
    }

    void enterInTheTableLoadsNothingAndClosesNothing()
    {
        LoadDialogStage f;
        bool isStillOpen = false;
        f.look([&] {
            QTest::keyClick(f.table(), Qt::Key_Return);
            isStillOpen = f.dialog->isVisible();
        });
        QVERIFY(isStillOpen);
        QCOMPARE(f.channel.trace(), uploadOfOneByte + queriesForThreeItems);
    }

    void columnsShareTheTablesWidth()
    {
        LoadDialogStage f;
        f.dialog->setConfigurationList({entry("config2", true)});
        f.look([&f] {
            for (const int width : {350, 459, 600, 1003}) {
                f.dialog->resize(width, 400);
                QApplication::processEvents();
                for (int column = 0; column < 3; ++column) {
                    QCOMPARE(f.table()->columnWidth(column), f.table()->width() / 4 - 2);
                }
                // The last one stretches over what is left.
                QCOMPARE(f.table()->horizontalHeader()->length(), f.table()->viewport()->width());
            }
        });
    }

    void theHostMayDestroyTheDialogWhileAFileIsChosen()
    {
        LoadDialogStage f;
        f.driver.expectDialog("QFileDialog", [&f](QDialog *) { f.parent.reset(); });
        f.dialog->openAndExec();
        QVERIFY(!f.parent);
    }

    void theHostMayDestroyTheDialogWhileItIsOpen()
    {
        LoadDialogStage f;
        f.run([&f] { f.parent.reset(); });
        QVERIFY(!f.parent);
    }

    void theHostMayDestroyTheDialogWhileTheOutcomeIsShown()
    {
        LoadDialogStage f;
        f.run([&f] {
            f.driver.expectDialog({}, [&f](QDialog *) { f.parent.reset(); });
            f.click("pushButton_load");
        });
        QVERIFY(!f.parent);
    }
};

VELTRA4_TEST(TestConfigLoadDlg)
#include "tst_configloaddlg.moc"

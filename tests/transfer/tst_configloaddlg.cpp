#include "channel/transferencoding.h"
#include "hostapi/backendversions.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/faultyrun.h"
#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/configloaddlg.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>

using TransferTesting::takeCursors;
using TransferTesting::writeFile;

namespace {

/// The dialog as the list dialog keeps it, and what is needed to drive it.
struct Fixture
{
    Fixture()
    {
        parent = std::make_unique<QWidget>();
        dialog = new ConfigLoadDlg(&channel, &versions, parent.get());
    }

    /// What the controller offers after the upload.
    void offer(const QList<QByteArray> &items)
    {
        channel.answer("system import available", QByteArray::number(items.size()) + " config");
        for (int i = 0; i < items.size(); ++i) {
            channel.answer("system import item i"
                               + QByteArray::number(i + 1).rightJustified(2, '0'),
                           items.at(i));
        }
    }

    /// Expects the file chooser and chooses @p path.
    void choose(const QString &path) { driver.expectFileDialog("Load Configurations", path); }

    /// Expects that the dialog is shown, and runs @p action on it.
    void whenShown(const std::function<void()> &action)
    {
        driver.expectDialog("ConfigLoadDlgClass", [action](QDialog *shown) {
            QVERIFY(QTest::qWaitForWindowActive(shown)); // before that nothing has the focus
            action();
        });
    }

    /// The same, and closes it again.
    void look(const std::function<void()> &action = [] {})
    {
        whenShown([this, action] {
            action();
            click("pushButton_exit");
        });
    }

    void expectInformation(const QString &text)
    {
        ExpectedBox box;
        box.icon = QMessageBox::Information;
        box.title = "Load Configurations";
        box.text = text;
        box.parent = dialog;
        driver.expectBox(box);
    }

    void expectConfirmation(QMessageBox::StandardButton answer)
    {
        ExpectedBox box;
        box.icon = QMessageBox::Warning;
        box.title = "Confirmation";
        box.text = "Restoring this backup overwrites all settings and already existing "
                   "configurations.\n\nAny previous settings will get lost!\n\nProceed?";
        box.buttons = QMessageBox::Yes | QMessageBox::No;
        box.defaultButton = QMessageBox::No;
        box.answer = answer;
        box.parent = parent.get();
        driver.expectBox(box);
    }

    template <typename Widget>
    Widget *child(const char *name) const
    {
        auto *widget = dialog->findChild<Widget *>(name);
        if (!widget) {
            qFatal("there is no %s", name);
        }
        return widget;
    }

    QTableWidget *table() const { return child<QTableWidget>("tableWidget"); }
    QPushButton *button(const char *name) const { return child<QPushButton>(name); }
    void click(const char *name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    void clickCell(int row, int column) const
    {
        const QRect cell = table()->visualItemRect(table()->item(row, column));
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
    }

    QStringList row(int row) const
    {
        QStringList texts;
        for (int column = 0; column < table()->columnCount(); ++column) {
            texts << table()->item(row, column)->text();
        }
        return texts;
    }

    /// "A" where "Select all" is enabled, "C" for "Clear", "L" for "Load", "-" where not.
    QString enabledButtons() const
    {
        return QString(button("pushButton_selectAll")->isEnabled() ? "A" : "-")
            + (button("pushButton_clearSelection")->isEnabled() ? "C" : "-")
            + (button("pushButton_load")->isEnabled() ? "L" : "-");
    }

    QList<int> selectedRows() const
    {
        QList<int> rows;
        for (int i = 0; i < table()->rowCount(); ++i) {
            if (table()->item(i, 0)->isSelected()) {
                rows << i;
            }
        }
        return rows;
    }

    ScriptedChannel channel;
    BackendVersions versions;
    ModalDriver driver;
    std::unique_ptr<QWidget> parent;
    ConfigLoadDlg *dialog; // the parent's
};

ConfigEntry entry(const QString &identifier, bool locked = false)
{
    ConfigEntry result;
    result.identifier = identifier;
    result.locked = locked;
    return result;
}

const QList<QByteArray> threeItems{"config1 'Lab 1' 'north'", "config2 'Lab 2' 'south'",
                                   "config3 'Lab 3' 'west'"};

// What loading the byte 01 sends when three items are offered.
const QStringList uploadOfOneByte{"sendCommand system upload cancel",
                                  "sendCommand system upload 1 1 BA"};
const QStringList queriesForThreeItems{
    "queryString system import available", "queryString system import item i01",
    "queryString system import item i02", "queryString system import item i03"};

QString imported(const QString &identifier)
{
    return "sendCommand system import 'config' '" + identifier + "'";
}

/// What the rules say about loading two chunks with two items, the second of which is on the
/// controller already.
struct FaultyLoad : FaultyRun
{
    using FaultyRun::FaultyRun;

    void run()
    {
        succeeds("sendCommand system upload cancel");
        const QByteArray text = TransferEncoding::encode(QByteArray(100, 'x'));
        succeeds("sendCommand system upload 2 1 " + text);
        succeeds("sendCommand system upload 2 2 " + TransferEncoding::encode("x"));
        if (!succeeds("queryString system import available")) {
            trace << ScriptedChannel::reported("Error: Unable to get loaded configurations");
            return;
        }
        isShown = true;
        QString answer = "2 config"; // stays where an item is not described
        QStringList items;
        for (const char *number : {"1", "2"}) {
            answer = succeeds(QString("queryString system import item i0") + number)
                ? QString("config") + number
                : answer;
            items << answer;
        }
        for (const QString &item : qAsConst(items)) {
            if (item == "config2") {
                succeeds("sendCommandReply veltra2 config delete_config config2");
            }
        }
        for (const QString &item : qAsConst(items)) {
            trace << "setTimeout 0 20000 0";
            if (!succeeds(imported(item))) {
                isComplete = false;
                break;
            }
        }
        trace << ScriptedChannel::announced();
    }

    bool isShown = false;
    bool isComplete = true;
};

} // namespace

class TestConfigLoadDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void cleanup()
    {
        QCOMPARE(takeCursors(), 0);
        QVERIFY(!QApplication::activeModalWidget());
    }

    void theFormHoldsTheNamedWidgets_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("whatsThis");
        const auto row = [](const char *name, const char *kind, const char *text,
                            const char *whatsThis) {
            QTest::newRow(name) << name << kind << text << whatsThis;
        };
        row("label_path", "QLabel", "file", "");
        row("lineEdit_path", "QLineEdit", "", "The configuration file opened for loading");
        row("label_2", "QLabel", "content:", "");
        row("pushButton_selectAll", "QPushButton", "Select &all", "Select all entries in the list");
        row("pushButton_clearSelection", "QPushButton", "&Clear",
            "Clear the selection in the list");
        row("label_error", "QLabel", "", "");
        row("pushButton_load", "QPushButton", "&Load",
            "Load selected configurations which are marked in the list above");
        row("pushButton_exit", "QPushButton", "E&xit", "Close dialog");
    }

    void theFormHoldsTheNamedWidgets()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, kind);
        const Fixture f;
        auto *widget = f.dialog->findChild<QWidget *>(name);
        QVERIFY(widget);
        QCOMPARE(QString(widget->metaObject()->className()), kind);
        QTEST(widget->property("text").toString(), "text");
        QTEST(widget->whatsThis(), "whatsThis");
    }

    void theDialogHasItsSizesAndTitle()
    {
        const Fixture f;
        QCOMPARE(f.dialog->objectName(), QString("ConfigLoadDlgClass"));
        QCOMPARE(f.dialog->windowTitle(), QString("Load Configurations"));
        QCOMPARE(f.dialog->whatsThis(), QString("Load configuration"));
        QCOMPARE(f.dialog->size(), QSize(459, 288));
        QCOMPARE(f.dialog->minimumSize(), QSize(350, 250));
        QVERIFY(f.child<QLineEdit>("lineEdit_path")->isReadOnly());
        const auto *line = f.child<QFrame>("line");
        QCOMPARE(line->frameShape(), QFrame::HLine);
        QCOMPARE(line->frameShadow(), QFrame::Sunken);
    }

    void theTableSelectsWholeRowsAndEditsNothing()
    {
        const Fixture f;
        const QTableWidget *table = f.table();
        QStringList headers;
        for (int column = 0; column < table->columnCount(); ++column) {
            headers << table->horizontalHeaderItem(column)->text();
        }
        QCOMPARE(headers, QStringList({"Description", "Owner", "ID", "Status"}));
        QVERIFY(table->verticalHeader()->isHidden());
        QVERIFY(table->horizontalHeader()->stretchLastSection());
        QVERIFY(!table->horizontalHeader()->sectionsClickable());
        QCOMPARE(table->selectionMode(), QAbstractItemView::MultiSelection);
        QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
        const int leastHeight = QTableWidget().verticalHeader()->minimumSectionSize();
        QCOMPARE(table->verticalHeader()->minimumSectionSize(), leastHeight);
        QCOMPARE(table->verticalHeader()->defaultSectionSize(), std::max(20, leastHeight));
        QVERIFY(table->isColumnHidden(3));
        const auto buttons = f.dialog->findChildren<QPushButton *>();
        for (const QPushButton *button : buttons) {
            QVERIFY2(!button->isDefault(), qPrintable(button->objectName()));
        }
        QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
        QVERIFY(!table->isSortingEnabled());
    }

    void theKeyboardReachesEverythingInOrder()
    {
        Fixture f;
        f.offer(threeItems);
        QStringList order;
        f.choose(oneByte());
        f.look([&f, &order] {
            f.clickCell(0, 0); // so that every button is enabled
            do {
                order << QApplication::focusWidget()->objectName();
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            } while (QApplication::focusWidget() != f.table() && order.size() < 10);
        });
        f.dialog->openAndExec();
        QCOMPARE(order,
                 QStringList({"tableWidget", "pushButton_selectAll", "pushButton_clearSelection",
                              "pushButton_load", "pushButton_exit", "lineEdit_path"}));
        QCOMPARE(f.child<QLabel>("label_path")->buddy(), f.child<QWidget>("lineEdit_path"));
        QCOMPARE(f.child<QLabel>("label_2")->buddy(), f.table());
    }

    void creatingTheDialogSendsNothing()
    {
        const Fixture f;
        QCOMPARE(f.channel.trace(), QStringList());
    }

    void theChooserStartsAtHome()
    {
        Fixture f;
        f.driver.expectFileDialog("Load Configurations", {}, [&f](QFileDialog *chooser) {
            QCOMPARE(chooser->directory().absolutePath(), QDir::homePath());
            QCOMPARE(chooser->nameFilters(), QStringList("Configuration file (*.dat *.xml *.*)"));
            QCOMPARE(chooser->parentWidget(), f.parent.get());
            QCOMPARE(chooser->acceptMode(), QFileDialog::AcceptOpen);
            QCOMPARE(chooser->fileMode(), QFileDialog::ExistingFile);
        });
        f.dialog->openAndExec();
    }

    void cancellingTheChooserSendsNothing()
    {
        Fixture f;
        f.choose({});
        QCOMPARE(f.dialog->openAndExec(), 1);
        QCOMPARE(f.channel.trace(), QStringList());
    }

    void theChooserStartsWhereTheLastFileWas()
    {
        QVERIFY(QDir(m_folder.path()).mkpath("deep/down"));
        Fixture f;
        f.choose(fileWith({}, "deep/down/empty.dat"));
        f.dialog->openAndExec();
        for (int i = 0; i < 2; ++i) { // a cancelled choice changes nothing
            f.driver.expectFileDialog("Load Configurations", {}, [this](QFileDialog *chooser) {
                QCOMPARE(chooser->directory().absolutePath(), m_folder.filePath("deep/down"));
            });
            f.dialog->openAndExec();
        }
    }

    void aConfigurationFileIsUploadedListedAndImported()
    {
        Fixture f;
        f.offer(threeItems);
        f.choose(oneByte());
        f.whenShown([&f] { f.click("pushButton_load"); });
        f.expectInformation("Loading configuration successfully.");
        QCOMPARE(f.dialog->openAndExec(), int(QDialog::Accepted));
        QCOMPARE(
            f.channel.trace(),
            uploadOfOneByte + queriesForThreeItems
                + QStringList({"setTimeout 0 20000 0", imported("config1"), "setTimeout 0 20000 0",
                               imported("config2"), "setTimeout 0 20000 0", imported("config3"),
                               ScriptedChannel::announced()}));
    }

    void aFileOfSeveralChunksIsSentWhole()
    {
        const QByteArray bytes = QByteArray(100, 'a') + QByteArray(100, 'b') + QByteArray(50, 'c');
        Fixture f;
        f.offer({});
        f.choose(fileWith(bytes));
        f.look();
        f.dialog->openAndExec();
        const auto chunk = [&bytes](int number) {
            return QStringLiteral("sendCommand system upload 3 %1 ").arg(number)
                + QString::fromLatin1(TransferEncoding::encode(bytes.mid(100 * (number - 1), 100)));
        };
        QCOMPARE(f.channel.trace(),
                 QStringList({"sendCommand system upload cancel", chunk(1), chunk(2), chunk(3),
                              "queryString system import available"}));
    }

    void theFilesPathIsShown()
    {
        Fixture f;
        f.offer(threeItems);
        f.choose(oneByte());
        f.look([&f, this] {
            QCOMPARE(f.child<QLineEdit>("lineEdit_path")->text(), m_folder.filePath("some.dat"));
        });
        f.dialog->openAndExec();
    }

    void theTableShowsWhatTheControllerFound()
    {
        Fixture f;
        f.offer({"config1 'Lab 1' 'north wall'", "config2 '' ''", "config3",
                 "config4 'O'Hara' 'the 'old' hall'", "config5 'M\xfcller' '<b>bold</b>'"});
        f.choose(oneByte());
        f.look([&f] {
            QCOMPARE(f.table()->rowCount(), 5);
            QCOMPARE(f.row(0), QStringList({"north wall", "Lab 1", "config1", ""}));
            QCOMPARE(f.row(1), QStringList({"", "", "config2", ""}));
            QCOMPARE(f.row(2), QStringList({"", "", "config3", ""}));
            QCOMPARE(f.row(3), QStringList({"the", "OHara", "config4", ""}));
            QCOMPARE(f.row(4),
                     QStringList({"<b>bold</b>", QString::fromLatin1("M\xfcller"), "config5", ""}));
            QVERIFY(f.table()->isColumnHidden(3));
            QVERIFY(f.table()->hasFocus());
        });
        f.dialog->openAndExec();
    }

    void theBaseItemIsNeverShown()
    {
        Fixture f;
        f.offer({"__base 'me' 'base'", "config1 '' 'one'", "__base '' ''", "__Base '' 'another'",
                 "__base"});
        f.choose(oneByte());
        f.whenShown([&f] {
            QCOMPARE(f.table()->rowCount(), 2);
            QCOMPARE(f.row(0), QStringList({"one", "", "config1", ""}));
            QCOMPARE(f.row(1), QStringList({"another", "", "__Base", ""}));
            f.click("pushButton_load");
        });
        f.expectInformation("Loading configuration successfully.");
        f.dialog->openAndExec();
        QVERIFY(!f.channel.trace().contains(imported("__base")));
    }

    void noItemAtAllStillOpensTheDialog_data()
    {
        QTest::addColumn<QByteArray>("announcement");
        QTest::newRow("none") << QByteArray("0 config");
        QTest::newRow("less than none") << QByteArray("-2 config");
        QTest::newRow("no number") << QByteArray("few config");
    }

    void noItemAtAllStillOpensTheDialog()
    {
        QFETCH(const QByteArray, announcement);
        Fixture f;
        f.channel.answer("system import available", announcement);
        f.choose(oneByte());
        f.look([&f] {
            QCOMPARE(f.table()->rowCount(), 0);
            QCOMPARE(f.enabledButtons(), QString("---"));
        });
        QCOMPARE(f.dialog->openAndExec(), int(QDialog::Accepted));
        QCOMPARE(f.channel.trace(), uploadOfOneByte + queriesForThreeItems.mid(0, 1));
    }

    void everythingIsSelectedAtFirst()
    {
        Fixture f;
        f.offer(threeItems);
        f.choose(oneByte());
        f.look([&f] {
            QCOMPARE(f.selectedRows(), QList<int>({0, 1, 2}));
            QCOMPARE(f.enabledButtons(), QString("-CL"));
            QVERIFY(f.table()->hasFocus());
        });
        f.dialog->openAndExec();
    }

    void theNextFileReplacesTheTable()
    {
        Fixture f;
        f.offer(threeItems);
        f.choose(oneByte());
        f.look([&f] { f.clickCell(1, 0); });
        f.dialog->openAndExec();

        f.offer({"config7 '' 'seven'", "config8 '' 'eight'"});
        f.choose(oneByte());
        f.look([&f] {
            QCOMPARE(f.table()->rowCount(), 2);
            QCOMPARE(f.row(0), QStringList({"seven", "", "config7", ""}));
            QCOMPARE(f.selectedRows(), QList<int>({0, 1}));
        });
        f.dialog->openAndExec();

        f.offer({});
        f.choose(oneByte());
        f.look([&f] {
            QCOMPARE(f.table()->rowCount(), 0);
            QCOMPARE(f.enabledButtons(), QString("---"));
        });
        f.dialog->openAndExec();
    }

    void theSameFileMayBeLoadedAgain()
    {
        Fixture f;
        f.offer(threeItems);
        for (int i = 0; i < 3; ++i) {
            f.choose(oneByte());
            f.look([&f] {
                QCOMPARE(f.selectedRows(), QList<int>({0, 1, 2}));
                QCOMPARE(f.enabledButtons(), QString("-CL"));
            });
            f.dialog->openAndExec();
            QCOMPARE(f.channel.takeTrace(), uploadOfOneByte + queriesForThreeItems);
        }
    }

    void aFileThatVanishesIsReported()
    {
        const QString path = oneByte();
        Fixture f;
        f.channel.whenSent("system upload cancel", [path] { QVERIFY(QFile::remove(path)); });
        f.choose(path);
        QCOMPARE(f.dialog->openAndExec(), 1);
        QCOMPARE(f.channel.trace(),
                 QStringList({"sendCommand system upload cancel",
                              ScriptedChannel::reported("file cannot be opened for reading"),
                              ScriptedChannel::reported("Error: Unable to load configurations")}));
    }

    void anEmptyFileIsReported()
    {
        Fixture f;
        f.choose(fileWith({}));
        QCOMPARE(f.dialog->openAndExec(), 1);
        QCOMPARE(f.channel.trace(),
                 QStringList({"sendCommand system upload cancel",
                              ScriptedChannel::reported("Error: Unable to load configurations")}));
    }

    void aFileThatShrinksIsReported()
    {
        const QByteArray bytes(1000000, 'x');
        const QString path = fileWith(bytes);
        Fixture f;
        f.channel.whenSent("system upload 10000 1 " + TransferEncoding::encode(bytes.left(100)),
                           [path] { QVERIFY(QFile::resize(path, 1)); });
        f.choose(path);
        QCOMPARE(f.dialog->openAndExec(), 1);
        const QStringList trace = f.channel.trace();
        QCOMPARE(trace.mid(trace.size() - 2),
                 QStringList({ScriptedChannel::reported("unable to read data: 0"),
                              ScriptedChannel::reported("Error: Unable to load configurations")}));
    }

    void anUnansweredAnnouncementIsReported()
    {
        Fixture f;
        f.choose(oneByte());
        QCOMPARE(f.dialog->openAndExec(), 1);
        QCOMPARE(f.channel.trace(),
                 uploadOfOneByte
                     + QStringList({"queryString system import available",
                                    ScriptedChannel::reported(
                                        "Error: Unable to get loaded configurations")}));
    }

    void somethingElseThanConfigurationsIsReported_data()
    {
        QTest::addColumn<QByteArray>("announcement");
        QTest::newRow("another kind") << QByteArray("3 rooms");
        QTest::newRow("one word") << QByteArray("3");
        QTest::newRow("two blanks") << QByteArray("3  config");
        QTest::newRow("upper case") << QByteArray("3 CONFIG");
        QTest::newRow("nothing") << QByteArray("");
        QTest::newRow("absurd count") << QByteArray("2000000000 config");
    }

    void somethingElseThanConfigurationsIsReported()
    {
        QFETCH(const QByteArray, announcement);
        Fixture f;
        f.channel.answer("system import available", announcement);
        f.choose(oneByte());
        QCOMPARE(f.dialog->openAndExec(), 1);
        QCOMPARE(f.channel.trace(),
                 uploadOfOneByte
                     + QStringList({"queryString system import available",
                                    ScriptedChannel::reported(
                                        "Error: Configuration file can not be recognized")}));
    }

    void aRefusedUploadGoesOn_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("cancel") << QByteArray("system upload cancel");
        QTest::newRow("chunk") << QByteArray("system upload 1 1 BA");
    }

    void aRefusedUploadGoesOn()
    {
        QFETCH(const QByteArray, command);
        Fixture f;
        f.offer(threeItems);
        f.channel.fail(command);
        f.choose(oneByte());
        f.look();
        QCOMPARE(f.dialog->openAndExec(), int(QDialog::Accepted));
        QCOMPARE(f.channel.trace(), uploadOfOneByte + queriesForThreeItems);
    }

    void anItemThatIsNotDescribedStillMakesARow()
    {
        Fixture f;
        f.offer(threeItems);
        f.channel.fail("system import item i02");
        f.choose(oneByte());
        f.look([&f] {
            QCOMPARE(f.table()->rowCount(), 3);
            QCOMPARE(f.row(1), f.row(0)); // the answer before stays
        });
        f.dialog->openAndExec();
        QCOMPARE(f.channel.trace(), uploadOfOneByte + queriesForThreeItems);
    }

    void aDocumentThatIsNoBackupIsUploaded_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("contents");
        QTest::newRow("wrong root") << "some.xml" << QByteArray("<ZORB/>");
        QTest::newRow("broken off") << "some.xml" << QByteArray("<ZOR><ZORFileInfo>");
        QTest::newRow("wrong section") << "some.xml" << QByteArray("<ZOR><Other/></ZOR>");
        QTest::newRow("no document") << "some.xml" << QByteArray("a");
        QTest::newRow("noise") << "some.dat" << QByteArray("\0\xff\xfe<ZOR/>", 9);
    }

    void aDocumentThatIsNoBackupIsUploaded()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, contents);
        Fixture f;
        f.channel.answer("system import available", "0 none");
        f.choose(fileWith(contents, name));
        QCOMPARE(f.dialog->openAndExec(), 1);
        QCOMPARE(f.channel.trace(),
                 QStringList({"sendCommand system upload cancel",
                              "sendCommand system upload 1 1 "
                                  + QString::fromLatin1(TransferEncoding::encode(contents)),
                              "queryString system import available",
                              ScriptedChannel::reported(
                                  "Error: Configuration file can not be recognized")}));
    }

    void aBackupIsRestoredWhateverItsName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("xml") << "backup.xml";
        QTest::newRow("dat") << "backup.dat";
        QTest::newRow("none") << "backup";
    }

    void aBackupIsRestoredWhateverItsName()
    {
        QFETCH(const QString, name);
        Fixture f;
        f.choose(fileWith(SampleBackup::document(), name));
        f.expectConfirmation(QMessageBox::No);
        QCOMPARE(f.dialog->openAndExec(), 2);
        QCOMPARE(f.channel.trace(), QStringList());
    }

    void aBackupIsRefusedWhileAConfigurationIsLocked()
    {
        Fixture f;
        f.dialog->setConfigurationList({entry("config1"), entry("config2", true)});
        const QString path = fileWith(SampleBackup::document());
        f.choose(path);
        ExpectedBox box;
        box.icon = QMessageBox::Information;
        box.title = "Cannot load backup";
        box.text = "Cannot load backup from file '" + path
            + "' !\n One or more Configurations are locked.";
        box.parent = f.dialog;
        f.driver.expectBox(box);
        QCOMPARE(f.dialog->openAndExec(), 1);
        QCOMPARE(f.channel.trace(), QStringList());
    }

    void anEmptyBackupEndsInItsRefusal()
    {
        Fixture f;
        f.versions = SampleBackup::versions();
        f.channel.answer("system controller_embedded", "yes");
        const QString path = fileWith("<ZOR/>", "some.xml");
        f.choose(path);
        f.expectConfirmation(QMessageBox::Yes);
        ExpectedBox box;
        box.icon = QMessageBox::Critical;
        box.title = "Invalid backup file";
        box.text = "Unable to restore from backup (" + path + ")";
        box.parent = f.parent.get();
        f.driver.expectBox(box);
        QCOMPARE(f.dialog->openAndExec(), 3);
    }

    void anExceptionEndsTheRestoreWithTen()
    {
        Fixture f;
        f.versions = SampleBackup::versions();
        f.channel.fail("system controller_embedded");
        f.choose(fileWith(SampleBackup::document()));
        f.expectConfirmation(QMessageBox::Yes);
        QCOMPARE(f.dialog->openAndExec(), 10);
        QCOMPARE(f.channel.trace(),
                 QStringList({"setTimeout 0 3000 1", "queryBool system controller_embedded"}));
        QCOMPARE(takeCursors(), 0);
    }

    void thePathOfABackupIsNotShown()
    {
        Fixture f;
        f.choose(fileWith(SampleBackup::document()));
        f.expectConfirmation(QMessageBox::No);
        f.dialog->openAndExec();
        QCOMPARE(f.child<QLineEdit>("lineEdit_path")->text(), QString());
    }

    void lockedConfigurationsAreShownAsLocked()
    {
        Fixture f;
        f.offer(threeItems);
        f.dialog->setConfigurationList(
            {entry("config2", true), entry("config3"), entry("x", true)});
        f.choose(oneByte());
        f.look([&f] {
            QVERIFY(!f.table()->isColumnHidden(3));
            QCOMPARE(f.row(0), QStringList({"north", "Lab 1", "config1", ""}));
            QCOMPARE(f.row(1), QStringList({"south", "Lab 2", "config2", "locked"}));
            QCOMPARE(f.row(2), QStringList({"west", "Lab 3", "config3", ""}));
            const Qt::ItemFlags forbidden = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
            for (int column = 0; column < 4; ++column) {
                QCOMPARE(f.table()->item(1, column)->flags() & forbidden, Qt::ItemFlags());
                QCOMPARE(f.table()->item(0, column)->flags() & forbidden, forbidden);
            }
        });
        f.dialog->openAndExec();
    }

    void lockedConfigurationsCannotBeSelected()
    {
        Fixture f;
        f.offer(threeItems);
        f.dialog->setConfigurationList({entry("config2", true)});
        f.choose(oneByte());
        f.whenShown([&f] {
            QCOMPARE(f.selectedRows(), QList<int>({0, 2}));
            f.click("pushButton_clearSelection");
            f.clickCell(1, 0);
            QCOMPARE(f.selectedRows(), QList<int>());
            f.click("pushButton_selectAll");
            QCOMPARE(f.selectedRows(), QList<int>({0, 2}));
            f.click("pushButton_load");
        });
        f.expectInformation("Loading configuration successfully.");
        f.dialog->openAndExec();
        QVERIFY(f.channel.trace().contains(imported("config1")));
        QVERIFY(!f.channel.trace().contains(imported("config2")));
    }

    void anIdentifierThatOccursTwiceIsLockedIfEitherIs()
    {
        Fixture f;
        f.offer(threeItems);
        f.dialog->setConfigurationList(
            {entry("config1"), entry("config1", true), entry("config2", true), entry("config2")});
        f.choose(oneByte());
        f.look([&f] { QCOMPARE(f.selectedRows(), QList<int>({2})); });
        f.dialog->openAndExec();
    }

    void theStatusColumnComesAndGoes()
    {
        Fixture f;
        f.offer(threeItems);
        for (const bool isLocked : {false, true, false, true}) {
            f.dialog->setConfigurationList({entry("config2", isLocked)});
            f.choose(oneByte());
            f.look([&f, isLocked] { QCOMPARE(f.table()->isColumnHidden(3), !isLocked); });
            f.dialog->openAndExec();
        }
    }

    void theListOfConfigurationsIsACopyThatIsReplaced()
    {
        Fixture f;
        f.offer(threeItems);
        ConfigEntryList list{entry("config1", true)};
        f.dialog->setConfigurationList(list);
        f.dialog->setConfigurationList(list = {entry("config2", true)});
        list.clear();
        f.choose(oneByte());
        f.look([&f] { QCOMPARE(f.selectedRows(), QList<int>({0, 2})); });
        f.dialog->openAndExec();
    }

    void theButtonsFollowTheSelection()
    {
        Fixture f;
        f.offer(threeItems);
        f.choose(oneByte());
        f.look([&f] {
            QCOMPARE(f.enabledButtons(), QString("-CL"));
            f.clickCell(0, 1);
            QCOMPARE(f.enabledButtons(), QString("ACL"));
            f.clickCell(1, 0);
            QCOMPARE(f.enabledButtons(), QString("ACL"));
            f.clickCell(2, 2);
            QCOMPARE(f.enabledButtons(), QString("A--"));
            f.clickCell(2, 2);
            QCOMPARE(f.enabledButtons(), QString("ACL"));
        });
        f.dialog->openAndExec();
    }

    void withTheStatusColumnTheSelectionCountsMore()
    {
        Fixture f;
        f.offer({"config1", "config2", "config3", "config4"});
        f.dialog->setConfigurationList({entry("config4", true)});
        f.choose(oneByte());
        f.look([&f] {
            // Three rows of four cells count as four rows, which are all there are.
            QCOMPARE(f.selectedRows(), QList<int>({0, 1, 2}));
            QCOMPARE(f.enabledButtons(), QString("-CL"));
            f.clickCell(0, 0); // eight cells, two rows
            QCOMPARE(f.enabledButtons(), QString("ACL"));
        });
        f.dialog->openAndExec();

        f.offer({"config1", "config2", "config4"});
        f.choose(oneByte());
        f.look([&f] {
            // Two of three rows, eight cells, count as two: all that can be selected is, yet the
            // button stays on.
            QCOMPARE(f.selectedRows(), QList<int>({0, 1}));
            QCOMPARE(f.enabledButtons(), QString("ACL"));
        });
        f.dialog->openAndExec();
    }

    void aTableWithoutColumnsChangesNoButton()
    {
        Fixture f;
        f.offer(threeItems);
        f.choose(oneByte());
        f.look([&f] {
            f.table()->setColumnCount(0);
            f.button("pushButton_load")->setEnabled(true);
            QMetaObject::invokeMethod(f.dialog, "on_tableWidget_itemSelectionChanged");
            QVERIFY(f.button("pushButton_load")->isEnabled());
            f.dialog->resize(500, 300);
        });
        f.dialog->openAndExec();
    }

    void selectAllSelectsAndTakesTheFocus()
    {
        Fixture f;
        f.offer(threeItems);
        f.choose(oneByte());
        f.look([&f] {
            f.clickCell(1, 0);
            QCOMPARE(f.selectedRows(), QList<int>({0, 2}));
            f.button("pushButton_selectAll")->setFocus();
            f.click("pushButton_selectAll");
            QCOMPARE(f.selectedRows(), QList<int>({0, 1, 2}));
            QVERIFY(f.table()->hasFocus());
        });
        f.dialog->openAndExec();
    }

    void clearSelectsNothing()
    {
        Fixture f;
        f.offer(threeItems);
        f.choose(oneByte());
        f.look([&f] {
            f.click("pushButton_clearSelection");
            QCOMPARE(f.selectedRows(), QList<int>());
            QCOMPARE(f.enabledButtons(), QString("A--"));
        });
        f.dialog->openAndExec();
    }

    void onlySelectedRowsAreImportedInRowOrder()
    {
        Fixture f;
        f.offer({"config3", "__base", "config1", "config2"});
        f.choose(oneByte());
        f.whenShown([&f] {
            f.click("pushButton_clearSelection");
            f.clickCell(2, 0);
            f.clickCell(0, 0);
            f.click("pushButton_load");
        });
        f.expectInformation("Loading configuration successfully.");
        f.dialog->openAndExec();
        QCOMPARE(f.channel.trace().mid(7),
                 QStringList({"setTimeout 0 20000 0", imported("config3"), "setTimeout 0 20000 0",
                              imported("config2"), ScriptedChannel::announced()}));
    }

    void anExistingConfigurationIsReplaced()
    {
        Fixture f;
        f.offer(threeItems);
        f.dialog->setConfigurationList(
            {entry("config3"), entry("config1", true), entry("config2")});
        f.choose(oneByte());
        f.whenShown([&f] { f.click("pushButton_load"); });
        f.expectInformation("Loading configuration successfully.");
        f.dialog->openAndExec();
        QCOMPARE(f.channel.trace().mid(6),
                 QStringList({"sendCommandReply veltra2 config delete_config config2",
                              "sendCommandReply veltra2 config delete_config config3",
                              "setTimeout 0 20000 0", imported("config2"), "setTimeout 0 20000 0",
                              imported("config3"), ScriptedChannel::announced()}));
    }

    void aFailedImportIsShownAndTheDialogAccepted()
    {
        Fixture f;
        f.offer(threeItems);
        f.channel.fail("system import 'config' 'config2'");
        f.choose(oneByte());
        f.whenShown([&f] { f.click("pushButton_load"); });
        f.expectInformation("Loading configuration unsuccessfully.");
        QCOMPARE(f.dialog->openAndExec(), int(QDialog::Accepted));
        QCOMPARE(f.channel.trace().mid(6),
                 QStringList({"setTimeout 0 20000 0", imported("config1"), "setTimeout 0 20000 0",
                              imported("config2"), ScriptedChannel::announced()}));
    }

    void everySingleCommandMayFail_data()
    {
        QTest::addColumn<bool>("lasting");
        QTest::newRow("one command fails") << false;
        QTest::newRow("all commands fail from one on") << true;
    }

    void everySingleCommandMayFail()
    {
        QFETCH(const bool, lasting);
        bool isFaultMet = true;
        for (int failAt = 1; isFaultMet; ++failAt) {
            FaultyLoad expected(failAt, lasting);
            expected.run();

            Fixture f;
            f.offer({"config1", "config2"});
            f.dialog->setConfigurationList({entry("config2")});
            f.channel.failNth(failAt, lasting);
            f.choose(fileWith(QByteArray(101, 'x')));
            if (expected.isShown) {
                f.whenShown([&f] { f.click("pushButton_load"); });
                f.expectInformation(expected.isComplete ? "Loading configuration successfully."
                                                        : "Loading configuration unsuccessfully.");
            }
            QCOMPARE(f.dialog->openAndExec(), 1);
            QCOMPARE(f.channel.trace(), expected.trace);
            QCOMPARE(takeCursors(), 0);
            isFaultMet = expected.isFaultMet;
        }
    }

    void everyWayOutAccepts_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("Exit") << 0;
        QTest::newRow("Escape") << 1;
        QTest::newRow("the window's close button") << 2;
    }

    void everyWayOutAccepts()
    {
        QFETCH(const int, way);
        Fixture f;
        f.offer(threeItems);
        f.choose(oneByte());
        f.whenShown([&f, way] {
            if (way == 0) {
                f.click("pushButton_exit");
            } else if (way == 1) {
                QTest::keyClick(f.table(), Qt::Key_Escape);
            } else {
                f.dialog->close();
            }
        });
        QCOMPARE(f.dialog->openAndExec(), int(QDialog::Accepted));
        QCOMPARE(f.channel.trace(), uploadOfOneByte + queriesForThreeItems);
    }

    void enterInTheTableLoadsNothingAndClosesNothing()
    {
        Fixture f;
        f.offer(threeItems);
        f.choose(oneByte());
        bool isStillOpen = false;
        f.whenShown([&] {
            QTest::keyClick(f.table(), Qt::Key_Return);
            isStillOpen = f.dialog->isVisible();
            f.dialog->reject();
        });
        f.dialog->openAndExec();
        QVERIFY(isStillOpen);
        QCOMPARE(f.channel.trace(), uploadOfOneByte + queriesForThreeItems);
    }

    void columnsShareTheTablesWidth_data()
    {
        QTest::addColumn<int>("width");
        for (const int width : {350, 459, 600, 1003}) {
            QTest::addRow("%d", width) << width;
        }
    }

    void columnsShareTheTablesWidth()
    {
        QFETCH(const int, width);
        Fixture f;
        f.offer(threeItems);
        f.dialog->setConfigurationList({entry("config2", true)});
        f.choose(oneByte());
        f.look([&f, width] {
            f.dialog->resize(width, 400);
            QApplication::processEvents();
            for (int column = 0; column < 3; ++column) {
                QCOMPARE(f.table()->columnWidth(column), f.table()->width() / 4 - 2);
            }
            // The last one stretches over what is left.
            QCOMPARE(f.table()->horizontalHeader()->length(), f.table()->viewport()->width());
        });
        f.dialog->openAndExec();
    }

    void theHostMayDestroyTheDialogAtAnyTime_data()
    {
        QTest::addColumn<int>("moment");
        QTest::newRow("while the file is chosen") << 0;
        QTest::newRow("while the dialog is open") << 1;
        QTest::newRow("while the outcome is shown") << 2;
    }

    void theHostMayDestroyTheDialogAtAnyTime()
    {
        QFETCH(const int, moment);
        Fixture f;
        f.offer(threeItems);
        const auto destroy = [&f] { f.parent.reset(); };
        if (moment == 0) {
            f.driver.expectDialog("QFileDialog", [destroy](QDialog *) { destroy(); });
        } else {
            f.choose(oneByte());
            f.whenShown([&f, moment, destroy] {
                if (moment == 1) {
                    destroy();
                } else {
                    f.click("pushButton_load");
                }
            });
        }
        if (moment == 2) {
            f.driver.expectDialog({}, [destroy](QDialog *) { destroy(); });
        }
        f.dialog->openAndExec();
        QVERIFY(!f.parent);
    }

private:
    QString fileWith(const QByteArray &contents, const QString &name = "some.dat") const
    {
        return writeFile(m_folder.filePath(name), contents);
    }
    QString oneByte() const { return fileWith("\x01"); }

    QTemporaryDir m_folder;
};

VELTRA4_TEST(TestConfigLoadDlg)
#include "tst_configloaddlg.moc"

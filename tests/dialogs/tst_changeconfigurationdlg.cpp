#include "dialogs/changeconfigurationdlg.h"

#include "hostapi/backendversions.h"
#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QApplication>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

using UserInput::named;
using UserInput::textOf;

namespace {

const QStringList allIds{"standard", "alpha", "beta", "locked"};
const QStringList sortedIds{"alpha", "beta", "locked", "standard"}; // by description

QStringList rowTrace(int slot, const QString &id)
{
    return {QStringLiteral("queryString config config t%1").arg(slot, 2, 10, QChar('0')),
            "queryString config owner_of_config " + id, "queryString config desc_of_config " + id,
            "queryString config config_has_password " + id};
}

// What a refresh sends to a controller that holds these configurations.
QStringList refreshTrace(const QStringList &ids = allIds, bool asksForSpace = true)
{
    QStringList trace{"queryInt config number_of_configs", "queryString config active_config"};
    if (asksForSpace) {
        trace.prepend("queryDouble config free_space");
    }
    for (int i = 0; i < ids.size(); ++i) {
        trace << rowTrace(i + 1, ids.at(i));
    }
    return trace;
}

QStringList activationTrace(const QString &id)
{
    return {"setTimeout 0 20000 0",
            "sendCommand config active_config " + id,
            "queryString config active_config",
            "queryString system hostname",
            "queryString config desc",
            ScriptedChannel::announced()};
}

QStringList editTrace(const QString &id)
{
    return {"queryString config owner_of_config " + id, "queryString config desc_of_config " + id};
}

// The trace with an error report after the line at which it is due.
QStringList reportedAfter(const QString &line, const QString &report, QStringList trace)
{
    trace.insert(trace.indexOf(line) + 1, ScriptedChannel::reported(report));
    return trace;
}

void reject(QDialog *dialog)
{
    dialog->reject();
}

} // namespace

// Each test begins with a list dialog in front of a scripted controller that holds the
// configurations of allIds, of which "alpha" is active and "locked" is locked.
class TestChangeConfigurationDlg : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_channel = std::make_unique<ScriptedChannel>();
        m_driver = std::make_unique<ModalDriver>();
        m_channel->answerConfigurations({"standard", "alpha", "beta", "locked"}, "alpha");
        m_channel->answer("config config_has_password locked", "yes");
        m_channel->answer("config free_space", "0.5");
        m_channel->answer("system hostname", "controller");
        m_channel->answer("config desc", "\"description\"");
        create(27);
    }

    void cleanup()
    {
        m_driver->verify();
        m_dialog.reset();
        QCOMPARE(QApplication::topLevelWidgets().size(), 0);
    }

    // The form
    void theFormIsAsOperatorsKnowIt()
    {
        QCOMPARE(m_dialog->objectName(), "ConfigurationDialog");
        QCOMPARE(m_dialog->windowTitle(), "Configurations");
        QCOMPARE(m_dialog->whatsThis(), "Configuration dialog");
        QCOMPARE(m_dialog->size(), QSize(600, 514));
        for (const char *name : {"widget_xqu", "widget_xqu_buttons", "widget_active_configuration",
                                 "widget_log_settings"}) {
            QVERIFY2(m_dialog->findChild<QWidget *>(name), name);
        }
        QVERIFY(m_dialog->findChild<QGridLayout *>("gridLayout_active_configuration"));
        QVERIFY(find<QWidget>("widget_lct_lock")->isHidden());
        QVERIFY(!find<QLineEdit>("lineEdit_activeConfig")->isEnabled());
        for (const char *line : {"line_xqu1", "line_xqu2", "line_exit"}) {
            QCOMPARE(find<QFrame>(line)->frameStyle(), int(QFrame::HLine) | int(QFrame::Sunken));
        }
        QCOMPARE(find<QLabel>("label_activeConfig")->text(), "active configuration:");
        QCOMPARE(find<QLabel>("label_lct_lock")->text(), "lock or unlock active configuration");
        QCOMPARE(find<QLabel>("label_load_save_buttons")->text(),
                 "backup and restore of configurations");
        QCOMPARE(find<QLabel>("label_error")->text(), "");
    }

    void everyButtonIsAsOperatorsKnowIt()
    {
        const QVector<QStringList> buttons{
            {"delete", "&Delete", "Delete selected configuration"},
            {"new", "&New", "Create new configuration"},
            {"edit", "&Edit", "Edit selected configuration"},
            {"lock", "Lo&ck", "Lock/unlock the active configuration"},
            {"apply", "&Apply", "Set selected configuration active"},
            {"lct_lock", "Loc&k", "Lock or unlock the active configuration"},
            {"save", "&Backup", "Save configurations into .dat file"},
            {"load", "&Restore", "Load configurations from .dat file"},
            {"exit", "E&xit", "Close dialog"},
        };
        for (const QStringList &expected : buttons) {
            const QString &name = expected.at(0);
            const QPushButton *actual = button(name.toLatin1());
            QCOMPARE(QStringList({name, actual->text(), actual->whatsThis()}), expected);
            QCOMPARE(actual->autoDefault(), name == "apply");
            QCOMPARE(actual->isDefault(), name == "apply");
        }
    }

    void theTableSelectsWholeRowsAndIsNeverEdited()
    {
        QCOMPARE(table()->whatsThis(), "Available configurations");
        QCOMPARE(table()->editTriggers(), QAbstractItemView::NoEditTriggers);
        QCOMPARE(table()->selectionMode(), QAbstractItemView::SingleSelection);
        QCOMPARE(table()->selectionBehavior(), QAbstractItemView::SelectRows);
        QVERIFY(table()->showGrid());
        QVERIFY(!table()->alternatingRowColors());
        QVERIFY(!table()->isSortingEnabled());
        QCOMPARE(table()->verticalHeader()->defaultSectionSize(), 28);
        QCOMPARE(table()->verticalHeader()->minimumSectionSize(),
                 QTableWidget().verticalHeader()->minimumSectionSize());
        QVERIFY(table()->verticalHeader()->isHidden());
        QVERIFY(!table()->horizontalHeader()->sectionsClickable());
        QVERIFY(table()->horizontalHeader()->stretchLastSection());
        QVERIFY(table()->isColumnHidden(2));
    }

    // Construction and version gates
    void constructionRegistersTheReceiverAndRefreshes()
    {
        ScriptedChannel channel;
        channel.answerConfigurations({"standard", "alpha"}, "alpha");
        BackendVersions versions;
        const ChangeConfigurationDlg dialog(&channel, &versions, nullptr);
        QCOMPARE(channel.trace(),
                 QStringList("addMessageReceiver ConfigurationsModule")
                     + refreshTrace({"standard", "alpha"}, false));
        QCOMPARE(dialog.findChild<QTableWidget *>()->rowCount(), 2);
    }

    void destructionUnregistersTheReceiver()
    {
        QCOMPARE(m_channel->receivers().size(), 1);
        m_dialog.reset();
        QCOMPARE(m_channel->trace(), QStringList("removeMessageReceiver ServiceModule"));
        QVERIFY(m_channel->receivers().isEmpty());
    }

    void theVersionDecidesOnLocksTransfersAndFreeSpace_data()
    {
        QTest::addColumn<bool>("hasLocks");
        QTest::addColumn<bool>("hasTransfers");
        QTest::addColumn<bool>("asksForSpace");
        QTest::newRow("8") << false << false << false;
        QTest::newRow("9") << true << false << false;
        QTest::newRow("10") << true << false << false;
        QTest::newRow("11") << true << true << false;
        QTest::newRow("26") << true << true << false;
        QTest::newRow("27") << true << true << true;
    }

    void theVersionDecidesOnLocksTransfersAndFreeSpace()
    {
        QFETCH(const bool, hasLocks);
        QFETCH(const bool, hasTransfers);
        QFETCH(const bool, asksForSpace);
        m_channel->answer("config free_space", "0.0");
        create(QByteArray(QTest::currentDataTag()).toInt());
        QStringList headers;
        for (int column = 0; column < table()->columnCount(); ++column) {
            headers << table()->horizontalHeaderItem(column)->text();
        }
        const QStringList expected{"Description", "Owner", "ID", "Locked"};
        QCOMPARE(headers, expected.mid(0, hasLocks ? 4 : 3));
        QCOMPARE(button("lock")->isHidden(), !hasLocks);
        QCOMPARE(m_dialog->minimumSize(), hasLocks ? QSize(500, 300) : QSize(600, 400));
        QCOMPARE(find<QWidget>("widget_load_save")->isEnabled(), hasTransfers);
        exec();
        QCOMPARE(m_channel->trace(), refreshTrace(allIds, asksForSpace)); // lock states in any case
        QCOMPARE(find<QLabel>("label_error")->isHidden(), !asksForSpace);
        QCOMPARE(button("new")->isEnabled(), !asksForSpace);
    }

    // Refresh
    void fewFreeSpaceIsWarnedAbout_data()
    {
        QTest::addColumn<QByteArray>("free");
        QTest::addColumn<QString>("filled");
        QTest::addColumn<bool>("canCreate");
        QTest::newRow("above the limit") << QByteArray("0.2000001") << "" << true;
        QTest::newRow("at the limit") << QByteArray("0.2") << "80%" << true;
        QTest::newRow("enough for a new one") << QByteArray("0.0200001") << "97%" << true;
        QTest::newRow("not enough") << QByteArray("0.02") << "98%" << false;
        QTest::newRow("overfull") << QByteArray("-0.5") << "150%" << false;
        QTest::newRow("absurd") << QByteArray("-1e300") << "2147483647%" << false;
    }

    void fewFreeSpaceIsWarnedAbout()
    {
        QFETCH(const QByteArray, free);
        QFETCH(const QString, filled);
        QFETCH(const bool, canCreate);
        m_channel->answer("config free_space", free);
        exec();
        const auto *label = find<QLabel>("label_error");
        QCOMPARE(label->isHidden(), filled.isEmpty());
        QCOMPARE(label->text(),
                 filled.isEmpty() ? QString()
                                  : "<b><font color=red>configuration store filled " + filled
                         + "; please delete unnecessary configurations!</font></b>");
        QCOMPARE(button("new")->isEnabled(), canCreate);
    }

    void rowsAreSortedByDescription()
    {
        m_channel->answer("config desc_of_config alpha", "Zebra");
        m_channel->answer("config desc_of_config standard", "apple");
        m_channel->answer("config desc_of_config beta", "Apple");
        m_channel->answer("config desc_of_config locked", "mango");
        exec();
        QCOMPARE(column(0), QStringList({"Apple", "Zebra", "apple", "mango"}));
        QCOMPARE(column(2), QStringList({"beta", "alpha", "standard", "locked"}));
        QCOMPARE(column(3), QStringList({"no", "no", "no", "yes"}));
    }

    void rowsOfTheSameDescriptionKeepTheirOrder()
    {
        for (const QString &id : allIds) {
            m_channel->answer("config desc_of_config " + id.toLatin1(), "the same");
        }
        exec();
        QCOMPARE(column(2), allIds);
    }

    void theActiveRowIsBold()
    {
        for (const int minorVersion : {27, 8}) {
            create(minorVersion);
            for (int column = 0; column < table()->columnCount(); ++column) {
                QCOMPARE(boldIds(column), QStringList("alpha"));
            }
        }
    }

    void doubleQuotesAreRemoved()
    {
        m_channel->answer("config desc_of_config alpha", "\"a \"big\" one\"");
        m_channel->answer("config owner_of_config alpha", "\"\"Kim\"");
        showAt("alpha");
        QCOMPARE(column(0).constFirst(), "a big one");
        QCOMPARE(column(1).constFirst(), "Kim");
        QCOMPARE(shownAsActive(), "a big one");
    }

    void onlyExactlyYesMeansLocked()
    {
        for (const QString answer : {"yes", "yes ", "Yes", "no", ""}) {
            m_channel->answer("config config_has_password beta", answer.toLatin1());
            exec();
            const QTableWidgetItem *item = table()->item(rowOf("beta"), 3);
            QCOMPARE(answer + ": " + item->text(), answer + (answer == "yes" ? ": yes" : ": no"));
            const QIcon expected(answer == "yes" ? ":/lock.png" : ":/unlock.png");
            QVERIFY(!expected.isNull());
            const QImage picture = expected.pixmap(16, 16).toImage();
            QCOMPARE(item->icon().pixmap(16, 16).toImage(), picture);
            // Where it is selected a style would tint it otherwise.
            QCOMPARE(item->icon().pixmap(16, 16, QIcon::Selected).toImage(), picture);
        }
    }

    void everyFailedQueryIsReportedAndTheRowShowsTheOneBefore_data()
    {
        QTest::addColumn<QString>("report");
        QTest::addColumn<QStringList>("lastRow");
        const QString description = "description of locked";
        const QString owner = "owner of locked";
        QTest::newRow("config config t04")
            << "Unable to get configuration information"
            << QStringList{"description of beta", "owner of beta", "beta", "no"};
        QTest::newRow("config owner_of_config locked")
            << "Unable to get the owner of configuration"
            << QStringList{description, "owner of beta", "locked", "yes"};
        QTest::newRow("config desc_of_config locked")
            << "Unable to get description of configuration"
            << QStringList{"description of beta", owner, "locked", "yes"};
        QTest::newRow("config config_has_password locked")
            << "Unable to get whether configuration has pasword"
            << QStringList{description, owner, "locked", "no"};
    }

    void everyFailedQueryIsReportedAndTheRowShowsTheOneBefore()
    {
        QFETCH(const QString, report);
        QFETCH(const QStringList, lastRow);
        const QString command = QTest::currentDataTag();
        m_channel->fail(command.toLatin1());
        exec();
        const QStringList expected = refreshTrace(allIds.mid(0, 3)) + rowTrace(4, lastRow.at(2));
        QCOMPARE(m_channel->trace(), reportedAfter("queryString " + command, report, expected));
        QVector<QStringList> rows(4);
        for (int row = 0; row < rows.size(); ++row) {
            for (int column = 0; column < table()->columnCount(); ++column) {
                rows[row] << table()->item(row, column)->text();
            }
        }
        QVERIFY(rows.contains(lastRow));
    }

    void aFailedActiveQueryIsReportedAsAFailedChange()
    {
        m_channel->fail("config active_config");
        exec();
        QCOMPARE(m_channel->trace(),
                 reportedAfter("queryString config active_config",
                               "Unable to change the configuration", refreshTrace()));
        QCOMPARE(boldIds(0), QStringList());
    }

    void aFailedFreeSpaceQueryIsReportedAndIgnored()
    {
        m_channel->fail("config free_space");
        exec();
        QCOMPARE(m_channel->trace(),
                 reportedAfter("queryDouble config free_space",
                               "Unable to get free space of configuration store", refreshTrace()));
        QVERIFY(find<QLabel>("label_error")->isHidden());
        QVERIFY(button("new")->isEnabled());
    }

    void aFailedCountEndsTheRefresh()
    {
        m_channel->fail("config number_of_configs");
        ExpectedBox box{QMessageBox::Critical, "Command Error", "no contact to Controller"};
        box.parent = m_dialog.get();
        m_driver->expectBox(box);
        QCOMPARE(m_dialog->update_and_exec(), -1);
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(
            m_channel->trace(),
            QStringList({"queryDouble config free_space", "queryInt config number_of_configs",
                         ScriptedChannel::reported("Unable to get number of configurations")}));
        QCOMPARE(column(2), sortedIds);
    }

    void withoutConfigurationsTheTableIsEmpty()
    {
        for (const char *count : {"-3", "0"}) {
            m_channel->answer("config number_of_configs", count);
            exec([this](QDialog *window) {
                QCOMPARE(m_dialog->focusWidget(), table());
                window->reject();
            });
            QCOMPARE(m_channel->takeTrace(), refreshTrace({}));
            QCOMPARE(table()->rowCount(), 0);
            QVERIFY(table()->selectedItems().isEmpty());
            QCOMPARE(shownAsActive(), "");
        }
    }

    void refreshDisablesTheRowButtonsAndFocusesExit()
    {
        for (const char *name : {"delete", "edit", "apply", "lock"}) {
            QVERIFY2(!button(name)->isEnabled(), name);
        }
        QCOMPARE(m_dialog->focusWidget(), button("exit"));
        QVERIFY(table()->selectedItems().isEmpty());
    }

    void slotsAbove99KeepTheirNumber()
    {
        QList<QByteArray> ids;
        for (int i = 1; i <= 101; ++i) {
            ids << "config" + QByteArray::number(i);
        }
        m_channel->answerConfigurations(ids, "config7");
        exec();
        QVERIFY(m_channel->trace().contains("queryString config config t101"));
        QCOMPARE(table()->rowCount(), 101);
    }

    // Showing
    void execRefreshesSelectsTheActiveRowAndShowsItsDescription()
    {
        const int result = exec([this](QDialog *window) {
            QVERIFY(window->isModal());
            QCOMPARE(m_channel->trace(), refreshTrace());
            QCOMPARE(column(2), sortedIds);
            QCOMPARE(table()->currentRow(), 0);
            QCOMPARE(m_dialog->focusWidget(), table());
            QCOMPARE(shownAsActive(), "description of alpha");
            window->accept();
        });
        QCOMPARE(result, int(QDialog::Accepted));
    }

    void theActiveDescriptionIsReadableFromItsBeginning()
    {
        m_channel->answer("config desc_of_config alpha", QByteArray(190, 'a'));
        showAt("alpha");
        const auto *field = find<QLineEdit>("lineEdit_activeConfig");
        const QColor colour = field->palette().color(QPalette::Active, QPalette::Text);
        QVERIFY(QPalette().color(QPalette::Disabled, QPalette::Text) != colour);
        QCOMPARE(field->palette().color(QPalette::Disabled, QPalette::Text), colour);
        QCOMPARE(field->text().size(), 190);
        QCOMPARE(field->cursorPosition(), 0);
        QCOMPARE(field->selectedText(), "");
    }

    void anUnknownActiveConfigurationSelectsNothing()
    {
        m_channel->answer("config active_config", "elsewhere");
        exec();
        QCOMPARE(table()->currentRow(), -1);
        QCOMPARE(shownAsActive(), "");
    }

    void anEmptyActiveConfigurationSelectsTheFirstRow()
    {
        m_channel->answer("config active_config", "");
        exec();
        QCOMPARE(table()->currentRow(), 0);
    }

    void aSingleRowIsAlwaysSelected()
    {
        m_channel->answerConfigurations({"only"}, "elsewhere");
        exec();
        QCOMPARE(table()->currentRow(), 0);
        QCOMPARE(table()->currentColumn(), 0);
    }

    void everyWayOutRejects()
    {
        const auto pressEscape = [this] { QTest::keyClick(table(), Qt::Key_Escape); };
        const std::function<void()> waysOut[] = {[this] { click("exit"); }, pressEscape,
                                                 [this] { m_dialog->close(); }};
        for (const auto &leave : waysOut) {
            QCOMPARE(exec([&leave](QDialog *) { leave(); }), int(QDialog::Rejected));
            QCOMPARE(m_channel->takeTrace(), refreshTrace());
        }
    }

    // Resizing and keys
    void columnsFollowTheWidthOfTheDialog()
    {
        for (const auto &[minorVersion, share] : {std::pair(27, 700 / 4), std::pair(8, 700 / 3)}) {
            create(minorVersion);
            m_dialog->show();
            table()->horizontalHeader()->setStretchLastSection(false);
            m_dialog->resize(700, 500);
            QCOMPARE(table()->columnWidth(0), 2 * share - 20);
            QCOMPARE(table()->columnWidth(1), share - 10);
            QCOMPARE(table()->columnWidth(3), minorVersion == 27 ? share - 10 : 0); // if there
        }
    }

    void withoutColumnsTheWidthDoesNotMatter()
    {
        m_dialog->show();
        table()->setColumnCount(0);
        m_dialog->resize(700, 500);
        QCOMPARE(table()->horizontalHeader()->length(), 0);
    }

    void otherKeysGoToTheDialog()
    {
        showAt("beta");
        QTest::keyClick(table(), Qt::Key_Backspace);
        QCOMPARE(m_channel->takeTrace(), QStringList());
        QTest::keyClick(table(), Qt::Key_Return); // presses the default button
        QCOMPARE(m_channel->trace(), activationTrace("beta") + refreshTrace());
        QTest::keyClick(table(), Qt::Key_Escape);
        QVERIFY(!m_dialog->isVisible());
    }

    // Selection rule
    void selectionDecidesWhichButtonsWork_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("active");
        QTest::addColumn<QStringList>("enabled");
        QTest::addColumn<QString>("lockText");
        const QString lock = "L&ock";
        const QString unlock = "Unl&ock";
        QTest::newRow("the active one") << "alpha"
                                        << "alpha" << QStringList{"delete", "edit", "lock"} << lock;
        QTest::newRow("another one") << "beta"
                                     << "alpha" << QStringList{"delete", "edit", "apply"} << lock;
        QTest::newRow("a locked one") << "locked"
                                      << "alpha" << QStringList{"apply"} << unlock;
        QTest::newRow("the active one, locked") << "locked"
                                                << "locked" << QStringList{"lock"} << unlock;
        QTest::newRow("standard") << "standard"
                                  << "alpha" << QStringList{"edit", "apply"} << lock;
        QTest::newRow("standard with a capital letter")
            << "Standard"
            << "alpha" << QStringList{"delete", "edit", "apply"} << lock;
    }

    void selectionDecidesWhichButtonsWork()
    {
        QFETCH(const QString, id);
        QFETCH(const QString, active);
        QFETCH(const QStringList, enabled);
        QFETCH(const QString, lockText);
        m_channel->answerConfigurations({"standard", "alpha", "beta", "locked", "Standard"},
                                        active.toLatin1());
        m_channel->answer("config config_has_password locked", "yes");
        showAt(active);
        table()->setCurrentCell(-1, -1);
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, placeOf(id, 0));
        QStringList actuallyEnabled;
        for (const char *name : {"delete", "edit", "apply", "lock"}) {
            if (button(name)->isEnabled()) {
                actuallyEnabled << name;
            }
        }
        QCOMPARE(actuallyEnabled, enabled);
        QCOMPARE(button("lock")->text(), lockText);
        QCOMPARE(m_channel->trace(), QStringList());
    }

    void withoutLocksNothingIsLocked()
    {
        create(8);
        showAt("locked");
        QVERIFY(button("delete")->isEnabled());
        QVERIFY(button("edit")->isEnabled());
        select("alpha");
        QVERIFY(!button("lock")->isEnabled());
        QCOMPARE(button("lock")->text(), "Lo&ck");
        QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), "on_pushButton_lock_clicked"));
        QCOMPARE(m_channel->trace(), QStringList());
    }

    void withoutARowNothingHappens()
    {
        showAt("alpha");
        table()->setCurrentCell(-1, -1);
        QVERIFY(table()->selectedItems().isEmpty());
        QVERIFY(button("lock")->isEnabled()); // still
        QVERIFY(!button("apply")->isEnabled());
        select("beta");
        table()->setCurrentCell(-1, -1);
        QVERIFY(button("apply")->isEnabled());
        click("apply");
        click("edit");
        click("delete");
        QTest::keyClick(table(), Qt::Key_Delete);
        QCOMPARE(m_channel->trace(), QStringList());
    }

    // Activate
    void applyActivatesTheRow()
    {
        showAt("beta");
        m_channel->whenSent("config active_config beta",
                            [this] { m_channel->answer("config active_config", "beta"); });
        click("apply");
        QCOMPARE(m_channel->trace(), activationTrace("beta") + refreshTrace());
        QCOMPARE(currentId(), "beta");
        QCOMPARE(m_dialog->focusWidget(), table());
        QCOMPARE(shownAsActive(), "description of beta");
        QVERIFY(!button("apply")->isEnabled());
    }

    void applyMakesTheActiveRowCurrent()
    {
        showAt("beta");
        click("apply"); // the controller stays with its own choice
        QCOMPARE(currentId(), "alpha");
    }

    void applyGoesOnAfterFailedQueries_data()
    {
        QTest::addColumn<QString>("report");
        QTest::newRow("config active_config") << "Unable to retrieve the active configuration";
        QTest::newRow("system hostname") << "Unable to get the system hostname";
        QTest::newRow("config desc") << "Unable to get configuration description";
    }

    void applyGoesOnAfterFailedQueries()
    {
        QFETCH(const QString, report);
        const QString query = QStringLiteral("queryString ") + QTest::currentDataTag();
        showAt("beta");
        m_channel->fail(QTest::currentDataTag());
        m_channel->whenPosted("ActiveConfigurationChanged",
                              [this] { m_channel->succeed(QTest::currentDataTag()); });
        click("apply");
        QCOMPARE(m_channel->trace(),
                 reportedAfter(query, report, activationTrace("beta")) + refreshTrace());
    }

    void aFailedActivationStops()
    {
        showAt("beta");
        m_channel->fail("config active_config beta");
        click("apply");
        QCOMPARE(
            m_channel->trace(),
            activationTrace("beta").mid(0, 2)
                + QStringList(ScriptedChannel::reported("Unable to change the configuration")));
        QCOMPARE(currentId(), "beta");
    }

    // Delete
    void deleteAsksAndDeletes_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::addColumn<QString>("id");
        QTest::newRow("button") << false << "beta";
        QTest::newRow("Delete key, the active one") << true << "alpha";
    }

    void deleteAsksAndDeletes()
    {
        QFETCH(const bool, byKey);
        QFETCH(const QString, id);
        showAt(id);
        QStringList left = allIds;
        left.removeOne(id);
        m_channel->whenSent("veltra2 config delete_config " + id.toLatin1(), [&] {
            m_channel->answerConfigurations(
                {left.at(0).toLatin1(), left.at(1).toLatin1(), left.at(2).toLatin1()}, "standard");
        });
        expectQuestion(id, QMessageBox::Ok);
        if (byKey) {
            QTest::keyClick(table(), Qt::Key_Delete);
        } else {
            click("delete");
        }
        QCOMPARE(m_channel->trace(),
                 QStringList({"setTimeout 0 20000 1",
                              "sendCommandReply veltra2 config delete_config " + id,
                              ScriptedChannel::announced()})
                     + refreshTrace(left));
        QCOMPARE(currentId(), "standard");
        QCOMPARE(shownAsActive(), "description of standard");
    }

    void aFailedDeletionIsReportedAnnouncedAndRefreshed()
    {
        showAt("beta");
        m_channel->fail("veltra2 config delete_config beta");
        expectQuestion("beta", QMessageBox::Ok);
        click("delete");
        QCOMPARE(m_channel->trace(),
                 QStringList({"setTimeout 0 20000 1",
                              "sendCommandReply veltra2 config delete_config beta",
                              ScriptedChannel::reported("Unable to delete configuration"),
                              ScriptedChannel::announced()})
                     + refreshTrace());
    }

    void aCancelledDeletionSendsNothing()
    {
        showAt("beta");
        button("delete")->setFocus();
        expectQuestion("beta", QMessageBox::Cancel);
        click("delete");
        QCOMPARE(m_channel->trace(), QStringList());
        QCOMPARE(m_dialog->focusWidget(), table());
        QCOMPARE(currentId(), "beta");
    }

    void standardInAnyCaseIsNeverDeleted()
    {
        for (const char *id : {"standard", "Standard", "STANDARD"}) {
            m_channel->answerConfigurations({id, "alpha"}, "alpha");
            create(27);
            showAt(id);
            click("delete");
            QTest::keyClick(table(), Qt::Key_Delete);
            QCOMPARE(m_channel->trace(), QStringList());
        }
    }

    void aLockedConfigurationIsNeverDeleted()
    {
        showAt("locked");
        QTest::keyClick(table(), Qt::Key_Delete);
        QCOMPARE(m_channel->trace(), QStringList());
    }

    // The dialogs behind the buttons
    void newCancelledMakesTheRowCurrentAgain()
    {
        showAt("beta");
        m_driver->expectDialog("NewConfigurationDialog", [this](QDialog *dialog) {
            QCOMPARE(dialog->parentWidget(), m_dialog.get());
            dialog->reject();
        });
        click("new");
        QCOMPARE(m_channel->trace(), refreshTrace());
        expectCurrent("beta", 0);
    }

    void newAcceptedSelectsTheActiveRow()
    {
        showAt("beta");
        m_driver->expectDialog("NewConfigurationDialog", [this](QDialog *dialog) {
            m_channel->answer("config active_config", "standard");
            dialog->accept();
        });
        click("new");
        QCOMPARE(m_channel->trace(), refreshTrace());
        QCOMPARE(currentId(), "standard");
        QCOMPARE(shownAsActive(), "description of standard");
    }

    void editRefreshesAndMakesTheRowCurrent()
    {
        showAt("beta");
        m_driver->expectDialog("EditConfigDialog", reject);
        click("edit");
        QCOMPARE(m_channel->trace(), editTrace("beta") + refreshTrace());
        expectCurrent("beta", 2);
    }

    void aDoubleClickEdits_data()
    {
        QTest::addColumn<int>("minorVersion");
        QTest::addColumn<QString>("id");
        QTest::newRow("an unlocked row") << 27 << "beta";
        QTest::newRow("any row where there are no locks") << 8 << "locked";
    }

    void aDoubleClickEdits()
    {
        QFETCH(const int, minorVersion);
        QFETCH(const QString, id);
        create(minorVersion);
        showAt("alpha");
        m_driver->expectDialog("EditConfigDialog", reject);
        doubleClick(id, 1);
        QCOMPARE(m_channel->trace(), editTrace(id) + refreshTrace(allIds, minorVersion == 27));
        QCOMPARE(currentId(), id);
        QCOMPARE(table()->currentColumn(), 0);
    }

    void aDoubleClickActivatesALockedRow()
    {
        showAt("alpha");
        doubleClick("locked", 0);
        QCOMPARE(m_channel->trace(), activationTrace("locked") + refreshTrace());
    }

    void aDoubleClickOutsideTheRowsDoesNothing()
    {
        showAt("alpha");
        for (const auto &[row, column] : {std::pair(-1, 0), std::pair(0, -1)}) {
            QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), "on_tableWidget_cellDoubleClicked",
                                              Q_ARG(int, row), Q_ARG(int, column)));
        }
        QCOMPARE(m_channel->trace(), QStringList());
    }

    void theLockButtonOpensWhatItSays_data()
    {
        QTest::addColumn<QString>("active");
        QTest::addColumn<QString>("dialogName");
        QTest::newRow("L&ock") << "alpha"
                               << "LockConfigurationDialog";
        QTest::newRow("Unl&ock") << "locked"
                                 << "UnlockConfigurationDialog";
    }

    void theLockButtonOpensWhatItSays()
    {
        QFETCH(const QString, active);
        QFETCH(const QString, dialogName);
        m_channel->answer("config active_config", active.toLatin1());
        showAt(active);
        QCOMPARE(button("lock")->text(), QTest::currentDataTag());
        m_driver->expectDialog(dialogName, reject);
        click("lock");
        QCOMPARE(m_channel->trace(),
                 QStringList("queryString config desc_of_config " + active) + refreshTrace());
        expectCurrent(active, 0);
    }

    void theLockButtonAsItStartsOpensNothing()
    {
        showAt("alpha");
        button("lock")->setText("Lo&ck");
        click("lock");
        QCOMPARE(m_channel->trace(), refreshTrace());
        expectCurrent("alpha", 0);
    }

    void saveGetsTheListInSlotOrderAndNoRefreshFollows()
    {
        showAt("beta");
        QStringList offered;
        m_driver->expectDialog("ConfigSaveDlgClass", [&offered](QDialog *dialog) {
            const auto *table = named<QTableWidget>(dialog, "tableWidget_selectConfigs");
            for (int row = 0; row < table->rowCount(); ++row) {
                offered << table->item(row, 2)->text();
            }
            dialog->reject();
        });
        click("save");
        QCOMPARE(offered, allIds);
        QCOMPARE(m_channel->trace(), QStringList());
        QCOMPARE(currentId(), "alpha");
    }

    void aCancelledLoadIsFollowedByARefresh()
    {
        showAt("beta");
        m_driver->expectFileDialog("Load Configurations", QString());
        click("load");
        QCOMPARE(m_channel->trace(), refreshTrace());
        QCOMPARE(currentId(), "alpha");
        QCOMPARE(shownAsActive(), "description of alpha");
    }

    // The host pulls the rug
    void theDialogMayDieUnderTheDeletionQuestion()
    {
        showAt("beta");
        m_driver->expectDialog("", [this](QDialog *) { m_dialog.reset(); });
        click("delete");
        QCOMPARE(m_channel->trace(), QStringList("removeMessageReceiver ServiceModule"));
    }

    void theDialogMayDieUnderTheNoContactBox()
    {
        showAt("beta");
        m_channel->fail("config number_of_configs");
        m_driver->expectDialog("", [this](QDialog *) { m_dialog.reset(); });
        click("apply");
        QCOMPARE(m_channel->trace().constLast(), "removeMessageReceiver ServiceModule");
    }

private:
    // On an interface of version 1.minor.
    void create(int minorVersion)
    {
        m_dialog.reset();
        m_versions = {{4, 2, 0}, {1, minorVersion, 0}, {4, 1, 0}, "XQU"};
        m_dialog = std::make_unique<ChangeConfigurationDlg>(m_channel.get(), &m_versions, nullptr);
        m_channel->takeTrace();
    }

    int exec(const std::function<void(QDialog *)> &user = reject)
    {
        m_driver->expectDialog("ConfigurationDialog", user);
        return m_dialog->update_and_exec();
    }

    // As update_and_exec() leaves it, without the modal loop, and with this row selected.
    void showAt(const QString &id)
    {
        exec();
        m_dialog->show();
        QApplication::setActiveWindow(m_dialog.get());
        select(id);
        m_channel->takeTrace();
    }

    template <typename Widget>
    Widget *find(const char *name) const
    {
        return named<Widget>(m_dialog.get(), name);
    }
    QPushButton *button(const QByteArray &name) const
    {
        return find<QPushButton>("pushButton_" + name);
    }
    void click(const char *name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    QTableWidget *table() const { return find<QTableWidget>("tableWidget"); }
    QString shownAsActive() const { return textOf(m_dialog.get(), "lineEdit_activeConfig"); }

    QStringList column(int column) const
    {
        QStringList texts;
        for (int row = 0; row < table()->rowCount(); ++row) {
            texts << table()->item(row, column)->text();
        }
        return texts;
    }
    int rowOf(const QString &id) const { return column(2).indexOf(id); }
    QString currentId() const { return column(2).value(table()->currentRow()); }
    void select(const QString &id) const { table()->setCurrentCell(rowOf(id), 0); }

    // The configurations that are bold in a column.
    QStringList boldIds(int column) const
    {
        QStringList ids;
        for (int row = 0; row < table()->rowCount(); ++row) {
            if (table()->item(row, column)->font().weight() == 75) {
                ids << table()->item(row, 2)->text();
            }
        }
        return ids;
    }

    QPoint placeOf(const QString &id, int column) const
    {
        return table()->visualItemRect(table()->item(rowOf(id), column)).center();
    }
    void doubleClick(const QString &id, int column) const
    {
        const QPoint place = placeOf(id, column);
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(table()->viewport(), Qt::LeftButton, {}, place);
    }

    void expectQuestion(const QString &id, QMessageBox::StandardButton answer)
    {
        m_driver->expectBox({QMessageBox::Warning, "Warning",
                             "You are about to delete the configuration 'description of " + id
                                 + "' owned by 'owner of " + id + "'.",
                             answer, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel,
                             m_dialog.get()});
    }

    void expectCurrent(const QString &id, int column) const
    {
        QCOMPARE(currentId(), id);
        QCOMPARE(table()->currentColumn(), column);
        QCOMPARE(m_dialog->focusWidget(), table());
    }

    std::unique_ptr<ScriptedChannel> m_channel;
    std::unique_ptr<ModalDriver> m_driver;
    BackendVersions m_versions;
    std::unique_ptr<ChangeConfigurationDlg> m_dialog;
};

VELTRA4_TEST(TestChangeConfigurationDlg)
#include "tst_changeconfigurationdlg.moc"

#include "dialogs/changeconfigurationdlg.h"

#include "hostapi/backendversions.h"
#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

namespace {

const QString reportedNoCount =
    ScriptedChannel::reported(QStringLiteral("Unable to get number of configurations"));

QStringList rowTrace(int slot, const QString &id)
{
    return {QStringLiteral("queryString config config t%1").arg(slot, 2, 10, QLatin1Char('0')),
            QStringLiteral("queryString config owner_of_config ") + id,
            QStringLiteral("queryString config desc_of_config ") + id,
            QStringLiteral("queryString config config_has_password ") + id};
}

// What a refresh sends to a controller that holds these configurations.
QStringList refreshTrace(const QStringList &ids, bool asksForSpace = true)
{
    QStringList trace;
    if (asksForSpace) {
        trace << QStringLiteral("queryDouble config free_space");
    }
    trace << QStringLiteral("queryInt config number_of_configs")
          << QStringLiteral("queryString config active_config");
    for (int i = 0; i < ids.size(); ++i) {
        trace << rowTrace(i + 1, ids.at(i));
    }
    return trace;
}

ExpectedBox noContactBox()
{
    return {QMessageBox::Critical, QStringLiteral("Command Error"),
            QStringLiteral("no contact to Controller")};
}

ExpectedBox deleteBox(const QString &description, const QString &owner,
                      QMessageBox::StandardButton answer)
{
    return {QMessageBox::Warning,
            QStringLiteral("Warning"),
            QStringLiteral("You are about to delete the configuration '%1' owned by '%2'.")
                .arg(description, owner),
            answer,
            QMessageBox::Ok | QMessageBox::Cancel,
            QMessageBox::Cancel};
}

// A list dialog in front of a scripted controller that holds the configurations "standard", "alpha"
// (active), "beta", and "locked", which is locked. Sorted by description they are in the order
// alpha, beta, locked, standard.
struct Fixture
{
    explicit Fixture(const Version &interfaceVersion = {1, 27, 0})
        : versions{{4, 2, 0}, interfaceVersion, {4, 1, 0}, QStringLiteral("XQU")}
    {
        channel.answerConfigurations({"standard", "alpha", "beta", "locked"}, "alpha");
        channel.answer("config config_has_password locked", "yes");
        channel.answer("config free_space", "0.5");
        create();
        channel.takeTrace();
    }

    void create()
    {
        dialog.reset();
        dialog = std::make_unique<ChangeConfigurationDlg>(&channel, &versions, nullptr);
    }

    // Reads everything anew.
    void refresh()
    {
        ModalDriver driver;
        driver.expectDialog(QStringLiteral("ConfigurationDialog"),
                            [](QDialog *window) { window->reject(); });
        QCOMPARE(dialog->update_and_exec(), int(QDialog::Rejected));
        driver.verify();
    }

    // As update_and_exec() leaves it, without the modal loop.
    void show()
    {
        refresh();
        dialog->show();
        QApplication::setActiveWindow(dialog.get());
        channel.takeTrace();
    }

    template <typename Widget>
    Widget *find(const char *name) const
    {
        return dialog->findChild<Widget *>(QString::fromLatin1(name));
    }
    QPushButton *button(const char *name) const { return find<QPushButton>(name); }
    QTableWidget *table() const { return find<QTableWidget>("tableWidget"); }
    QString text(int row, int column) const { return table()->item(row, column)->text(); }

    QStringList column(int column) const
    {
        QStringList texts;
        for (int row = 0; row < table()->rowCount(); ++row) {
            texts << text(row, column);
        }
        return texts;
    }
    int rowOf(const QString &id) const { return column(2).indexOf(id); }
    void select(const QString &id) const { table()->setCurrentCell(rowOf(id), 0); }

    ScriptedChannel channel;
    BackendVersions versions;
    std::unique_ptr<ChangeConfigurationDlg> dialog;
};

const QStringList allIds{QStringLiteral("standard"), QStringLiteral("alpha"),
                         QStringLiteral("beta"), QStringLiteral("locked")};

} // namespace

class TestChangeConfigurationDlg : public QObject
{
    Q_OBJECT

private slots:
    // The form
    void theFormIsAsOperatorsKnowIt()
    {
        const Fixture fixture;
        QCOMPARE(fixture.dialog->objectName(), QStringLiteral("ConfigurationDialog"));
        QCOMPARE(fixture.dialog->windowTitle(), QStringLiteral("Configurations"));
        QCOMPARE(fixture.dialog->whatsThis(), QStringLiteral("Configuration dialog"));
        QCOMPARE(fixture.dialog->size(), QSize(600, 514));
        QVERIFY(fixture.find<QWidget>("widget_xqu"));
        QVERIFY(fixture.find<QWidget>("widget_xqu_buttons"));
        QVERIFY(fixture.find<QWidget>("widget_active_configuration"));
        QVERIFY(fixture.find<QWidget>("widget_log_settings"));
        QVERIFY(fixture.find<QWidget>("widget_lct_lock")->isHidden());
        QVERIFY(fixture.dialog->findChild<QGridLayout *>(
            QStringLiteral("gridLayout_active_configuration")));
        for (const char *line : {"line_xqu1", "line_xqu2", "line_exit"}) {
            QCOMPARE(fixture.find<QFrame>(line)->frameShape(), QFrame::HLine);
            QCOMPARE(fixture.find<QFrame>(line)->frameShadow(), QFrame::Sunken);
        }
        QVERIFY(!fixture.find<QLineEdit>("lineEdit_activeConfig")->isEnabled());
        QCOMPARE(fixture.table()->whatsThis(), QStringLiteral("Available configurations"));

        const QList<QStringList> labels{
            {"label_activeConfig", "active configuration:"},
            {"label_lct_lock", "lock or unlock active configuration"},
            {"label_load_save_buttons", "backup and restore of configurations"},
            {"label_error", ""},
        };
        for (const QStringList &label : labels) {
            QCOMPARE(fixture.find<QLabel>(label.at(0).toLatin1())->text(), label.at(1));
        }
        const QList<QStringList> buttons{
            {"pushButton_delete", "&Delete", "Delete selected configuration"},
            {"pushButton_new", "&New", "Create new configuration"},
            {"pushButton_edit", "&Edit", "Edit selected configuration"},
            {"pushButton_lock", "Lo&ck", "Lock/unlock the active configuration"},
            {"pushButton_apply", "&Apply", "Set selected configuration active"},
            {"pushButton_lct_lock", "Loc&k", "Lock or unlock the active configuration"},
            {"pushButton_save", "&Backup", "Save configurations into .dat file"},
            {"pushButton_load", "&Restore", "Load configurations from .dat file"},
            {"pushButton_exit", "E&xit", "Close dialog"},
        };
        ScriptedChannel channel;
        channel.answerConfigurations({}, "");
        BackendVersions versions{{}, {1, 27, 0}, {}, {}};
        const ChangeConfigurationDlg fresh(&channel, &versions, nullptr);
        for (const QStringList &expected : buttons) {
            const auto *button = fresh.findChild<QPushButton *>(expected.at(0));
            QVERIFY2(button, qPrintable(expected.at(0)));
            QCOMPARE(button->text(), expected.at(1));
            QCOMPARE(button->whatsThis(), expected.at(2));
        }
    }

    void onlyApplyIsADefaultButton()
    {
        const Fixture fixture;
        const QList<QPushButton *> buttons =
            fixture.dialog->findChildren<QPushButton *>(QRegularExpression(QStringLiteral(
                "^pushButton_(delete|new|edit|lock|apply|lct_lock|save|load|exit)$")));
        int found = 0;
        for (const QPushButton *button : buttons) {
            if (button->parentWidget()->window() != fixture.dialog.get()) {
                continue; // the save and load dialogs have buttons of these names, too
            }
            ++found;
            const bool isApply = button->objectName() == QLatin1String("pushButton_apply");
            QCOMPARE(button->autoDefault(), isApply);
            QCOMPARE(button->isDefault(), isApply);
        }
        QCOMPARE(found, 9);
    }

    void theTableSelectsWholeRowsAndIsNeverEdited()
    {
        const Fixture fixture;
        const QTableWidget *table = fixture.table();
        QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
        QCOMPARE(table->selectionMode(), QAbstractItemView::SingleSelection);
        QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
        QVERIFY(table->showGrid());
        QVERIFY(!table->alternatingRowColors());
        QVERIFY(!table->isSortingEnabled());
        QCOMPARE(table->verticalHeader()->defaultSectionSize(), 28);
        QCOMPARE(table->verticalHeader()->minimumSectionSize(),
                 QTableWidget().verticalHeader()->minimumSectionSize());
        QVERIFY(table->verticalHeader()->isHidden());
        QVERIFY(!table->horizontalHeader()->sectionsClickable());
        QVERIFY(table->horizontalHeader()->stretchLastSection());
        QVERIFY(table->isColumnHidden(2));
    }

    // Construction and version gates
    void constructionRegistersTheReceiverAndRefreshes()
    {
        ScriptedChannel channel;
        channel.answerConfigurations({"standard", "alpha"}, "alpha");
        BackendVersions versions;
        const ChangeConfigurationDlg dialog(&channel, &versions, nullptr);
        QCOMPARE(channel.trace(),
                 QStringList{QStringLiteral("addMessageReceiver ConfigurationsModule")}
                     + refreshTrace({"standard", "alpha"}, false));
        QCOMPARE(dialog.findChild<QTableWidget *>()->rowCount(), 2);
    }

    void destructionUnregistersTheReceiver()
    {
        Fixture fixture;
        QCOMPARE(fixture.channel.receivers().size(), 1);
        fixture.dialog.reset();
        QCOMPARE(fixture.channel.trace(),
                 QStringList{QStringLiteral("removeMessageReceiver ServiceModule")});
        QVERIFY(fixture.channel.receivers().isEmpty());
    }

    void theVersionDecidesOnLocksAndTransfers_data()
    {
        QTest::addColumn<int>("major");
        QTest::addColumn<int>("minor");
        QTest::addColumn<int>("micro");
        QTest::addColumn<bool>("hasLocks");
        QTest::addColumn<bool>("hasTransfers");
        QTest::newRow("not given") << -1 << -1 << -1 << false << false;
        QTest::newRow("1.8.99") << 1 << 8 << 99 << false << false;
        QTest::newRow("1.9.0") << 1 << 9 << 0 << true << false;
        QTest::newRow("1.10.3") << 1 << 10 << 3 << true << false;
        QTest::newRow("1.11.0") << 1 << 11 << 0 << true << true;
        QTest::newRow("2.0.0") << 2 << 0 << 0 << true << true;
    }

    void theVersionDecidesOnLocksAndTransfers()
    {
        QFETCH(const int, major);
        QFETCH(const int, minor);
        QFETCH(const int, micro);
        QFETCH(const bool, hasLocks);
        QFETCH(const bool, hasTransfers);
        const Fixture fixture({major, minor, micro});
        QStringList headers;
        for (int column = 0; column < fixture.table()->columnCount(); ++column) {
            headers << fixture.table()->horizontalHeaderItem(column)->text();
        }
        const QStringList expected{QStringLiteral("Description"), QStringLiteral("Owner"),
                                   QStringLiteral("ID"), QStringLiteral("Locked")};
        QCOMPARE(headers, expected.mid(0, hasLocks ? 4 : 3));
        QCOMPARE(fixture.button("pushButton_lock")->isHidden(), !hasLocks);
        QCOMPARE(fixture.dialog->minimumSize(), hasLocks ? QSize(500, 300) : QSize(600, 400));
        QCOMPARE(fixture.find<QWidget>("widget_load_save")->isEnabled(), hasTransfers);
    }

    // Refresh
    void refreshAsksForEverythingInOrder()
    {
        Fixture fixture;
        fixture.refresh();
        QCOMPARE(fixture.channel.trace(), refreshTrace(allIds));
    }

    void refreshAsksForFreeSpaceFromVersion127_data()
    {
        QTest::addColumn<int>("major");
        QTest::addColumn<int>("minor");
        QTest::addColumn<int>("micro");
        QTest::addColumn<bool>("asks");
        QTest::newRow("1.26.9") << 1 << 26 << 9 << false;
        QTest::newRow("1.27.0") << 1 << 27 << 0 << true;
        QTest::newRow("1.27 without micro") << 1 << 27 << -1 << true;
        QTest::newRow("1.27 with a broken micro") << 1 << 27 << -2 << false;
        QTest::newRow("1.28 with a broken micro") << 1 << 28 << -2 << true;
        QTest::newRow("2.0.0") << 2 << 0 << 0 << true;
        QTest::newRow("0.99.0") << 0 << 99 << 0 << false;
    }

    void refreshAsksForFreeSpaceFromVersion127()
    {
        QFETCH(const int, major);
        QFETCH(const int, minor);
        QFETCH(const int, micro);
        QFETCH(const bool, asks);
        Fixture fixture({major, minor, micro});
        fixture.channel.answer("config free_space", "0.0");
        fixture.refresh();
        QCOMPARE(fixture.channel.trace(), refreshTrace(allIds, asks));
        QCOMPARE(fixture.find<QLabel>("label_error")->isHidden(), !asks);
        QCOMPARE(fixture.button("pushButton_new")->isEnabled(), !asks);
    }

    void fewFreeSpaceIsWarnedAbout_data()
    {
        QTest::addColumn<QByteArray>("free");
        QTest::addColumn<QString>("filled");
        QTest::addColumn<bool>("canCreate");
        QTest::newRow("plenty") << QByteArray("0.9") << QString() << true;
        QTest::newRow("just above the limit") << QByteArray("0.2000001") << QString() << true;
        QTest::newRow("at the limit") << QByteArray("0.2") << QStringLiteral("80%") << true;
        QTest::newRow("just enough for a new one")
            << QByteArray("0.0200001") << QStringLiteral("97%") << true;
        QTest::newRow("not enough for a new one")
            << QByteArray("0.02") << QStringLiteral("98%") << false;
        QTest::newRow("full") << QByteArray("0.0") << QStringLiteral("100%") << false;
        QTest::newRow("overfull") << QByteArray("-0.5") << QStringLiteral("150%") << false;
        QTest::newRow("absurd") << QByteArray("-1e300") << QStringLiteral("2147483647%") << false;
    }

    void fewFreeSpaceIsWarnedAbout()
    {
        QFETCH(const QByteArray, free);
        QFETCH(const QString, filled);
        QFETCH(const bool, canCreate);
        Fixture fixture;
        fixture.channel.answer("config free_space", free);
        fixture.refresh();
        const auto *label = fixture.find<QLabel>("label_error");
        QCOMPARE(label->isHidden(), filled.isEmpty());
        if (!filled.isEmpty()) {
            QCOMPARE(
                label->text(),
                QStringLiteral(
                    "<b><font color=red>configuration store filled %1; please delete unnecessary "
                    "configurations!</font></b>")
                    .arg(filled));
        }
        QCOMPARE(fixture.button("pushButton_new")->isEnabled(), canCreate);
    }

    void failedFreeSpaceQueryIsReportedAndIgnored()
    {
        Fixture fixture;
        fixture.channel.fail("config free_space");
        fixture.refresh();
        QStringList expected = refreshTrace(allIds);
        expected.insert(1,
                        ScriptedChannel::reported(
                            QStringLiteral("Unable to get free space of configuration store")));
        QCOMPARE(fixture.channel.trace(), expected);
        QVERIFY(fixture.find<QLabel>("label_error")->isHidden());
        QVERIFY(fixture.button("pushButton_new")->isEnabled());
    }

    void rowsAreSortedByDescription()
    {
        Fixture fixture;
        fixture.channel.answer("config desc_of_config alpha", "Zebra");
        fixture.channel.answer("config desc_of_config standard", "apple");
        fixture.channel.answer("config desc_of_config beta", "Apple");
        fixture.channel.answer("config desc_of_config locked", "mango");
        fixture.refresh();
        QCOMPARE(fixture.column(0), QStringList({"Apple", "Zebra", "apple", "mango"}));
        QCOMPARE(fixture.column(2), QStringList({"beta", "alpha", "standard", "locked"}));
        QCOMPARE(fixture.column(3), QStringList({"no", "no", "no", "yes"}));
    }

    void rowsOfTheSameDescriptionKeepTheirOrder()
    {
        Fixture fixture;
        for (const QString &id : allIds) {
            fixture.channel.answer("config desc_of_config " + id.toLatin1(), "the same");
        }
        fixture.refresh();
        QCOMPARE(fixture.column(2), allIds);
    }

    void theActiveRowIsBold()
    {
        for (const Version &version : {Version{1, 27, 0}, Version{1, 8, 0}}) {
            const Fixture fixture(version);
            for (int row = 0; row < fixture.table()->rowCount(); ++row) {
                for (int column = 0; column < fixture.table()->columnCount(); ++column) {
                    const int weight = fixture.table()->item(row, column)->font().weight();
                    QCOMPARE(weight == 75, fixture.text(row, 2) == QLatin1String("alpha"));
                }
            }
        }
    }

    void doubleQuotesAreRemoved()
    {
        Fixture fixture;
        fixture.channel.answer("config desc_of_config alpha", "\"a \"big\" one\"");
        fixture.channel.answer("config owner_of_config alpha", "\"\"Kim\"");
        fixture.show();
        QCOMPARE(fixture.text(fixture.rowOf(QStringLiteral("alpha")), 0),
                 QStringLiteral("a big one"));
        QCOMPARE(fixture.text(fixture.rowOf(QStringLiteral("alpha")), 1), QStringLiteral("Kim"));
        QCOMPARE(fixture.find<QLineEdit>("lineEdit_activeConfig")->text(),
                 QStringLiteral("a big one"));
    }

    void onlyExactlyYesMeansLocked_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<bool>("isLocked");
        QTest::newRow("yes") << QByteArray("yes") << true;
        QTest::newRow("with a blank") << QByteArray("yes ") << false;
        QTest::newRow("with a capital letter") << QByteArray("Yes") << false;
        QTest::newRow("no") << QByteArray("no") << false;
        QTest::newRow("nothing") << QByteArray("") << false;
    }

    void onlyExactlyYesMeansLocked()
    {
        QFETCH(const QByteArray, answer);
        QFETCH(const bool, isLocked);
        Fixture fixture;
        fixture.channel.answer("config config_has_password beta", answer);
        fixture.refresh();
        const QTableWidgetItem *item =
            fixture.table()->item(fixture.rowOf(QStringLiteral("beta")), 3);
        QCOMPARE(item->text(), isLocked ? QStringLiteral("yes") : QStringLiteral("no"));
        const QIcon expected(isLocked ? QStringLiteral(":/lock.png")
                                      : QStringLiteral(":/unlock.png"));
        QVERIFY(!expected.isNull());
        QCOMPARE(item->icon().pixmap(16, 16).toImage(), expected.pixmap(16, 16).toImage());
        // Where it is selected a style would tint it otherwise.
        QCOMPARE(item->icon().pixmap(16, 16, QIcon::Selected).toImage(),
                 expected.pixmap(16, 16).toImage());
    }

    void withoutLocksNothingIsLocked()
    {
        Fixture fixture({1, 8, 0});
        fixture.refresh();
        // The lock state is asked for all the same.
        QCOMPARE(fixture.channel.trace(), refreshTrace(allIds, false));
        fixture.show();
        fixture.select(QStringLiteral("locked"));
        QVERIFY(fixture.button("pushButton_delete")->isEnabled());
        QVERIFY(fixture.button("pushButton_edit")->isEnabled());
    }

    void everyFailedQueryIsReportedAndTheRowShowsTheOneBefore_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QString>("report");
        QTest::addColumn<QStringList>("lastRow");
        const QString lastId = QStringLiteral("locked");
        QTest::newRow("identifier")
            << QByteArray("config config t04")
            << QStringLiteral("Unable to get configuration information")
            << QStringList{"description of beta", "owner of beta", "beta", "no"};
        QTest::newRow("owner") << QByteArray("config owner_of_config locked")
                               << QStringLiteral("Unable to get the owner of configuration")
                               << QStringList{"description of locked", "owner of beta", lastId,
                                              "yes"};
        QTest::newRow("description")
            << QByteArray("config desc_of_config locked")
            << QStringLiteral("Unable to get description of configuration")
            << QStringList{"description of beta", "owner of locked", lastId, "yes"};
        QTest::newRow("lock state")
            << QByteArray("config config_has_password locked")
            << QStringLiteral("Unable to get whether configuration has pasword")
            << QStringList{"description of locked", "owner of locked", lastId, "no"};
    }

    void everyFailedQueryIsReportedAndTheRowShowsTheOneBefore()
    {
        QFETCH(const QByteArray, command);
        QFETCH(const QString, report);
        QFETCH(const QStringList, lastRow);
        Fixture fixture;
        fixture.channel.fail(command);
        fixture.refresh();

        const bool isIdLost = command == "config config t04";
        QStringList expected = refreshTrace(allIds.mid(0, 3))
            << rowTrace(4, isIdLost ? allIds.at(2) : allIds.at(3));
        expected.insert(
            expected.indexOf(QStringLiteral("queryString ") + QString::fromLatin1(command)) + 1,
            ScriptedChannel::reported(report));
        QCOMPARE(fixture.channel.trace(), expected);

        QList<QStringList> rows;
        for (int row = 0; row < fixture.table()->rowCount(); ++row) {
            rows << QStringList{fixture.text(row, 0), fixture.text(row, 1), fixture.text(row, 2),
                                fixture.text(row, 3)};
        }
        QCOMPARE(rows.size(), 4);
        QVERIFY(rows.contains(lastRow));
    }

    void aFailedActiveQueryIsReportedAsAFailedChange()
    {
        Fixture fixture;
        fixture.channel.fail("config active_config");
        fixture.refresh();
        QStringList expected = refreshTrace(allIds);
        expected.insert(
            3, ScriptedChannel::reported(QStringLiteral("Unable to change the configuration")));
        QCOMPARE(fixture.channel.trace(), expected);
        for (int row = 0; row < 4; ++row) {
            QCOMPARE(fixture.table()->item(row, 0)->font().weight(), int(QFont::Normal));
        }
    }

    void aFailedCountEndsTheRefresh()
    {
        Fixture fixture;
        fixture.channel.fail("config number_of_configs");
        ModalDriver driver;
        driver.expectBox(noContactBox());
        QCOMPARE(fixture.dialog->update_and_exec(), -1);
        QCOMPARE(fixture.channel.trace(),
                 QStringList({"queryDouble config free_space", "queryInt config number_of_configs",
                              reportedNoCount}));
        QCOMPARE(fixture.column(2), QStringList({"alpha", "beta", "locked", "standard"}));
    }

    void anAbsurdCountIsAFailedCount()
    {
        Fixture fixture;
        fixture.channel.answer("config number_of_configs", "2147483647");
        ModalDriver driver;
        driver.expectBox(noContactBox());
        QCOMPARE(fixture.dialog->update_and_exec(), -1);
        QCOMPARE(fixture.channel.trace().constLast(), reportedNoCount);
        QCOMPARE(fixture.table()->rowCount(), 4);
    }

    void aNegativeCountIsAnEmptyList()
    {
        Fixture fixture;
        fixture.channel.answer("config number_of_configs", "-3");
        fixture.refresh();
        QCOMPARE(fixture.channel.trace(), refreshTrace({}));
        QCOMPARE(fixture.table()->rowCount(), 0);
    }

    void refreshDisablesTheRowButtonsAndFocusesExit()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        QVERIFY(fixture.button("pushButton_apply")->isEnabled());
        fixture.create();
        for (const char *name :
             {"pushButton_delete", "pushButton_edit", "pushButton_apply", "pushButton_lock"}) {
            QVERIFY2(!fixture.button(name)->isEnabled(), name);
        }
        QCOMPARE(fixture.dialog->focusWidget(), fixture.button("pushButton_exit"));
        for (const QTableWidgetItem *item : fixture.table()->selectedItems()) {
            QCOMPARE(item->column(), 3);
        }
    }

    void anEmptyControllerGivesAnEmptyTable()
    {
        Fixture fixture;
        fixture.channel.answer("config number_of_configs", "0");
        fixture.show();
        QCOMPARE(fixture.table()->rowCount(), 0);
        QVERIFY(fixture.table()->selectedItems().isEmpty());
        QVERIFY(fixture.find<QLineEdit>("lineEdit_activeConfig")->text().isEmpty());
    }

    void slotsAbove99KeepTheirNumber()
    {
        Fixture fixture;
        QList<QByteArray> ids;
        for (int i = 1; i <= 101; ++i) {
            ids << "config" + QByteArray::number(i);
        }
        fixture.channel.answerConfigurations(ids, "config7");
        fixture.refresh();
        QVERIFY(fixture.channel.trace().contains(QStringLiteral("queryString config config t09")));
        QVERIFY(fixture.channel.trace().contains(QStringLiteral("queryString config config t101")));
        QCOMPARE(fixture.table()->rowCount(), 101);
    }

    // Showing
    void execRefreshesSelectsTheActiveRowAndShowsItsDescription()
    {
        Fixture fixture;
        ModalDriver driver;
        driver.expectDialog(QStringLiteral("ConfigurationDialog"), [&fixture](QDialog *window) {
            QVERIFY(window->isModal());
            QCOMPARE(fixture.channel.trace(), refreshTrace(allIds));
            QCOMPARE(fixture.table()->currentRow(), 0);
            QCOMPARE(fixture.text(0, 2), QStringLiteral("alpha"));
            QCOMPARE(fixture.dialog->focusWidget(), fixture.table());
            QCOMPARE(fixture.find<QLineEdit>("lineEdit_activeConfig")->text(),
                     QStringLiteral("description of alpha"));
            window->accept();
        });
        QCOMPARE(fixture.dialog->update_and_exec(), int(QDialog::Accepted));
    }

    void theActiveDescriptionIsReadable()
    {
        Fixture fixture;
        fixture.show();
        const auto *description = fixture.find<QLineEdit>("lineEdit_activeConfig");
        const QColor colour = description->palette().color(QPalette::Active, QPalette::Text);
        QVERIFY(!description->isEnabled());
        QVERIFY(QPalette().color(QPalette::Disabled, QPalette::Text) != colour);
        QCOMPARE(description->palette().color(QPalette::Disabled, QPalette::Text), colour);
    }

    void theActiveDescriptionShowsItsBeginning()
    {
        Fixture fixture;
        fixture.channel.answer("config desc_of_config alpha", QByteArray(190, 'a'));
        fixture.show();
        const auto *description = fixture.find<QLineEdit>("lineEdit_activeConfig");
        QCOMPARE(description->text().size(), 190);
        QCOMPARE(description->cursorPosition(), 0);
        QCOMPARE(description->selectedText(), QString());
    }

    void execReturnsMinusOneWithoutContact()
    {
        Fixture fixture;
        fixture.channel.fail("config number_of_configs");
        ModalDriver driver;
        driver.expectBox(noContactBox());
        QCOMPARE(fixture.dialog->update_and_exec(), -1);
        QVERIFY(!fixture.dialog->isVisible());
    }

    void anUnknownActiveConfigurationSelectsNothing()
    {
        Fixture fixture;
        fixture.channel.answer("config active_config", "elsewhere");
        fixture.show();
        QCOMPARE(fixture.table()->currentRow(), -1);
        QVERIFY(fixture.find<QLineEdit>("lineEdit_activeConfig")->text().isEmpty());
    }

    void anEmptyActiveConfigurationSelectsTheFirstRow()
    {
        Fixture fixture;
        fixture.channel.answer("config active_config", "");
        fixture.show();
        QCOMPARE(fixture.table()->currentRow(), 0);
    }

    void aSingleRowIsAlwaysSelected()
    {
        Fixture fixture;
        fixture.channel.answerConfigurations({"only"}, "elsewhere");
        fixture.show();
        QCOMPARE(fixture.table()->currentRow(), 0);
        QCOMPARE(fixture.table()->currentColumn(), 0);
    }

    void exitRejects_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("Exit button") << QStringLiteral("button");
        QTest::newRow("Escape") << QStringLiteral("escape");
        QTest::newRow("close button") << QStringLiteral("close");
    }

    void exitRejects()
    {
        QFETCH(const QString, way);
        Fixture fixture;
        ModalDriver driver;
        driver.expectDialog(QStringLiteral("ConfigurationDialog"), [&](QDialog *window) {
            if (way == QLatin1String("button")) {
                QTest::mouseClick(fixture.button("pushButton_exit"), Qt::LeftButton);
            } else if (way == QLatin1String("escape")) {
                QTest::keyClick(fixture.table(), Qt::Key_Escape);
            } else {
                window->close();
            }
        });
        QCOMPARE(fixture.dialog->update_and_exec(), int(QDialog::Rejected));
        QCOMPARE(fixture.channel.trace(), refreshTrace(allIds));
    }

    // Resizing and keys
    void columnsFollowTheWidthOfTheDialog()
    {
        const Fixture fixture;
        fixture.dialog->show();
        fixture.table()->horizontalHeader()->setStretchLastSection(false);
        fixture.dialog->resize(700, 500);
        QCOMPARE(fixture.table()->columnWidth(0), 330);
        QCOMPARE(fixture.table()->columnWidth(1), 165);
        QCOMPARE(fixture.table()->columnWidth(3), 165);
    }

    void columnsWithoutLocksFollowTheWidthOfTheDialog()
    {
        const Fixture fixture({1, 8, 0});
        fixture.dialog->show();
        fixture.table()->horizontalHeader()->setStretchLastSection(false);
        fixture.dialog->resize(700, 500);
        QCOMPARE(fixture.table()->columnWidth(0), 2 * 233 - 20);
        QCOMPARE(fixture.table()->columnWidth(1), 233 - 10);
    }

    void withoutColumnsTheWidthDoesNotMatter()
    {
        const Fixture fixture;
        fixture.dialog->show();
        fixture.table()->setColumnCount(0);
        fixture.dialog->resize(700, 500);
        QCOMPARE(fixture.table()->horizontalHeader()->length(), 0);
    }

    void otherKeysGoToTheDialog()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        fixture.channel.takeTrace();
        QTest::keyClick(fixture.table(), Qt::Key_Backspace);
        QCOMPARE(fixture.channel.takeTrace(), QStringList());
        // Return presses the default button, which is Apply.
        QTest::keyClick(fixture.table(), Qt::Key_Return);
        QVERIFY(fixture.channel.trace().contains(
            QStringLiteral("sendCommand config active_config beta")));
        QTest::keyClick(fixture.table(), Qt::Key_Escape);
        QVERIFY(!fixture.dialog->isVisible());
    }

    // Selection rule
    void selectionDecidesWhichButtonsWork_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("active");
        QTest::addColumn<QString>("enabled");
        QTest::addColumn<QString>("lockText");
        QTest::newRow("the active one")
            << QStringLiteral("alpha") << QStringLiteral("alpha")
            << QStringLiteral("delete edit lock") << QStringLiteral("L&ock");
        QTest::newRow("another one")
            << QStringLiteral("beta") << QStringLiteral("alpha")
            << QStringLiteral("delete edit apply") << QStringLiteral("L&ock");
        QTest::newRow("a locked one") << QStringLiteral("locked") << QStringLiteral("alpha")
                                      << QStringLiteral("apply") << QStringLiteral("Unl&ock");
        QTest::newRow("the active one, locked")
            << QStringLiteral("locked") << QStringLiteral("locked") << QStringLiteral("lock")
            << QStringLiteral("Unl&ock");
        QTest::newRow("standard") << QStringLiteral("standard") << QStringLiteral("alpha")
                                  << QStringLiteral("edit apply") << QStringLiteral("L&ock");
        QTest::newRow("standard with a capital letter")
            << QStringLiteral("Standard") << QStringLiteral("alpha")
            << QStringLiteral("delete edit apply") << QStringLiteral("L&ock");
    }

    void selectionDecidesWhichButtonsWork()
    {
        QFETCH(const QString, id);
        QFETCH(const QString, active);
        QFETCH(const QString, enabled);
        QFETCH(const QString, lockText);
        Fixture fixture;
        fixture.channel.answerConfigurations({"standard", "alpha", "beta", "locked", "Standard"},
                                             active.toLatin1());
        fixture.channel.answer("config config_has_password locked", "yes");
        fixture.show();
        fixture.table()->setCurrentCell(-1, -1);
        QTest::mouseClick(
            fixture.table()->viewport(), Qt::LeftButton, {},
            fixture.table()->visualItemRect(fixture.table()->item(fixture.rowOf(id), 0)).center());
        QStringList actuallyEnabled;
        for (const char *name : {"delete", "edit", "apply", "lock"}) {
            if (fixture.button(QByteArray("pushButton_") + name)->isEnabled()) {
                actuallyEnabled << QString::fromLatin1(name);
            }
        }
        QStringList expected = enabled.split(QLatin1Char(' '));
        expected.sort();
        actuallyEnabled.sort();
        QCOMPARE(actuallyEnabled, expected);
        QCOMPARE(fixture.button("pushButton_lock")->text(), lockText);
        QCOMPARE(fixture.channel.trace(), QStringList());
    }

    void selectionWithoutLocksLeavesTheLockButtonAlone()
    {
        Fixture fixture({1, 8, 0});
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        fixture.select(QStringLiteral("alpha"));
        QVERIFY(!fixture.button("pushButton_lock")->isEnabled());
        QCOMPARE(fixture.button("pushButton_lock")->text(), QStringLiteral("Lo&ck"));
    }

    void selectingNothingChangesNothing()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        fixture.table()->setCurrentCell(-1, -1);
        QVERIFY(fixture.table()->selectedItems().isEmpty());
        QVERIFY(fixture.button("pushButton_apply")->isEnabled());
        QVERIFY(fixture.button("pushButton_delete")->isEnabled());
    }

    // Activate
    void applyActivatesTheRow()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        fixture.channel.whenSent("config active_config beta", [&fixture] {
            fixture.channel.answer("config active_config", "beta");
        });
        fixture.channel.answer("system hostname", "controller");
        fixture.channel.answer("config desc", "\"description of beta\"");
        QTest::mouseClick(fixture.button("pushButton_apply"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace(),
                 QStringList({"setTimeout 0 20000 0", "sendCommand config active_config beta",
                              "queryString config active_config", "queryString system hostname",
                              "queryString config desc", ScriptedChannel::announced()})
                     + refreshTrace(allIds));
        QCOMPARE(fixture.text(fixture.table()->currentRow(), 2), QStringLiteral("beta"));
        QCOMPARE(fixture.dialog->focusWidget(), fixture.table());
        QCOMPARE(fixture.find<QLineEdit>("lineEdit_activeConfig")->text(),
                 QStringLiteral("description of beta"));
        QVERIFY(!fixture.button("pushButton_apply")->isEnabled());
    }

    void applyGoesOnAfterFailedQueries_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QString>("report");
        QTest::newRow("active") << QByteArray("config active_config")
                                << QStringLiteral("Unable to retrieve the active configuration");
        QTest::newRow("host name")
            << QByteArray("system hostname") << QStringLiteral("Unable to get the system hostname");
        QTest::newRow("description") << QByteArray("config desc")
                                     << QStringLiteral("Unable to get configuration description");
    }

    void applyGoesOnAfterFailedQueries()
    {
        QFETCH(const QByteArray, command);
        QFETCH(const QString, report);
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        fixture.channel.answer("system hostname", "controller");
        fixture.channel.answer("config desc", "\"description of beta\"");
        fixture.channel.whenSent(command, [&] { fixture.channel.failNth(0); });
        QTest::mouseClick(fixture.button("pushButton_apply"), Qt::LeftButton);

        QStringList expected{"setTimeout 0 20000 0",
                             "sendCommand config active_config beta",
                             "queryString config active_config",
                             "queryString system hostname",
                             "queryString config desc",
                             ScriptedChannel::announced()};
        expected.insert(
            expected.indexOf(QStringLiteral("queryString ") + QString::fromLatin1(command)) + 1,
            ScriptedChannel::reported(report));
        expected += refreshTrace(allIds);
        if (command == "config active_config") { // the refresh meets the same failure
            expected.insert(
                expected.size() - 16,
                ScriptedChannel::reported(QStringLiteral("Unable to change the configuration")));
        }
        QCOMPARE(fixture.channel.trace(), expected);
    }

    void aFailedActivationStops()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        fixture.channel.fail("config active_config beta");
        QTest::mouseClick(fixture.button("pushButton_apply"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace(),
                 QStringList({"setTimeout 0 20000 0", "sendCommand config active_config beta",
                              ScriptedChannel::reported(
                                  QStringLiteral("Unable to change the configuration"))}));
        QCOMPARE(fixture.text(fixture.table()->currentRow(), 2), QStringLiteral("beta"));
    }

    void applyWithoutARowDoesNothing()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        fixture.table()->setCurrentCell(-1, -1);
        QTest::mouseClick(fixture.button("pushButton_apply"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace(), QStringList());
    }

    void applyMakesTheActiveRowCurrent()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        // The controller stays with its own choice.
        QTest::mouseClick(fixture.button("pushButton_apply"), Qt::LeftButton);
        QCOMPARE(fixture.text(fixture.table()->currentRow(), 2), QStringLiteral("alpha"));
    }

    // Delete
    void deleteAsksAndDeletes_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::addColumn<QString>("id");
        QTest::newRow("button") << false << QStringLiteral("beta");
        QTest::newRow("Delete key") << true << QStringLiteral("beta");
        QTest::newRow("the active one") << false << QStringLiteral("alpha");
    }

    void deleteAsksAndDeletes()
    {
        QFETCH(const bool, byKey);
        QFETCH(const QString, id);
        Fixture fixture;
        fixture.show();
        fixture.select(id);
        QStringList left = allIds;
        left.removeOne(id);
        const QByteArray command = "veltra2 config delete_config " + id.toLatin1();
        fixture.channel.whenSent(command, [&] {
            fixture.channel.answerConfigurations(
                {left.at(0).toLatin1(), left.at(1).toLatin1(), left.at(2).toLatin1()}, "standard");
        });
        ModalDriver driver;
        ExpectedBox box = deleteBox(QStringLiteral("description of ") + id,
                                    QStringLiteral("owner of ") + id, QMessageBox::Ok);
        box.parent = fixture.dialog.get();
        driver.expectBox(box);
        if (byKey) {
            QTest::keyClick(fixture.table(), Qt::Key_Delete);
        } else {
            QTest::mouseClick(fixture.button("pushButton_delete"), Qt::LeftButton);
        }
        QCOMPARE(
            fixture.channel.trace(),
            QStringList({"setTimeout 0 20000 1", "sendCommandReply " + QString::fromLatin1(command),
                         ScriptedChannel::announced()})
                + refreshTrace(left));
        QCOMPARE(fixture.text(fixture.table()->currentRow(), 2), QStringLiteral("standard"));
        QCOMPARE(fixture.find<QLineEdit>("lineEdit_activeConfig")->text(),
                 QStringLiteral("description of standard"));
    }

    void aFailedDeletionIsReportedAnnouncedAndRefreshed()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        fixture.channel.fail("veltra2 config delete_config beta");
        ModalDriver driver;
        driver.expectBox(deleteBox(QStringLiteral("description of beta"),
                                   QStringLiteral("owner of beta"), QMessageBox::Ok));
        QTest::mouseClick(fixture.button("pushButton_delete"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace(),
                 QStringList(
                     {"setTimeout 0 20000 1", "sendCommandReply veltra2 config delete_config beta",
                      ScriptedChannel::reported(QStringLiteral("Unable to delete configuration")),
                      ScriptedChannel::announced()})
                     + refreshTrace(allIds));
    }

    void aCancelledDeletionSendsNothing()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        fixture.button("pushButton_delete")->setFocus();
        ModalDriver driver;
        driver.expectBox(deleteBox(QStringLiteral("description of beta"),
                                   QStringLiteral("owner of beta"), QMessageBox::Cancel));
        QTest::mouseClick(fixture.button("pushButton_delete"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace(), QStringList());
        QCOMPARE(fixture.dialog->focusWidget(), fixture.table());
        QCOMPARE(fixture.text(fixture.table()->currentRow(), 2), QStringLiteral("beta"));
    }

    void theDeletionQuestionClosedIsACancelledDeletion()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        ModalDriver driver;
        driver.expectDialog(QString(), [](QDialog *box) { QTest::keyClick(box, Qt::Key_Escape); });
        QTest::mouseClick(fixture.button("pushButton_delete"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace(), QStringList());
    }

    void standardInAnyCaseIsNeverDeleted_data()
    {
        QTest::addColumn<QByteArray>("id");
        QTest::newRow("standard") << QByteArray("standard");
        QTest::newRow("Standard") << QByteArray("Standard");
        QTest::newRow("STANDARD") << QByteArray("STANDARD");
    }

    void standardInAnyCaseIsNeverDeleted()
    {
        QFETCH(const QByteArray, id);
        Fixture fixture;
        fixture.channel.answerConfigurations({id, "alpha"}, "alpha");
        fixture.show();
        fixture.select(QString::fromLatin1(id));
        QTest::mouseClick(fixture.button("pushButton_delete"), Qt::LeftButton);
        QTest::keyClick(fixture.table(), Qt::Key_Delete);
        QCOMPARE(fixture.channel.trace(), QStringList());
    }

    void aLockedConfigurationIsNeverDeleted()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("locked"));
        QTest::keyClick(fixture.table(), Qt::Key_Delete);
        QCOMPARE(fixture.channel.trace(), QStringList());
    }

    void deleteWithoutARowDoesNothing()
    {
        Fixture fixture;
        fixture.show();
        fixture.table()->setCurrentCell(-1, -1);
        QTest::keyClick(fixture.table(), Qt::Key_Delete);
        QCOMPARE(fixture.channel.trace(), QStringList());
    }

    // The dialogs behind the buttons
    void newCancelledMakesTheRowCurrentAgain()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        const int row = fixture.table()->currentRow();
        ModalDriver driver;
        driver.expectDialog(QStringLiteral("NewConfigurationDialog"), [&](QDialog *dialog) {
            QCOMPARE(dialog->parentWidget(), fixture.dialog.get());
            dialog->reject();
        });
        QTest::mouseClick(fixture.button("pushButton_new"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace(), refreshTrace(allIds));
        QCOMPARE(fixture.table()->currentRow(), row);
        QCOMPARE(fixture.table()->currentColumn(), 0);
        QCOMPARE(fixture.dialog->focusWidget(), fixture.table());
    }

    void newAcceptedSelectsTheActiveRow()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        ModalDriver driver;
        driver.expectDialog(QStringLiteral("NewConfigurationDialog"), [&](QDialog *dialog) {
            QTest::keyClicks(dialog->findChild<QLineEdit *>(QStringLiteral("lineEdit_desc")),
                             "new");
            fixture.channel.answer("config active_config", "standard");
            QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("pushButton_create")),
                              Qt::LeftButton);
        });
        QTest::mouseClick(fixture.button("pushButton_new"), Qt::LeftButton);
        const QStringList trace = fixture.channel.trace();
        const QStringList refresh = refreshTrace(allIds);
        QCOMPARE(trace.mid(trace.size() - refresh.size()), refresh);
        QCOMPARE(trace.at(trace.size() - refresh.size() - 1), ScriptedChannel::announced());
        QCOMPARE(fixture.text(fixture.table()->currentRow(), 2), QStringLiteral("standard"));
        QCOMPARE(fixture.find<QLineEdit>("lineEdit_activeConfig")->text(),
                 QStringLiteral("description of standard"));
    }

    void editRefreshesAndMakesTheRowCurrent()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        const int row = fixture.table()->currentRow();
        ModalDriver driver;
        driver.expectDialog(QStringLiteral("EditConfigDialog"),
                            [](QDialog *dialog) { dialog->reject(); });
        QTest::mouseClick(fixture.button("pushButton_edit"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace(),
                 QStringList({"queryString config owner_of_config beta",
                              "queryString config desc_of_config beta"})
                     + refreshTrace(allIds));
        QCOMPARE(fixture.table()->currentRow(), row);
        QCOMPARE(fixture.table()->currentColumn(), 2);
        QCOMPARE(fixture.dialog->focusWidget(), fixture.table());
    }

    void editWithoutARowDoesNothing()
    {
        Fixture fixture;
        fixture.show();
        const ModalDriver driver; // fails on any window
        fixture.table()->setCurrentCell(-1, -1);
        QVERIFY(QMetaObject::invokeMethod(fixture.dialog.get(), "on_pushButton_edit_clicked"));
        QCOMPARE(fixture.channel.trace(), QStringList());
    }

    void aDoubleClickEdits_data()
    {
        QTest::addColumn<int>("minor");
        QTest::addColumn<QString>("id");
        QTest::newRow("an unlocked row") << 27 << QStringLiteral("beta");
        QTest::newRow("any row where there are no locks") << 8 << QStringLiteral("locked");
    }

    void aDoubleClickEdits()
    {
        QFETCH(const int, minor);
        QFETCH(const QString, id);
        Fixture fixture({1, minor, 0});
        fixture.show();
        const int row = fixture.rowOf(id);
        ModalDriver driver;
        driver.expectDialog(QStringLiteral("EditConfigDialog"),
                            [](QDialog *dialog) { dialog->reject(); });
        const QPoint place =
            fixture.table()->visualItemRect(fixture.table()->item(row, 1)).center();
        QTest::mouseClick(fixture.table()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(fixture.table()->viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(fixture.channel.trace(),
                 QStringList({"queryString config owner_of_config " + id,
                              "queryString config desc_of_config " + id})
                     + refreshTrace(allIds, minor >= 27));
        QCOMPARE(fixture.table()->currentRow(), row);
        QCOMPARE(fixture.table()->currentColumn(), 0);
    }

    void aDoubleClickActivatesALockedRow()
    {
        Fixture fixture;
        fixture.show();
        const ModalDriver driver; // fails on any window
        fixture.channel.answer("system hostname", "controller");
        fixture.channel.answer("config desc", "\"description of locked\"");
        const QPoint place =
            fixture.table()
                ->visualItemRect(fixture.table()->item(fixture.rowOf(QStringLiteral("locked")), 0))
                .center();
        QTest::mouseClick(fixture.table()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(fixture.table()->viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(fixture.channel.trace(),
                 QStringList({"setTimeout 0 20000 0", "sendCommand config active_config locked",
                              "queryString config active_config", "queryString system hostname",
                              "queryString config desc", ScriptedChannel::announced()})
                     + refreshTrace(allIds));
    }

    void aDoubleClickOutsideTheRowsDoesNothing()
    {
        Fixture fixture;
        fixture.show();
        const ModalDriver driver; // fails on any window
        const auto doubleClick = [&fixture](int row, int column) {
            return QMetaObject::invokeMethod(fixture.dialog.get(),
                                             "on_tableWidget_cellDoubleClicked", Q_ARG(int, row),
                                             Q_ARG(int, column));
        };
        QVERIFY(doubleClick(-1, 0));
        QVERIFY(doubleClick(0, -1));
        QCOMPARE(fixture.channel.trace(), QStringList());
    }

    void theLockButtonOpensWhatItSays_data()
    {
        QTest::addColumn<QString>("active");
        QTest::addColumn<QString>("dialogName");
        QTest::newRow("L&ock") << QStringLiteral("alpha")
                               << QStringLiteral("LockConfigurationDialog");
        QTest::newRow("Unl&ock") << QStringLiteral("locked")
                                 << QStringLiteral("UnlockConfigurationDialog");
    }

    void theLockButtonOpensWhatItSays()
    {
        QFETCH(const QString, active);
        QFETCH(const QString, dialogName);
        Fixture fixture;
        fixture.channel.answer("config active_config", active.toLatin1());
        fixture.show();
        QCOMPARE(fixture.button("pushButton_lock")->text(), QString(QTest::currentDataTag()));
        const int row = fixture.table()->currentRow();
        ModalDriver driver;
        driver.expectDialog(dialogName, [](QDialog *dialog) { dialog->reject(); });
        QTest::mouseClick(fixture.button("pushButton_lock"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace(),
                 QStringList("queryString config desc_of_config " + active) + refreshTrace(allIds));
        QCOMPARE(fixture.table()->currentRow(), row);
        QCOMPARE(fixture.dialog->focusWidget(), fixture.table());
    }

    void theLockButtonAsItStartsOpensNothing()
    {
        Fixture fixture;
        fixture.show();
        const ModalDriver driver; // fails on any window
        const int row = fixture.table()->currentRow();
        fixture.button("pushButton_lock")->setText(QStringLiteral("Lo&ck"));
        QTest::mouseClick(fixture.button("pushButton_lock"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace(), refreshTrace(allIds));
        QCOMPARE(fixture.table()->currentRow(), row);
        QCOMPARE(fixture.dialog->focusWidget(), fixture.table());
    }

    void withoutLocksTheLockSlotDoesNothing()
    {
        Fixture fixture({1, 8, 0});
        fixture.show();
        const ModalDriver driver; // fails on any window
        QVERIFY(QMetaObject::invokeMethod(fixture.dialog.get(), "on_pushButton_lock_clicked"));
        QCOMPARE(fixture.channel.trace(), QStringList());
    }

    void saveGetsTheListInSlotOrderAndNoRefreshFollows()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        QStringList offered;
        ModalDriver driver;
        driver.expectDialog(QStringLiteral("ConfigSaveDlgClass"), [&offered](QDialog *dialog) {
            const auto *table =
                dialog->findChild<QTableWidget *>(QStringLiteral("tableWidget_selectConfigs"));
            for (int row = 0; row < table->rowCount(); ++row) {
                offered << table->item(row, 2)->text();
            }
            dialog->reject();
        });
        QTest::mouseClick(fixture.button("pushButton_save"), Qt::LeftButton);
        QCOMPARE(offered, allIds);
        QCOMPARE(fixture.channel.trace(), QStringList());
        QCOMPARE(fixture.text(fixture.table()->currentRow(), 2), QStringLiteral("alpha"));
    }

    void aCancelledLoadIsFollowedByARefresh()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        ModalDriver driver;
        driver.expectFileDialog(QStringLiteral("Load Configurations"), QString());
        QTest::mouseClick(fixture.button("pushButton_load"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace(), refreshTrace(allIds));
        QCOMPARE(fixture.text(fixture.table()->currentRow(), 2), QStringLiteral("alpha"));
        QCOMPARE(fixture.find<QLineEdit>("lineEdit_activeConfig")->text(),
                 QStringLiteral("description of alpha"));
    }

    // The host pulls the rug
    void theDialogMayDieUnderTheDeletionQuestion()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        ModalDriver driver;
        driver.expectDialog(QString(), [&fixture](QDialog *) { fixture.dialog.reset(); });
        QTest::mouseClick(fixture.button("pushButton_delete"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace(),
                 QStringList{QStringLiteral("removeMessageReceiver ServiceModule")});
    }

    void theDialogMayDieUnderTheNoContactBox()
    {
        Fixture fixture;
        fixture.show();
        fixture.select(QStringLiteral("beta"));
        fixture.channel.fail("config number_of_configs");
        ModalDriver driver;
        driver.expectDialog(QString(), [&fixture](QDialog *) { fixture.dialog.reset(); });
        QTest::mouseClick(fixture.button("pushButton_apply"), Qt::LeftButton);
        QCOMPARE(fixture.channel.trace().constLast(),
                 QStringLiteral("removeMessageReceiver ServiceModule"));
    }
};

VELTRA4_TEST(TestChangeConfigurationDlg)
#include "tst_changeconfigurationdlg.moc"

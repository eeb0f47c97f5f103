#include "dialogs/changeconfigurationdlg.h"

#include "channel/identifiers.h"
#include "channel/replybuffer.h"
#include "channel/versiongate.h"
#include "dialogs/editconfigdlg.h"
#include "dialogs/lockconfigdlg.h"
#include "dialogs/newconfigurationdlg.h"
#include "dialogs/unlockconfigdlg.h"
#include "hostapi/backendversions.h"
#include "resources/resources.h"
#include "transfer/configloaddlg.h"
#include "transfer/configsavedlg.h"
#include "widgets/accessibletexts.h"
#include "widgets/adoption.h"
#include "widgets/displayfield.h"
#include "widgets/messagebox.h"
#include "widgets/modaldialog.h"
#include "widgets/readabletable.h"

#include <QKeyEvent>
#include <QResizeEvent>
#include <QVarLengthArray>

#include <algorithm>
#include <climits>

namespace {

enum Column { DescriptionColumn, OwnerColumn, IdColumn, LockedColumn };

constexpr int rowHeight = 28; // pixels
constexpr int slowCommandMs = 20000;

constexpr double fullWarningBelow = 0.2; // free fraction of the configuration store
constexpr double tooFullBelow = 0.02;

// The same in selected rows, where a style would tint it until it can no longer be told apart.
QIcon untintedIcon(const QString &fileName)
{
    QIcon icon(fileName);
    icon.addFile(fileName, {}, QIcon::Selected);
    return icon;
}

} // namespace

ChangeConfigurationDlg::ChangeConfigurationDlg(IOManager *channel, BackendVersions *versions,
                                               QWidget *parent)
    : m_channel(channel)
    , m_controller(channel, parent)
    , m_list(m_controller, *versions)
{
    initializeResources();
    m_ui.setupUi(this);
    AccessibleTexts::describeControls(this);
    m_lockIcon = untintedIcon(QStringLiteral(":/lock.png"));
    m_unlockIcon = untintedIcon(QStringLiteral(":/unlock.png"));
    m_saveDialog = new ConfigSaveDlg(channel, versions, this);
    m_loadDialog = new ConfigLoadDlg(channel, versions, this);

    m_ui.widget_load_save->setEnabled(VersionGate::hasTransfers(versions->interfaceVersion));
    m_ui.pushButton_lock->setVisible(m_list.hasLocks());
    m_ui.widget_lct_lock->hide();
    if (m_list.hasLocks()) {
        setMinimumSize(500, 300);
    }
    setUpTable();
    refreshBeforeAdoption(parent);
    m_controller = Controller(channel, this);
    adopt(this, parent);
}

ChangeConfigurationDlg::~ChangeConfigurationDlg()
{
    if (m_isDoubleClicked) {
        // The table's own code is still under way. It goes on when the signal has been handled.
        m_ui.tableWidget->setParent(nullptr);
        m_ui.tableWidget->deleteLater();
    }
}

// Within the first refresh the host may destroy the parent. That must not destroy the dialog under
// its own constructor, but it ends it, and what is registered with the host goes at once.
void ChangeConfigurationDlg::refreshBeforeAdoption(QWidget *parent)
{
    const QObject context;
    if (parent) {
        connect(parent, &QObject::destroyed, &context, [this] {
            qDeleteAll(findChildren<QDialog *>(QString(), Qt::FindDirectChildrenOnly));
        });
    }
    if (!m_controller.ownerSurvives([this] { refreshList(); })) {
        throw OwnerDestroyed();
    }
}

void ChangeConfigurationDlg::setUpTable()
{
    QStringList headers{QStringLiteral("Description"), QStringLiteral("Owner"),
                        QStringLiteral("ID")};
    if (m_list.hasLocks()) {
        headers << QStringLiteral("Locked");
    }
    QTableWidget *table = m_ui.tableWidget;
    table->setColumnCount(headers.size());
    table->setRowCount(0);
    table->setHorizontalHeaderLabels(headers);
    ReadableTable::prepare(table, rowHeight);
    table->verticalHeader()->hide();
    table->setColumnHidden(IdColumn, true);
    table->horizontalHeader()->setSectionsClickable(false);
}

int ChangeConfigurationDlg::update_and_exec()
{
    // A refresh under which the host destroys the dialog has failed as well.
    int refreshed = -1;
    if (!m_controller.ownerSurvives([&] { refreshed = refreshList(); }) || refreshed < 0) {
        return -1;
    }
    selectActiveRow();
    m_ui.tableWidget->setFocus();
    showActiveDescription();
    return exec();
}

int ChangeConfigurationDlg::refreshList()
{
    m_list.clear();
    showFreeSpace(m_list.readFreeSpace());
    const std::optional<int> count = m_list.readCount();
    if (!count) {
        MessageBox::show(QMessageBox::Critical, this, this, tr("Command Error"),
                         tr("no contact to Controller"));
        return -1;
    }
    QTableWidget *table = m_ui.tableWidget;
    table->setRowCount(*count);
    table->clearContents();
    m_list.read(*count);
    showRows();
    table->horizontalHeader()->setStretchLastSection(true);
    clearSelection();
    table->sortItems(DescriptionColumn, Qt::AscendingOrder);
    for (QPushButton *button : {m_ui.pushButton_delete, m_ui.pushButton_edit, m_ui.pushButton_apply,
                                m_ui.pushButton_lock}) {
        button->setEnabled(false);
    }
    m_ui.pushButton_exit->setFocus();
    return 0;
}

void ChangeConfigurationDlg::showFreeSpace(double free)
{
    const bool isWarning = free <= fullWarningBelow;
    if (isWarning) {
        const double percent = std::clamp((1.0 - free) * 100.0, double(INT_MIN), double(INT_MAX));
        m_ui.label_error->setText(
            tr("<b><font color=red>configuration store filled %1%; please delete "
               "unnecessary configurations!</font></b>")
                .arg(static_cast<int>(percent)));
    }
    m_ui.label_error->setVisible(isWarning);
    m_ui.pushButton_new->setEnabled(free > tooFullBelow);
}

void ChangeConfigurationDlg::showRows()
{
    // The view learns of all rows at once, when they are sorted.
    const QSignalBlocker blocker(m_ui.tableWidget->model());
    int row = 0;
    for (const ConfigEntry &entry : m_list.entries()) {
        showRow(row++, entry);
    }
}

void ChangeConfigurationDlg::showRow(int row, const ConfigEntry &entry)
{
    QVarLengthArray<QTableWidgetItem *, 4> items{new QTableWidgetItem(entry.description),
                                                 new QTableWidgetItem(entry.owner),
                                                 new QTableWidgetItem(entry.identifier)};
    if (m_list.hasLocks()) {
        items << (entry.locked ? new QTableWidgetItem(m_lockIcon, tr("yes"))
                               : new QTableWidgetItem(m_unlockIcon, tr("no")));
    }
    if (entry.identifier == m_list.activeId()) {
        QFont font = items.first()->font();
        font.setWeight(QFont::Bold);
        for (QTableWidgetItem *item : qAsConst(items)) {
            item->setFont(font);
        }
    }
    for (int column = 0; column < items.size(); ++column) {
        m_ui.tableWidget->setItem(row, column, items.at(column));
    }
}

void ChangeConfigurationDlg::clearSelection()
{
    QTableWidget *table = m_ui.tableWidget;
    if (QTableWidgetItem *item = table->item(0, OwnerColumn)) {
        item->setSelected(true);
    }
    // Where the old selection would be now is anybody's guess: nothing stays selected.
    const QModelIndex first = table->model()->index(0, DescriptionColumn);
    const QModelIndex last = table->model()->index(table->rowCount() - 1, IdColumn);
    table->selectionModel()->select({first, last}, QItemSelectionModel::Deselect);
}

void ChangeConfigurationDlg::selectActiveRow()
{
    QTableWidget *table = m_ui.tableWidget;
    if (table->rowCount() == 0) {
        return;
    }
    int activeRow = 0;
    if (table->rowCount() > 1 && !m_list.activeId().isEmpty()) {
        while (activeRow < table->rowCount() && textAt(activeRow, IdColumn) != m_list.activeId()) {
            ++activeRow;
        }
    }
    table->setCurrentCell(activeRow,
                          DescriptionColumn); // past the last row there is nothing to make current
    m_ui.tableWidget->setFocus();
}

void ChangeConfigurationDlg::showActiveDescription()
{
    const QString description = m_list.activeDescription();
    showAsDisplay(m_ui.lineEdit_activeConfig);
    m_ui.lineEdit_activeConfig->setText(description);
    m_ui.lineEdit_activeConfig->home(false); // the beginning says most
    m_ui.lineEdit_activeConfig->setToolTip(ReadableTable::toolTip(description));
    m_ui.lineEdit_activeConfig->setAccessibleDescription(
        description); // else it is the tip's markup
}

void ChangeConfigurationDlg::on_pushButton_apply_clicked()
{
    const int row = m_ui.tableWidget->currentRow();
    if (row < 0) {
        return;
    }
    bool isActivated = false;
    const auto activateRow = [&] { isActivated = activate(textAt(row, IdColumn)); };
    if (m_controller.ownerSurvives(activateRow) && isActivated && refreshAndSurvive()) {
        m_ui.tableWidget->selectRow(row);
        m_ui.tableWidget->setFocus();
        showActiveDescription();
        selectActiveRow();
    }
}

bool ChangeConfigurationDlg::activate(const QString &identifier)
{
    m_controller.setTimeout(slowCommandMs, 0);
    if (!m_controller.reportUnless(m_controller.activate(identifier),
                                   "Unable to change the configuration")) {
        return false;
    }
    // Only the answering counts: a controller that has just switched says here whether it is well.
    ReplyBuffer unused;
    m_controller.reportUnless(m_controller.activeConfiguration(&unused),
                              "Unable to retrieve the active configuration");
    m_controller.reportUnless(m_controller.hostname(&unused), "Unable to get the system hostname");
    m_controller.reportUnless(m_controller.description(&unused),
                              "Unable to get configuration description");
    m_controller.announceActiveConfigurationChanged();
    return true;
}

void ChangeConfigurationDlg::on_pushButton_delete_clicked()
{
    const int row = m_ui.tableWidget->currentRow();
    const QString id = textAt(row, IdColumn);
    // In lower case here, with case in the rule that enables the button: a configuration called
    // "Standard" can be chosen for deletion, but never is.
    const bool isStandard = id.toLower() == QLatin1String(Identifiers::standard);
    const bool isLocked = m_list.hasLocks() && textAt(row, LockedColumn) == QLatin1String("yes");
    if (row < 0 || isStandard || isLocked) {
        return;
    }
    const MessageBox::Button answer =
        MessageBox::show(QMessageBox::Warning, this, this, tr("Warning"),
                         tr("You are about to delete the configuration '%1' owned by '%2'.")
                             .arg(textAt(row, DescriptionColumn), textAt(row, OwnerColumn)),
                         QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
    if (answer == QMessageBox::NoButton) {
        return;
    }
    if (answer != QMessageBox::Ok) {
        m_ui.tableWidget->setFocus();
        return;
    }
    if (m_controller.ownerSurvives([&] { deleteConfiguration(id); }) && refreshAndSurvive()) {
        showActiveDescription();
        selectActiveRow();
    }
}

void ChangeConfigurationDlg::deleteConfiguration(const QString &identifier)
{
    m_controller.setTimeout(slowCommandMs, 1);
    m_controller.reportUnless(m_controller.deleteConfiguration(identifier)
                                  != Controller::Answer::None,
                              "Unable to delete configuration");
    m_controller.announceActiveConfigurationChanged();
}

void ChangeConfigurationDlg::on_pushButton_new_clicked()
{
    const int row = m_ui.tableWidget->currentRow();
    const auto result =
        runModalDialog(new NewConfigurationDlg(m_channel, this),
                       [](NewConfigurationDlg &dialog) { return dialog.update_and_exec(); });
    if (!result || !refreshAndSurvive()) {
        return;
    }
    showActiveDescription();
    if (*result == QDialog::Accepted) {
        selectActiveRow();
    } else {
        m_ui.tableWidget->setCurrentCell(row, DescriptionColumn);
        m_ui.tableWidget->setFocus();
    }
}

void ChangeConfigurationDlg::on_pushButton_edit_clicked()
{
    const int row = m_ui.tableWidget->currentRow();
    if (row < 0) {
        return;
    }
    if (runEditDialog(textAt(row, IdColumn)) && refreshAndSurvive()) {
        m_ui.tableWidget->setCurrentCell(row, IdColumn);
        m_ui.tableWidget->setFocus();
    }
}

void ChangeConfigurationDlg::on_pushButton_lock_clicked()
{
    if (!m_list.hasLocks()) {
        return;
    }
    const int row = m_ui.tableWidget->currentRow();
    const QString id = textAt(row, IdColumn);
    const auto run = [&id](auto &dialog) { return dialog.update_and_exec(id); };
    // Compared with the untranslated texts, so that the initial "Lo&ck" opens nothing.
    const QString buttonText = m_ui.pushButton_lock->text();
    bool isAlive = true;
    if (buttonText == QLatin1String("L&ock")) {
        isAlive = runModalDialog(new LockConfigDlg(m_channel, this), run).has_value();
    } else if (buttonText == QLatin1String("Unl&ock")) {
        isAlive = runModalDialog(new UnlockConfigDlg(m_channel, this), run).has_value();
    }
    if (isAlive && refreshAndSurvive()) {
        m_ui.tableWidget->selectRow(row);
        m_ui.tableWidget->setFocus();
    }
}

void ChangeConfigurationDlg::on_pushButton_load_clicked()
{
    m_loadDialog->setConfigurationList(m_list.entries());
    if (m_controller.ownerSurvives([this] { m_loadDialog->openAndExec(); })
        && refreshAndSurvive()) {
        activateWindow(); // not all window managers do, after several windows came and went
        showActiveDescription();
        selectActiveRow();
    }
}

void ChangeConfigurationDlg::on_pushButton_save_clicked()
{
    m_saveDialog->setConfigurationList(m_list.entries());
    if (m_controller.ownerSurvives([this] { m_saveDialog->runSaveDialog(); })) {
        selectActiveRow();
    }
}

void ChangeConfigurationDlg::on_tableWidget_itemSelectionChanged()
{
    const int row = m_ui.tableWidget->currentRow();
    if (row < 0) {
        return;
    }
    const QString id = textAt(row, IdColumn);
    const bool isActive = id == m_list.activeId();
    QString lockState;
    if (m_list.hasLocks()) {
        // The table shows translated words; only the untranslated ones count.
        lockState = textAt(row, LockedColumn);
        if (lockState == QLatin1String("yes")) {
            m_ui.pushButton_lock->setText(tr("Unl&ock"));
        } else if (lockState == QLatin1String("no")) {
            m_ui.pushButton_lock->setText(tr("L&ock"));
        }
        m_ui.pushButton_lock->setEnabled(isActive);
    }
    const bool isUnlocked = lockState != QLatin1String("yes");
    m_ui.pushButton_delete->setEnabled(id != QLatin1String(Identifiers::standard) && isUnlocked);
    m_ui.pushButton_apply->setEnabled(!isActive);
    m_ui.pushButton_edit->setEnabled(isUnlocked);
}

void ChangeConfigurationDlg::on_tableWidget_cellDoubleClicked(int row, int column)
{
    if (row < 0 || column < 0) {
        return;
    }
    m_isDoubleClicked = true;
    if (m_controller.ownerSurvives([&] { activateLockedOrEdit(row); })) {
        m_isDoubleClicked = false;
    }
}

void ChangeConfigurationDlg::activateLockedOrEdit(int row)
{
    if (m_list.hasLocks() && textAt(row, LockedColumn) == QLatin1String("yes")) {
        on_pushButton_apply_clicked();
        return;
    }
    if (runEditDialog(textAt(row, IdColumn)) && refreshAndSurvive()) {
        m_ui.tableWidget->setCurrentCell(row, DescriptionColumn);
    }
}

void ChangeConfigurationDlg::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Delete) {
        on_pushButton_delete_clicked();
    } else {
        QDialog::keyPressEvent(event);
    }
}

void ChangeConfigurationDlg::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    QTableWidget *table = m_ui.tableWidget;
    const int columns = table->columnCount(); // the hidden one counts
    if (columns == 0) {
        return;
    }
    const int share = event->size().width() / columns;
    table->setColumnWidth(DescriptionColumn, 2 * share - 20);
    for (int column = OwnerColumn; column < columns; ++column) {
        table->setColumnWidth(column, share - 10);
    }
}

bool ChangeConfigurationDlg::runEditDialog(const QString &identifier)
{
    return runModalDialog(
               new EditConfigDlg(m_channel, this),
               [&identifier](EditConfigDlg &dialog) { return dialog.update_and_exec(identifier); })
        .has_value();
}

QString ChangeConfigurationDlg::textAt(int row, int column) const
{
    const QTableWidgetItem *item = m_ui.tableWidget->item(row, column);
    return item ? item->text() : QString();
}

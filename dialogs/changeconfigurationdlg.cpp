#include "dialogs/changeconfigurationdlg.h"

#include "ui_changeconfigurationdlg.h"

#include "channel/accessibletexts.h"
#include "channel/answeredcount.h"
#include "channel/hostmessages.h"
#include "channel/identifiers.h"
#include "channel/messagebox.h"
#include "channel/modaldialog.h"
#include "channel/quotes.h"
#include "channel/readabletable.h"
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

// An item of the first column, by which the table is sorted. It compares as any other item does,
// but without asking for the text each time: a long list costs more in comparing than in all else.
class DescriptionItem : public QTableWidgetItem
{
public:
    explicit DescriptionItem(const QString &description)
        : QTableWidgetItem(description)
        , m_description(description)
    {
    }

    bool operator<(const QTableWidgetItem &other) const override
    {
        const auto &description = static_cast<const DescriptionItem &>(other).m_description;
        return m_description.localeAwareCompare(description) < 0;
    }

private:
    const QString m_description;
};

// It only displays, but what it displays is no less important for that.
void makeReadableThoughDisabled(QWidget *widget)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Disabled, QPalette::Text,
                     palette.color(QPalette::Active, QPalette::Text));
    widget->setPalette(palette);
}

// The same in selected rows, where a style would tint it until it can no longer be told apart.
QIcon untintedIcon(const QString &fileName)
{
    QIcon icon(fileName);
    icon.addFile(fileName, {}, QIcon::Selected);
    return icon;
}

int percent(double fraction)
{
    return static_cast<int>(std::clamp(fraction * 100.0, double(INT_MIN), double(INT_MAX)));
}

} // namespace

/// The answers of one slot. They live through all slots of a refresh: after a failed query a row
/// shows what the one before it did.
struct ChangeConfigurationDlg::RowReplies
{
    ReplyBuffer identifier;
    ReplyBuffer owner;
    ReplyBuffer description;
    ReplyBuffer locked;
};

ChangeConfigurationDlg::ChangeConfigurationDlg(IOManager *channel, BackendVersions *versions,
                                               QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::ConfigurationDialog>())
    , m_channel(channel, this)
    , m_versions(versions)
{
    initializeResources();
    m_ui->setupUi(this);
    AccessibleTexts::describeControls(this);
    makeReadableThoughDisabled(m_ui->lineEdit_activeConfig);
    m_lockIcon = untintedIcon(QStringLiteral(":/lock.png"));
    m_unlockIcon = untintedIcon(QStringLiteral(":/unlock.png"));
    m_saveDialog = new ConfigSaveDlg(channel, versions, this);
    m_loadDialog = new ConfigLoadDlg(channel, versions, this);

    m_hasTransfers = VersionGate::hasTransfers(m_versions->interfaceVersion);
    m_ui->widget_load_save->setEnabled(m_hasTransfers);
    m_hasLocks = VersionGate::hasLocks(m_versions->interfaceVersion);
    m_ui->pushButton_lock->setVisible(m_hasLocks);
    m_ui->widget_lct_lock->hide();
    if (m_hasLocks) {
        setMinimumSize(500, 300);
    }
    setUpTable();
}

ChangeConfigurationDlg::~ChangeConfigurationDlg()
{
    if (m_isDoubleClicked) {
        // The table's own code is still under way. It goes on when the signal has been handled.
        m_ui->tableWidget->setParent(nullptr);
        m_ui->tableWidget->deleteLater();
    }
}

void ChangeConfigurationDlg::setUpTable()
{
    QStringList headers{QStringLiteral("Description"), QStringLiteral("Owner"),
                        QStringLiteral("ID")};
    if (m_hasLocks) {
        headers << QStringLiteral("Locked");
    }
    QTableWidget *table = m_ui->tableWidget;
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
    if (!survives(this, [this, &refreshed] { refreshed = refreshList(); }) || refreshed < 0) {
        return -1;
    }
    selectActiveRow();
    focusTable();
    showActiveDescription();
    return exec();
}

int ChangeConfigurationDlg::refreshList()
{
    m_configurations.clear();
    showFreeSpace();
    int count = 0;
    if (!readCount(&count)) {
        MessageBox::critical(this, this, tr("Command Error"), tr("no contact to Controller"));
        return -1;
    }
    QTableWidget *table = m_ui->tableWidget;
    table->setRowCount(count);
    table->clearContents();
    readActiveId();

    RowReplies replies;
    for (int slot = 1; slot <= count; ++slot) {
        m_configurations.append(readSlot(slot, &replies));
        showRow(slot - 1, m_configurations.constLast());
    }

    table->horizontalHeader()->setStretchLastSection(true);
    clearSelection();
    table->sortItems(DescriptionColumn, Qt::AscendingOrder);
    disableRowButtons();
    m_ui->pushButton_exit->setFocus();
    return 0;
}

void ChangeConfigurationDlg::showFreeSpace()
{
    double free = 1.0;
    bool isWarning = false;
    if (VersionGate::reportsFreeSpace(m_versions->interfaceVersion)) {
        succeeded(m_channel.queryDouble(&free, "config free_space"),
                  "Unable to get free space of configuration store");
        isWarning = free <= fullWarningBelow;
    }
    if (isWarning) {
        m_ui->label_error->setText(
            tr("<b><font color=red>configuration store filled %1%; please delete "
               "unnecessary configurations!</font></b>")
                .arg(percent(1.0 - free)));
    }
    m_ui->label_error->setVisible(isWarning);
    m_ui->pushButton_new->setEnabled(free > tooFullBelow);
}

bool ChangeConfigurationDlg::readCount(int *count)
{
    int answer = 0;
    const bool isAnswered = m_channel.queryInt(&answer, "config number_of_configs") == 0;
    *count = std::max(answer, 0);
    return succeeded(isAnswered && isBelievable(answer) ? 0 : -1,
                     "Unable to get number of configurations");
}

void ChangeConfigurationDlg::readActiveId()
{
    ReplyBuffer active;
    // The text of a failed activation; operators know it by this name.
    succeeded(m_channel.queryString(active.data(), "config active_config"),
              "Unable to change the configuration");
    m_activeId = active.text();
}

ConfigEntry ChangeConfigurationDlg::readSlot(int slot, RowReplies *replies)
{
    succeeded(m_channel.queryString(replies->identifier.data(), "config config t%02d", slot),
              "Unable to get configuration information");
    const char *id = replies->identifier.data();
    succeeded(m_channel.queryString(replies->owner.data(), "config owner_of_config %s", id),
              "Unable to get the owner of configuration");
    succeeded(m_channel.queryString(replies->description.data(), "config desc_of_config %s", id),
              "Unable to get description of configuration");
    succeeded(m_channel.queryString(replies->locked.data(), "config config_has_password %s", id),
              "Unable to get whether configuration has pasword");

    ConfigEntry entry;
    entry.identifier = replies->identifier.text();
    entry.description = withoutDoubleQuotes(replies->description.text());
    entry.owner = withoutDoubleQuotes(replies->owner.text());
    entry.locked = m_hasLocks && replies->locked.text() == QLatin1String("yes");
    return entry;
}

void ChangeConfigurationDlg::showRow(int row, const ConfigEntry &entry)
{
    QVarLengthArray<QTableWidgetItem *, 4> items{new DescriptionItem(entry.description),
                                                 new QTableWidgetItem(entry.owner),
                                                 new QTableWidgetItem(entry.identifier)};
    if (m_hasLocks) {
        items << (entry.locked ? new QTableWidgetItem(m_lockIcon, tr("yes"))
                               : new QTableWidgetItem(m_unlockIcon, tr("no")));
    }
    if (entry.identifier == m_activeId) {
        QFont font = items.first()->font();
        font.setWeight(QFont::Bold);
        for (QTableWidgetItem *item : qAsConst(items)) {
            item->setFont(font);
        }
    }
    for (int column = 0; column < items.size(); ++column) {
        m_ui->tableWidget->setItem(row, column, items.at(column));
    }
}

void ChangeConfigurationDlg::clearSelection()
{
    QTableWidget *table = m_ui->tableWidget;
    if (QTableWidgetItem *item = table->item(0, OwnerColumn)) {
        item->setSelected(true);
    }
    // Where the old selection would be now is anybody's guess: nothing stays selected.
    const QModelIndex first = table->model()->index(0, DescriptionColumn);
    const QModelIndex last = table->model()->index(table->rowCount() - 1, IdColumn);
    table->selectionModel()->select({first, last}, QItemSelectionModel::Deselect);
}

void ChangeConfigurationDlg::disableRowButtons()
{
    m_ui->pushButton_delete->setEnabled(false);
    m_ui->pushButton_edit->setEnabled(false);
    m_ui->pushButton_apply->setEnabled(false);
    m_ui->pushButton_lock->setEnabled(false);
}

bool ChangeConfigurationDlg::refreshAndSurvive()
{
    return survives(this, [this] { refreshList(); });
}

void ChangeConfigurationDlg::selectActiveRow()
{
    QTableWidget *table = m_ui->tableWidget;
    if (table->rowCount() == 0) {
        return;
    }
    int activeRow = 0;
    if (table->rowCount() > 1 && !m_activeId.isEmpty()) {
        while (activeRow < table->rowCount() && textAt(activeRow, IdColumn) != m_activeId) {
            ++activeRow;
        }
    }
    table->setCurrentCell(activeRow,
                          DescriptionColumn); // past the last row there is nothing to make current
    focusTable();
}

void ChangeConfigurationDlg::showActiveDescription()
{
    m_ui->lineEdit_activeConfig->clear();
    const auto active =
        std::find_if(m_configurations.cbegin(), m_configurations.cend(),
                     [this](const ConfigEntry &entry) { return entry.identifier == m_activeId; });
    if (active != m_configurations.cend()) {
        m_ui->lineEdit_activeConfig->setText(active->description);
        m_ui->lineEdit_activeConfig->home(false); // the beginning says most
    }
}

void ChangeConfigurationDlg::focusTable()
{
    m_ui->tableWidget->setFocus(Qt::OtherFocusReason);
}

void ChangeConfigurationDlg::on_pushButton_apply_clicked()
{
    const int row = currentRow();
    if (row < 0) {
        return;
    }
    bool isActivated = false;
    const auto activateRow = [this, row, &isActivated] { isActivated = activate(row); };
    if (survives(this, activateRow) && isActivated && refreshAndSurvive()) {
        m_ui->tableWidget->selectRow(row);
        focusTable();
        showActiveDescription();
        selectActiveRow();
    }
}

bool ChangeConfigurationDlg::activate(int row)
{
    m_channel.setTimeout(0, slowCommandMs, 0);
    if (!succeeded(m_channel.sendCommand("config active_config %s",
                                         textAt(row, IdColumn).toLatin1().constData()),
                   "Unable to change the configuration")) {
        return false;
    }
    // Only the answering counts: a controller that has just switched says here whether it is well.
    ReplyBuffer unused;
    succeeded(m_channel.queryString(unused.data(), "config active_config"),
              "Unable to retrieve the active configuration");
    succeeded(m_channel.queryString(unused.data(), "system hostname"),
              "Unable to get the system hostname");
    succeeded(m_channel.queryString(unused.data(), "config desc"),
              "Unable to get configuration description");
    HostMessages::announceActiveConfigurationChanged(&m_channel);
    return true;
}

void ChangeConfigurationDlg::on_pushButton_delete_clicked()
{
    const int row = currentRow();
    const QString id = textAt(row, IdColumn);
    // In lower case here, with case in the rule that enables the button: a configuration called
    // "Standard" can be chosen for deletion, but never is.
    const bool isStandard = id.toLower() == QLatin1String(Identifiers::standard);
    const bool isLocked = m_hasLocks && textAt(row, LockedColumn) == QLatin1String("yes");
    if (row < 0 || isStandard || isLocked) {
        return;
    }
    const MessageBox::Button answer =
        MessageBox::warning(this, this, tr("Warning"),
                            tr("You are about to delete the configuration '%1' owned by '%2'.")
                                .arg(textAt(row, DescriptionColumn), textAt(row, OwnerColumn)),
                            QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
    if (answer == QMessageBox::NoButton) {
        return;
    }
    if (answer != QMessageBox::Ok) {
        focusTable();
        return;
    }
    if (survives(this, [this, &id] { deleteConfiguration(id); }) && refreshAndSurvive()) {
        showActiveDescription();
        selectActiveRow();
    }
}

void ChangeConfigurationDlg::deleteConfiguration(const QString &identifier)
{
    m_channel.setTimeout(0, slowCommandMs, 1);
    ReplyBuffer unused;
    succeeded(m_channel.sendCommandReply(unused.data(), "veltra2 config delete_config %s",
                                         identifier.toLatin1().constData()),
              "Unable to delete configuration");
    HostMessages::announceActiveConfigurationChanged(&m_channel);
}

void ChangeConfigurationDlg::on_pushButton_new_clicked()
{
    const int row = currentRow();
    const auto result =
        runModalDialog(new NewConfigurationDlg(m_channel.host(), this),
                       [](NewConfigurationDlg &dialog) { return dialog.update_and_exec(); });
    if (!result || !refreshAndSurvive()) {
        return;
    }
    showActiveDescription();
    if (*result == QDialog::Accepted) {
        selectActiveRow();
    } else {
        m_ui->tableWidget->setCurrentCell(row, DescriptionColumn);
        focusTable();
    }
}

void ChangeConfigurationDlg::on_pushButton_edit_clicked()
{
    const int row = currentRow();
    if (row < 0) {
        return;
    }
    if (runEditDialog(textAt(row, IdColumn)) && refreshAndSurvive()) {
        m_ui->tableWidget->setCurrentCell(row, IdColumn);
        focusTable();
    }
}

void ChangeConfigurationDlg::on_pushButton_lock_clicked()
{
    if (!m_hasLocks) {
        return;
    }
    const int row = currentRow();
    const QString id = textAt(row, IdColumn);
    const auto run = [&id](auto &dialog) { return dialog.update_and_exec(id); };
    // Compared with the untranslated texts, so that the initial "Lo&ck" opens nothing.
    const QString buttonText = m_ui->pushButton_lock->text();
    bool isAlive = true;
    if (buttonText == QLatin1String("L&ock")) {
        isAlive = runModalDialog(new LockConfigDlg(m_channel.host(), this), run).has_value();
    } else if (buttonText == QLatin1String("Unl&ock")) {
        isAlive = runModalDialog(new UnlockConfigDlg(m_channel.host(), this), run).has_value();
    }
    if (isAlive && refreshAndSurvive()) {
        m_ui->tableWidget->selectRow(row);
        focusTable();
    }
}

void ChangeConfigurationDlg::on_pushButton_load_clicked()
{
    m_loadDialog->setConfigurationList(m_configurations);
    if (survives(this, [this] { m_loadDialog->openAndExec(); }) && refreshAndSurvive()) {
        showActiveDescription();
        selectActiveRow();
    }
}

void ChangeConfigurationDlg::on_pushButton_save_clicked()
{
    m_saveDialog->setConfigurationList(m_configurations);
    if (survives(this, [this] { m_saveDialog->runSaveDialog(); })) {
        selectActiveRow();
    }
}

void ChangeConfigurationDlg::on_tableWidget_itemSelectionChanged()
{
    const int row = currentRow();
    if (row < 0) {
        return;
    }
    const QString id = textAt(row, IdColumn);
    const bool isActive = id == m_activeId;
    QString lockState;
    if (m_hasLocks) {
        // The table shows translated words; only the untranslated ones count.
        lockState = textAt(row, LockedColumn);
        if (lockState == QLatin1String("yes")) {
            m_ui->pushButton_lock->setText(tr("Unl&ock"));
        } else if (lockState == QLatin1String("no")) {
            m_ui->pushButton_lock->setText(tr("L&ock"));
        }
        m_ui->pushButton_lock->setEnabled(isActive);
    }
    const bool isUnlocked = lockState != QLatin1String("yes");
    m_ui->pushButton_delete->setEnabled(id != QLatin1String(Identifiers::standard) && isUnlocked);
    m_ui->pushButton_apply->setEnabled(!isActive);
    m_ui->pushButton_edit->setEnabled(isUnlocked);
}

void ChangeConfigurationDlg::on_tableWidget_cellDoubleClicked(int row, int column)
{
    if (row < 0 || column < 0) {
        return;
    }
    m_isDoubleClicked = true;
    if (survives(this, [this, row] { activateLockedOrEdit(row); })) {
        m_isDoubleClicked = false;
    }
}

void ChangeConfigurationDlg::activateLockedOrEdit(int row)
{
    if (m_hasLocks && textAt(row, LockedColumn) == QLatin1String("yes")) {
        on_pushButton_apply_clicked();
        return;
    }
    if (runEditDialog(textAt(row, IdColumn)) && refreshAndSurvive()) {
        m_ui->tableWidget->setCurrentCell(row, DescriptionColumn);
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
    QTableWidget *table = m_ui->tableWidget;
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
               new EditConfigDlg(m_channel.host(), this),
               [&identifier](EditConfigDlg &dialog) { return dialog.update_and_exec(identifier); })
        .has_value();
}

int ChangeConfigurationDlg::currentRow() const
{
    return m_ui->tableWidget->currentRow();
}

QString ChangeConfigurationDlg::textAt(int row, int column) const
{
    const QTableWidgetItem *item = m_ui->tableWidget->item(row, column);
    return item ? item->text() : QString();
}

bool ChangeConfigurationDlg::succeeded(int result, const char *errorText)
{
    return HostMessages::succeededOrReported(result, &m_channel, errorText);
}

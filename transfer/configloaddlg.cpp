#include "transfer/configloaddlg.h"

#include "ui_configloaddlg.h"

#include "backup/backupschema.h"
#include "channel/accessibletexts.h"
#include "channel/filedialog.h"
#include "channel/hostmessages.h"
#include "channel/identifiers.h"
#include "channel/messagebox.h"
#include "channel/readabletable.h"
#include "channel/survives.h"
#include "transfer/backuprestore.h"
#include "transfer/configurationimport.h"
#include "transfer/configurationupload.h"
#include "transfer/lockstates.h"
#include "transfer/selectedcells.h"

#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QPointer>
#include <QResizeEvent>

#include <algorithm>
#include <exception>

namespace {

enum Column { DescriptionColumn, OwnerColumn, IdentifierColumn, StatusColumn };

constexpr int rowHeight = 20; // pixels

// What openAndExec() returns besides the codes of a restore and the result of the dialog.
constexpr int nothingToShow = 1;
constexpr int restoreThrew = 10;

// What validateBackupFile() returns.
constexpr int schemaUnusable = -1;
constexpr int noBackup = 0;
constexpr int isBackup = 1;

} // namespace

ConfigLoadDlg::ConfigLoadDlg(IOManager *channel, BackendVersions *versions, QWidget *parent)
    : QDialog(parent)
    , m_ui(new Ui::ConfigLoadDlgClass)
    , m_channel(channel, this)
    , m_versions(versions)
    , m_lastDirectory(QDir::homePath())
{
    m_ui->setupUi(this);
    AccessibleTexts::describeControls(this);
    ReadableTable::prepare(m_ui->tableWidget, rowHeight);
    m_ui->tableWidget->horizontalHeader()->setSectionsClickable(false);
    connect(this, &QDialog::rejected, this, &ConfigLoadDlg::on_pushButton_exit_clicked);
}

ConfigLoadDlg::~ConfigLoadDlg() = default;

void ConfigLoadDlg::setConfigurationList(const ConfigEntryList &configurations)
{
    m_configurations = configurations;
}

int ConfigLoadDlg::openAndExec()
{
    const QString path =
        FileDialog::openFileName(this, parentWidget(), tr("Load Configurations"), m_lastDirectory,
                                 tr("Configuration file (*.dat *.xml *.*)"));
    if (path.isEmpty()) {
        return nothingToShow;
    }
    m_lastDirectory = QFileInfo(path).absolutePath();

    const QPointer<ConfigLoadDlg> watched(this);
    const int verdict = validateBackupFile(path);
    if (!watched) {
        return verdict;
    }
    if (verdict == schemaUnusable) {
        HostMessages::reportError(
            &m_channel, QStringLiteral("Error: Unable to validate backup or configuration file"));
        return verdict;
    }
    if (verdict == noBackup) {
        return loadConfigurationFile(path);
    }
    try {
        return restoreFromBackupFile(path);
    } catch (const std::exception &) {
        // The connection broke. No exception may reach the event loop that called.
        return restoreThrew;
    }
}

int ConfigLoadDlg::validateBackupFile(const QString &path)
{
    switch (BackupSchema::validate(path)) {
    case BackupSchema::Verdict::SchemaUnusable:
        MessageBox::critical(this, this, tr("Development error"), tr("XMLSchema is invalid!"));
        return schemaUnusable;
    case BackupSchema::Verdict::NoBackup:
        return noBackup;
    case BackupSchema::Verdict::Backup:
        break;
    }
    return isBackup;
}

int ConfigLoadDlg::restoreFromBackupFile(const QString &path)
{
    return BackupRestore(&m_channel, m_versions, this, path).run(m_configurations);
}

int ConfigLoadDlg::loadConfigurationFile(const QString &path)
{
    m_ui->lineEdit_path->setText(path);
    if (!upload(path) || !readImportItems()) {
        return nothingToShow;
    }
    fillTable();
    // An empty table has no selection whose change would set the buttons.
    on_tableWidget_itemSelectionChanged();
    on_pushButton_selectAll_clicked();
    return exec();
}

bool ConfigLoadDlg::upload(const QString &path)
{
    // What an earlier upload left unfinished must not mix with this one.
    m_channel.sendCommand("system upload cancel");
    if (ConfigurationUpload(&m_channel).run(path) != ConfigurationUpload::success) {
        HostMessages::reportError(&m_channel,
                                  QStringLiteral("Error: Unable to load configurations"));
        return false;
    }
    return true;
}

bool ConfigLoadDlg::readImportItems()
{
    switch (queryImportItems(&m_channel, &m_importItems)) {
    case ImportOffer::NoAnswer:
        HostMessages::reportError(&m_channel,
                                  QStringLiteral("Error: Unable to get loaded configurations"));
        return false;
    case ImportOffer::NotConfigurations:
        HostMessages::reportError(
            &m_channel, QStringLiteral("Error: Configuration file can not be recognized"));
        return false;
    case ImportOffer::Read:
        break;
    }
    const auto isBase = [](const ImportItem &item) {
        return item.identifier == QLatin1String(Identifiers::base);
    };
    m_importItems.erase(std::remove_if(m_importItems.begin(), m_importItems.end(), isBase),
                        m_importItems.end());
    return true;
}

void ConfigLoadDlg::fillTable()
{
    const LockStates existing = lockStates(m_configurations);
    bool isAnyLocked = false;
    m_ui->tableWidget->clearContents();
    m_ui->tableWidget->setRowCount(m_importItems.size());
    for (int row = 0; row < m_importItems.size(); ++row) {
        const bool isLocked = existing.value(m_importItems.at(row).identifier);
        isAnyLocked = isAnyLocked || isLocked;
        fillRow(row, m_importItems.at(row), isLocked);
    }
    m_ui->tableWidget->setColumnHidden(StatusColumn, !isAnyLocked);
    m_ui->tableWidget->setFocus();
}

void ConfigLoadDlg::fillRow(int row, const ImportItem &item, bool isLocked)
{
    const auto setCell = [this, row, isLocked](Column column, const QString &text) {
        auto *cell = new QTableWidgetItem(text);
        if (isLocked) {
            cell->setFlags(cell->flags() & ~(Qt::ItemIsSelectable | Qt::ItemIsEnabled));
        }
        m_ui->tableWidget->setItem(row, column, cell);
    };
    setCell(DescriptionColumn, item.description);
    setCell(OwnerColumn, item.owner);
    setCell(IdentifierColumn, item.identifier);
    setCell(StatusColumn, isLocked ? tr("locked") : QString());
}

void ConfigLoadDlg::on_pushButton_selectAll_clicked()
{
    m_ui->tableWidget->selectAll();
    m_ui->tableWidget->setFocus();
}

void ConfigLoadDlg::on_pushButton_clearSelection_clicked()
{
    m_ui->tableWidget->clearSelection();
}

void ConfigLoadDlg::on_pushButton_load_clicked()
{
    const auto import = [this] {
        ConfigurationImport(&m_channel, lockStates(m_configurations), this)
            .run(selectedIdentifiers());
    };
    if (survives(this, import)) {
        accept();
    }
}

QStringList ConfigLoadDlg::selectedIdentifiers() const
{
    QStringList identifiers;
    for (int row = 0; row < m_ui->tableWidget->rowCount(); ++row) {
        if (m_ui->tableWidget->item(row, DescriptionColumn)->isSelected()) {
            identifiers << m_ui->tableWidget->item(row, IdentifierColumn)->text();
        }
    }
    return identifiers;
}

void ConfigLoadDlg::on_pushButton_exit_clicked()
{
    accept();
}

void ConfigLoadDlg::on_tableWidget_itemSelectionChanged()
{
    if (m_ui->tableWidget->columnCount() == 0) {
        return;
    }
    // Three cells make a row, although a row has a fourth while "Status" is shown: the count then
    // runs ahead, and "Select all" may be off before every row is selected. It must stay so.
    const int rows = selectedCellCount(m_ui->tableWidget) / 3;
    m_ui->pushButton_clearSelection->setEnabled(rows >= 1);
    m_ui->pushButton_load->setEnabled(rows >= 1);
    m_ui->pushButton_selectAll->setEnabled(rows < m_ui->tableWidget->rowCount());
}

void ConfigLoadDlg::resizeEvent(QResizeEvent *event)
{
    const int columns = m_ui->tableWidget->columnCount();
    for (int column = 0; column < columns; ++column) {
        m_ui->tableWidget->setColumnWidth(column, m_ui->tableWidget->width() / columns - 2);
    }
    QDialog::resizeEvent(event);
}

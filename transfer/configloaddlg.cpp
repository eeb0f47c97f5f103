#include "transfer/configloaddlg.h"

#include "backup/backupschema.h"
#include "channel/identifiers.h"
#include "transfer/backuprestore.h"
#include "transfer/configurationimport.h"
#include "transfer/configurationupload.h"
#include "transfer/lockstates.h"
#include "widgets/accessibletexts.h"
#include "widgets/displayfield.h"
#include "widgets/filedialog.h"
#include "widgets/messagebox.h"
#include "widgets/readabletable.h"

#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QResizeEvent>

#include <exception>

namespace {

enum Column { DescriptionColumn, OwnerColumn, IdentifierColumn, StatusColumn };

constexpr int rowHeight = 20; // pixels

// What openAndExec() returns besides the codes of a restore and the result of the dialog.
constexpr int nothingToShow = 1;
constexpr int restoreThrew = 10;
constexpr int schemaUnusable = -1;

} // namespace

ConfigLoadDlg::ConfigLoadDlg(IOManager *channel, BackendVersions *versions, QWidget *parent)
    : QDialog(parent)
    , m_controller(channel, this)
    , m_versions(versions)
    , m_lastDirectory(QDir::homePath())
{
    m_ui.setupUi(this);
    AccessibleTexts::describeControls(this);
    ReadableTable::prepare(m_ui.tableWidget, rowHeight);
    m_ui.tableWidget->horizontalHeader()->setSectionsClickable(false);
    m_ui.tableWidget->setColumnHidden(StatusColumn, true);
    connect(this, &QDialog::rejected, this, &ConfigLoadDlg::on_pushButton_exit_clicked);
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

    switch (BackupSchema::validate(path)) {
    case BackupSchema::Verdict::SchemaUnusable:
        return refuseToValidate();
    case BackupSchema::Verdict::Backup:
        return restoreFromBackupFile(path);
    case BackupSchema::Verdict::NoBackup:
        break;
    }
    return loadConfigurationFile(path);
}

int ConfigLoadDlg::refuseToValidate()
{
    if (MessageBox::show(QMessageBox::Critical, this, this, tr("Development error"),
                         tr("XMLSchema is invalid!"))
        != QMessageBox::NoButton) {
        m_controller.report(
            QStringLiteral("Error: Unable to validate backup or configuration file"));
    }
    return schemaUnusable;
}

int ConfigLoadDlg::restoreFromBackupFile(const QString &path)
{
    try {
        return restoreBackup(m_controller, m_versions, this, path, m_configurations);
    } catch (const std::exception &) {
        // The connection broke. No exception may reach the event loop that called.
        return restoreThrew;
    }
}

int ConfigLoadDlg::loadConfigurationFile(const QString &path)
{
    showAsDisplay(m_ui.lineEdit_path);
    m_ui.lineEdit_path->setText(path);
    // What an earlier upload left unfinished must not mix with this one.
    m_controller.cancelUpload();
    if (!m_controller.reportUnless(uploadConfigurationFile(m_controller, path) == 0,
                                   "Error: Unable to load configurations")
        || !readImportItems()) {
        return nothingToShow;
    }
    fillTable();
    // An empty table has no selection whose change would set the buttons.
    on_tableWidget_itemSelectionChanged();
    on_pushButton_selectAll_clicked();
    return exec();
}

bool ConfigLoadDlg::readImportItems()
{
    QVector<QByteArray> lines;
    const ImportOffer offer = queryImportItems(m_controller, &lines);
    if (!m_controller.reportUnless(offer != ImportOffer::NoAnswer,
                                   "Error: Unable to get loaded configurations")
        || !m_controller.reportUnless(offer != ImportOffer::NotConfigurations,
                                      "Error: Configuration file can not be recognized")) {
        return false;
    }
    m_importItems.clear();
    for (const QByteArray &line : qAsConst(lines)) {
        const ImportItem item = parseImportItem(QString::fromLatin1(line));
        if (item.identifier != QLatin1String(Identifiers::base)) {
            m_importItems << item;
        }
    }
    return true;
}

void ConfigLoadDlg::fillTable()
{
    const LockStates existing = lockStates(m_configurations);
    bool isAnyLocked = false;
    m_ui.tableWidget->clearContents();
    m_ui.tableWidget->setRowCount(m_importItems.size());
    for (int row = 0; row < m_importItems.size(); ++row) {
        const bool isLocked = existing.value(m_importItems.at(row).identifier);
        isAnyLocked = isAnyLocked || isLocked;
        fillRow(row, m_importItems.at(row), isLocked);
    }
    m_ui.tableWidget->setColumnHidden(StatusColumn, !isAnyLocked);
    m_ui.tableWidget->setFocus();
}

void ConfigLoadDlg::fillRow(int row, const ImportItem &item, bool isLocked)
{
    const auto setCell = [this, row, isLocked](Column column, const QString &text) {
        auto *cell = new QTableWidgetItem(text);
        if (isLocked) {
            cell->setFlags(cell->flags() & ~(Qt::ItemIsSelectable | Qt::ItemIsEnabled));
        }
        m_ui.tableWidget->setItem(row, column, cell);
    };
    setCell(DescriptionColumn, item.description);
    setCell(OwnerColumn, item.owner);
    setCell(IdentifierColumn, item.identifier);
    setCell(StatusColumn, isLocked ? tr("locked") : QString());
}

void ConfigLoadDlg::on_pushButton_selectAll_clicked()
{
    m_ui.tableWidget->selectAll();
    m_ui.tableWidget->setFocus();
}

void ConfigLoadDlg::on_pushButton_clearSelection_clicked()
{
    m_ui.tableWidget->clearSelection();
}

void ConfigLoadDlg::on_pushButton_load_clicked()
{
    if (m_controller.ownerSurvives([this] {
            importConfigurations(m_controller, selectedIdentifiers(), lockStates(m_configurations),
                                 this);
        })) {
        accept();
    }
}

QStringList ConfigLoadDlg::selectedIdentifiers() const
{
    QStringList identifiers;
    for (int row = 0; row < m_ui.tableWidget->rowCount(); ++row) {
        if (m_ui.tableWidget->item(row, DescriptionColumn)->isSelected()) {
            identifiers << m_ui.tableWidget->item(row, IdentifierColumn)->text();
        }
    }
    return identifiers;
}

void ConfigLoadDlg::on_tableWidget_itemSelectionChanged()
{
    if (m_ui.tableWidget->columnCount() == 0) {
        return;
    }
    // Three cells make a row, although a row has a fourth while "Status" is shown: the count then
    // runs ahead, and "Select all" may be off before every row is selected. It must stay so.
    const int rows = m_ui.tableWidget->selectedItems().size() / 3;
    m_ui.pushButton_clearSelection->setEnabled(rows >= 1);
    m_ui.pushButton_load->setEnabled(rows >= 1);
    m_ui.pushButton_selectAll->setEnabled(rows < m_ui.tableWidget->rowCount());
}

void ConfigLoadDlg::resizeEvent(QResizeEvent *event)
{
    const int columns = m_ui.tableWidget->columnCount();
    for (int column = 0; column < columns; ++column) {
        m_ui.tableWidget->setColumnWidth(column, m_ui.tableWidget->width() / columns - 2);
    }
    QDialog::resizeEvent(event);
}

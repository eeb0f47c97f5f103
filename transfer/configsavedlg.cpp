#include "transfer/configsavedlg.h"

#include "channel/configurationsmessagereceiver.h"
#include "transfer/automaticbackup.h"
#include "transfer/configurationsave.h"
#include "transfer/manualbackup.h"
#include "widgets/accessibletexts.h"
#include "widgets/filedialog.h"
#include "widgets/readabletable.h"

#include <QDir>
#include <QFileInfo>
#include <QResizeEvent>
#include <QTimer>

namespace {

enum Column { DescriptionColumn, OwnerColumn, IdentifierColumn };

constexpr int rowHeight = 28;       // pixels
constexpr double columnShare = 0.3; // of the dialog's width
constexpr int automaticBackupDelayMs = 2000;

} // namespace

ConfigSaveDlg::ConfigSaveDlg(IOManager *channel, BackendVersions *versions, QWidget *parent)
    : QDialog(parent)
    , m_controller(channel, this)
    , m_versions(versions)
    , m_lastDirectory(QDir::homePath())
    , m_messageReceiver(new ConfigurationsMessagereceiver(this))
{
    m_ui.setupUi(this);
    AccessibleTexts::describeControls(this);
    ReadableTable::prepare(m_ui.tableWidget_selectConfigs, rowHeight);
    m_ui.tableWidget_selectConfigs->verticalHeader()->setMinimumSectionSize(rowHeight);
    m_ui.tableWidget_selectConfigs->horizontalHeader()->setSectionsClickable(false);
    connect(this, &QDialog::rejected, this, &ConfigSaveDlg::on_pushButton_exit_clicked);

    m_controller.addMessageReceiver(m_messageReceiver);
    connect(m_messageReceiver, &ConfigurationsMessagereceiver::sendModuleParentVersion, this,
            &ConfigSaveDlg::onSendModulParentVersion);
    QTimer::singleShot(automaticBackupDelayMs, this, &ConfigSaveDlg::doAutomaticBackup);
}

ConfigSaveDlg::~ConfigSaveDlg()
{
    m_controller.removeMessageReceiver(m_messageReceiver);
}

void ConfigSaveDlg::runSaveDialog()
{
    auto *table = m_ui.tableWidget_selectConfigs;
    const bool isBackup = m_ui.checkBox_allSettings->isChecked();
    if (isBackup) {
        table->selectAll();
    }
    m_ui.widget_selectConfigs->setEnabled(!isBackup);
    fillTable();
    showAvailability(!m_configurations.isEmpty());
    table->setFocus();
    table->selectAll();
    table->setFocus();
    m_ui.checkBox_allSettings->setChecked(true);
    exec();
}

void ConfigSaveDlg::onSendModulParentVersion(const QString &version)
{
    m_hostVersion = version;
    m_isBackupAllowed =
        version.startsWith(QLatin1String("v3.")) || version.startsWith(QLatin1String("v4."));
}

void ConfigSaveDlg::doAutomaticBackup()
{
    if (!m_isBackupAllowed) {
        return;
    }
    m_controller.ownerSurvives([this] {
        if (makeBackupOfTheDay(m_controller, m_versions, m_hostVersion)) {
            m_todaysBackupExists = true;
        }
    });
}

void ConfigSaveDlg::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    auto *table = m_ui.tableWidget_selectConfigs;
    const int width = static_cast<int>(columnShare * event->size().width());
    for (int column = 0; column < table->columnCount(); ++column) {
        table->setColumnWidth(column, width);
    }
}

void ConfigSaveDlg::on_pushButton_selectAll_clicked()
{
    m_ui.tableWidget_selectConfigs->selectAll();
    m_ui.tableWidget_selectConfigs->setFocus();
}

void ConfigSaveDlg::on_pushButton_clearSelection_clicked()
{
    m_ui.tableWidget_selectConfigs->clearSelection();
}

void ConfigSaveDlg::on_pushButton_save_clicked()
{
    if (m_ui.checkBox_allSettings->isChecked()) {
        m_controller.ownerSurvives([this] { backUpByHand(m_controller, m_versions, this); });
        return;
    }
    const QStringList identifiers = selectedIdentifiers();
    if (identifiers.isEmpty()) {
        return;
    }
    update();
    if (m_controller.ownerSurvives([&] { chooseFileAndSave(identifiers); })) {
        m_ui.tableWidget_selectConfigs->setFocus();
    }
}

void ConfigSaveDlg::on_tableWidget_selectConfigs_itemSelectionChanged()
{
    const auto *table = m_ui.tableWidget_selectConfigs;
    if (table->columnCount() == 0) {
        return;
    }
    const int selectedRows = table->selectedItems().size() / table->columnCount();
    m_ui.pushButton_clearSelection->setEnabled(selectedRows >= 1);
    m_ui.pushButton_save->setEnabled(selectedRows >= 1);
    m_ui.pushButton_selectAll->setEnabled(selectedRows < table->rowCount());
}

void ConfigSaveDlg::on_checkBox_allSettings_stateChanged(int state)
{
    const bool isBackup = state == Qt::Checked;
    if (isBackup) {
        m_ui.tableWidget_selectConfigs->selectAll();
    }
    m_ui.widget_selectConfigs->setEnabled(!isBackup);
}

void ConfigSaveDlg::fillTable()
{
    auto *table = m_ui.tableWidget_selectConfigs;
    table->clearContents();
    table->setRowCount(m_configurations.size());
    for (int row = 0; row < m_configurations.size(); ++row) {
        const ConfigEntry &entry = m_configurations.at(row);
        table->setItem(row, DescriptionColumn, new QTableWidgetItem(entry.description));
        table->setItem(row, OwnerColumn, new QTableWidgetItem(entry.owner));
        table->setItem(row, IdentifierColumn, new QTableWidgetItem(entry.identifier));
    }
}

void ConfigSaveDlg::showAvailability(bool isAvailable)
{
    m_ui.label_error->setText(
        isAvailable ? QString() : tr("<b><font color=red>No configuration available!</font></b>"));
    m_ui.label_error->setVisible(!isAvailable);
    for (QWidget *const widget : std::initializer_list<QWidget *>{
             m_ui.label_selectConfigs, m_ui.tableWidget_selectConfigs, m_ui.pushButton_selectAll,
             m_ui.pushButton_clearSelection, m_ui.pushButton_save}) {
        widget->setEnabled(isAvailable);
    }
}

QStringList ConfigSaveDlg::selectedIdentifiers() const
{
    const auto *table = m_ui.tableWidget_selectConfigs;
    // The list may have been replaced while the dialog shows the one before.
    const int rows = qMin(table->rowCount(), m_configurations.size());
    QStringList identifiers;
    for (int row = 0; row < rows; ++row) {
        const QTableWidgetItem *item = table->item(row, DescriptionColumn);
        if (item && item->isSelected()) {
            identifiers << m_configurations.at(row).identifier;
        }
    }
    return identifiers;
}

void ConfigSaveDlg::chooseFileAndSave(const QStringList &identifiers)
{
    const QString fileName =
        FileDialog::saveFileName(this, this, tr("Save configuration(s)"),
                                 m_lastDirectory + QLatin1String("/configuration.dat"),
                                 tr("Configuration file (*.dat)"), QStringLiteral(".dat"));
    if (!fileName.isEmpty()) {
        m_lastDirectory = QFileInfo(fileName).absolutePath();
        saveConfigurations(m_controller, identifiers, fileName, this);
    }
}

#include "host/tour/chapters.h"

#include "host/simulatedlink.h"
#include "host/tour/dialogdriver.h"
#include "host/tour/listvisit.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

const char *const loadDialog = "ConfigLoadDlgClass";
const char *const saveTable = "tableWidget_selectConfigs";

/// Saves configurations and a backup, changes the controller, and brings both back.
class FilesVisit
{
public:
    explicit FilesVisit(Tour &tour)
        : m_tour(tour)
    {
    }

    void run();

private:
    void removePasswords();
    void saveTwoConfigurations();
    void makeManualBackup();
    void refuseRestoreOverLock();
    void loadConfigurations();
    void wreckController();
    void restoreBackup();

    void chooseTwo(DialogDriver &dialog);
    ModalStep chooseBackup(const QString &pictureName = {}) const;
    void expectFile(const QString &path);
    bool hasTwiceTheData(const QString &identifier) const;

    Tour &m_tour;
    const QString m_dataFile = QDir::home().filePath(QStringLiteral("cells.dat"));
    const QString m_backupFile = QDir::home().filePath(QStringLiteral("tracker-lab2.xml"));
    QStringList m_saved;
    ControllerState m_stateAtBackup;
};

void FilesVisit::run()
{
    ListVisit::startOver(m_tour);
    removePasswords();
    saveTwoConfigurations();
    makeManualBackup();
    refuseRestoreOverLock();
    loadConfigurations();
    wreckController();
    restoreBackup();
}

// A controller with a locked configuration refuses to be restored, and a backup has no passwords.
void FilesVisit::removePasswords()
{
    ControllerState state = m_tour.controllerState();
    for (Configuration &configuration : state.configurations) {
        configuration.password = {};
    }
    m_tour.link().controller().setState(state);
}

void FilesVisit::saveTwoConfigurations()
{
    m_tour.step(QStringLiteral("Save two configurations into a file"));
    const ControllerState before = m_tour.controllerState();
    const auto save = [&](DialogDriver &dialog) {
        dialog.picture(QStringLiteral("save-backup-mode"));
        m_tour.expect(dialog.isTicked("checkBox_allSettings"), "does not open in backup mode");
        dialog.click("checkBox_allSettings");
        chooseTwo(dialog);
        dialog.picture(QStringLiteral("save-two"));
        const QString done =
            QStringLiteral("Configuration data successfully written to the file\n%1")
                .arg(m_dataFile);
        const QVector<ModalStep> steps{
            m_tour.fileDialog("Save configuration(s)", m_dataFile,
                              QStringLiteral("save-file-name")),
            m_tour.box("Save Configurations", done, QMessageBox::Ok, QStringLiteral("save-done"))};
        m_tour.pictureWindowDuring("system download 700", QStringLiteral("host-during-download"),
                                   [&] { dialog.click("pushButton_save", steps); });
        dialog.click("pushButton_exit");
    };
    ListVisit::open(m_tour, [&](DialogDriver &list) {
        list.click("pushButton_save", {m_tour.dialog(ListVisit::saveDialog, save)});
        ListVisit::exit(list);
    });
    expectFile(m_dataFile);
    m_tour.expect(m_tour.controllerState() == before, "saving has changed the controller");
}

void FilesVisit::makeManualBackup()
{
    m_tour.step(QStringLiteral("Back up the whole controller"));
    m_stateAtBackup = m_tour.controllerState();
    const auto backUp = [&](DialogDriver &dialog) {
        dialog.click("pushButton_save",
                     {m_tour.fileDialog("Backup all settings", m_backupFile),
                      m_tour.box("Success", "Backup created!", QMessageBox::Ok)});
        dialog.click("pushButton_exit");
    };
    ListVisit::open(m_tour, [&](DialogDriver &list) {
        list.click("pushButton_save", {m_tour.dialog(ListVisit::saveDialog, backUp)});
        ListVisit::exit(list);
    });
    expectFile(m_backupFile);
}

void FilesVisit::refuseRestoreOverLock()
{
    m_tour.step(QStringLiteral("A locked configuration forbids a restore"));
    m_tour.link().controller().setState(ControllerState::sample());
    const QString refusal = QStringLiteral("Cannot load backup from file '%1' !\n"
                                           " One or more Configurations are locked.")
                                .arg(m_backupFile);
    ListVisit::open(m_tour, [&](DialogDriver &list) {
        list.click("pushButton_load",
                   {chooseBackup(QStringLiteral("load-file-name")),
                    m_tour.box("Cannot load backup", refusal, QMessageBox::Ok,
                               QStringLiteral("restore-refused"))});
        ListVisit::exit(list);
    });
    m_tour.expect(m_tour.controllerState() == ControllerState::sample(),
                  "the refused restore has changed the controller");
}

void FilesVisit::loadConfigurations()
{
    m_tour.step(QStringLiteral("Load the saved configurations beside the old ones"));
    m_tour.link().controller().setState(m_stateAtBackup);
    const int count = m_stateAtBackup.configurations.size();
    const auto load = [&](DialogDriver &dialog) {
        m_tour.expectEqual(dialog.rowCount("tableWidget"), m_saved.size(), "number of rows");
        m_tour.expectEqual(dialog.text("lineEdit_path"), m_dataFile, "shown path");
        dialog.picture(QStringLiteral("load"));
        dialog.click("pushButton_load",
                     {m_tour.box("Load Configurations", "Loading configuration successfully.",
                                 QMessageBox::Ok)});
    };
    ListVisit::open(m_tour, [&](DialogDriver &list) {
        list.click("pushButton_load",
                   {m_tour.fileDialog("Load Configurations", m_dataFile),
                    m_tour.dialog(loadDialog, load)});
        m_tour.expectEqual(m_tour.controllerState().configurations.size(), count + m_saved.size(),
                           "number of configurations");
        list.picture(QStringLiteral("list-loaded"));
        ListVisit::exit(list);
    });
    for (const QString &identifier : qAsConst(m_saved)) {
        m_tour.expect(hasTwiceTheData(identifier), "the loaded data differ from the saved ones");
    }
}

void FilesVisit::wreckController()
{
    ControllerState state = m_stateAtBackup;
    state.configurations.resize(state.configurations.size() / 2);
    state.configurations.first().description = "not what it was";
    state.activeIdentifier = state.configurations.first().identifier;
    state.baseData.clear();
    state.hostName = "somewhere-else";
    state.net = "10.0.0.1/8";
    state.domainName = state.nameServer = state.ntpServer = "none";
    for (CascadeSlave &slave : state.slaves) {
        slave.isConnected = slave.isAvailable && !slave.isConnected;
    }
    m_tour.link().controller().setState(state);
}

void FilesVisit::restoreBackup()
{
    m_tour.step(QStringLiteral("Restore the backup onto a controller that has lost nearly all"));
    const ModalStep confirmation = m_tour.box(
        "Confirmation",
        "Restoring this backup overwrites all settings and already existing configurations.\n\n"
        "Any previous settings will get lost!\n\nProceed?",
        QMessageBox::Yes, QStringLiteral("restore-confirmation"));
    const QString network =
        QStringLiteral("Hostname and ip settings can be restored. After reboot the %1 might not "
                       "be reachable via network due to wrong network settings.\n\nRestore?")
            .arg(QString::fromLatin1(m_stateAtBackup.modelDescription));
    ListVisit::open(m_tour, [&](DialogDriver &list) {
        list.picture(QStringLiteral("list-before-restore"));
        list.click("pushButton_load",
                   {chooseBackup(), confirmation,
                    m_tour.box("Confirmation", network, QMessageBox::Yes,
                               QStringLiteral("restore-network")),
                    m_tour.box("Success", "Backup restored!", QMessageBox::Ok)});
        list.picture(QStringLiteral("list-restored"));
        ListVisit::exit(list);
    });
    m_tour.expect(m_tour.controllerState() == m_stateAtBackup,
                  "the restored controller differs from the backed up one");
    m_tour.pictureWindow(QStringLiteral("host-after-restore"));
}

void FilesVisit::chooseTwo(DialogDriver &dialog)
{
    dialog.click("pushButton_clearSelection");
    m_tour.expect(!dialog.isEnabled("pushButton_save"), "Save is enabled without a selection");
    m_saved = QStringList{ListVisit::active(m_tour), ListVisit::spare(m_tour)};
    for (const QString &identifier : qAsConst(m_saved)) {
        dialog.select(saveTable, identifier);
    }
}

ModalStep FilesVisit::chooseBackup(const QString &pictureName) const
{
    return m_tour.fileDialog("Load Configurations", m_backupFile, pictureName);
}

void FilesVisit::expectFile(const QString &path)
{
    const QFileInfo file(path);
    m_tour.expect(file.size() > 0, QStringLiteral("%1 was not written").arg(path));
    m_tour.note(QStringLiteral("file %1, %2 bytes").arg(file.fileName()).arg(file.size()));
}

// Loaded configurations get identifiers of their own, so they are known by their data.
bool FilesVisit::hasTwiceTheData(const QString &identifier) const
{
    const QByteArray data = ListVisit::data(m_tour, identifier);
    const QVector<Configuration> &all = m_tour.controllerState().configurations;
    return std::count_if(all.begin(), all.end(),
                         [&](const Configuration &one) { return one.data == data; })
        == 2;
}

} // namespace

void Chapters::files(Tour &tour)
{
    FilesVisit(tour).run();
}

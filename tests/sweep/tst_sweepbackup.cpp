#include "tests/support/testmain.h"
#include "tests/support/userinput.h"
#include "tests/sweep/backuprules.h"
#include "tests/sweep/rehearsal.h"
#include "tests/sweep/stage.h"
#include "tests/sweep/sweep.h"

#include <QDate>
#include <QDir>
#include <QLocale>
#include <QTest>

#include <optional>

namespace {

// These only make the name that is proposed.
constexpr Rule manualRules[] = {
    {"system controller_serial"},
    {"system model"},
    {"system model_description"},
};

constexpr Rule automaticRules[] = {
    {"status active"},
    {"system hostname", nullptr, Then::Ends},
};

constexpr Box backupMade{QMessageBox::Information, "Success", "Backup created!"};
constexpr Box noBackup{QMessageBox::Critical, "Invalid backup",
                       "Error while receiving backup information!"};

constexpr char manualName[] = "backup.xml";

void rehearseManual(Rehearsal &rehearsal)
{
    rehearsal.follow(manualRules);
    rehearsal.ask("system controller_serial");
    QByteArray model = "0";
    rehearsal.ask("system model", &model);
    if (model != "2") {
        rehearsal.ask("system model_description");
    }
    rehearsal.openWindow("Backup all settings");
    const std::optional<BackupContents> contents = rehearseCollection(rehearsal);
    if (contents) {
        rehearsal.files[manualName] = contents->document();
        rehearsal.show(backupMade);
    } else {
        rehearsal.send("system download cancel");
        rehearsal.show(noBackup);
    }
}

QString automaticName(const QString &day, const QString &hostName)
{
    return QStringLiteral(".ZOR/VELTRA4/%1/backup/backup_%2_%3.xml")
        .arg(QLatin1String(HostVersion::current), day, hostName);
}

QString today()
{
    return QLocale::c().toString(QDate::currentDate(), "yyyy-MM-dd");
}

// Of the older backups of that controller, only the newest stays.
void prune(Files *files, const QString &hostName)
{
    const QString filter = automaticName("*", hostName);
    QStringList older;
    for (auto file = files->cbegin(); file != files->cend(); ++file) {
        if (QDir::match(filter, file.key())) {
            older << file.key();
        }
    }
    older.sort();
    for (int i = 0; i < older.size() - 1; ++i) {
        files->remove(older.at(i));
    }
}

void rehearseAutomatic(Rehearsal &rehearsal)
{
    rehearsal.follow(automaticRules);
    QByteArray activity = "none";
    rehearsal.ask("status active", &activity);
    QByteArray answer;
    if (activity != "none" || !rehearsal.ask("system hostname", &answer)) {
        return;
    }
    const QString hostName = QString::fromUtf8(answer);
    prune(&rehearsal.files, hostName);
    const std::optional<BackupContents> contents = rehearseCollection(rehearsal);
    if (contents) {
        rehearsal.files[automaticName(today(), hostName)] = contents->document();
    } else {
        rehearsal.report("Error execute the automatic backup");
    }
}

} // namespace

class TestSweepBackup : public QObject
{
    Q_OBJECT

private slots:
    void manual_data() { Sweep::addRows(); }

    // Over an older backup, which stays as it is unless a whole one takes its place.
    void manual()
    {
        const auto perform = [](Stage &stage) {
            stage.chooseFile(manualName);
            stage.onDialog("ConfigSaveDlgClass", [&stage](QDialog *dialog) {
                stage.begin();
                UserInput::click(dialog, "pushButton_save"); // everything is chosen at first
                UserInput::click(dialog, "pushButton_exit");
            });
            stage.useList([](QDialog *list) { UserInput::click(list, "pushButton_save"); });
        };
        ControllerState older = smallSample();
        older.hostName = "older";
        Sweep::run({perform,
                    rehearseManual,
                    {},
                    smallSample(),
                    {{manualName, BackupContents::of(older).document()}}});
    }

    void automatic_data() { Sweep::addRowsOfVariant(); }

    void automatic()
    {
        const QString hostName = QString::fromLatin1(smallSample().hostName);
        Sweep::run({[](Stage &stage) {
                        stage.begin();
                        stage.backUpAutomatically();
                    },
                    rehearseAutomatic,
                    {},
                    smallSample(),
                    {{automaticName("2024-01-01", hostName), "January"},
                     {automaticName("2024-02-01", hostName), "February"},
                     {automaticName("2024-01-01", "another"), "not ours"},
                     {automaticName("2024-02-01", "another"), "not ours either"}}});
    }

    void cleanupTestCase() { Sweep::sayTotal(); }
};

VELTRA4_TEST(TestSweepBackup)
#include "tst_sweepbackup.moc"

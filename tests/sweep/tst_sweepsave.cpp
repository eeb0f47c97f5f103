#include "tests/endtoend/table.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"
#include "tests/sweep/commonrules.h"
#include "tests/sweep/rehearsal.h"
#include "tests/sweep/stage.h"
#include "tests/sweep/sweep.h"

#include <QDate>
#include <QLocale>
#include <QRegularExpression>
#include <QTest>

namespace {

constexpr Rule saveRules[] = {
    {"config active_config", "Error save configuration: Cannot get active config"},
    {"system download cancel",
     "Error save configuration: Cannot send command (1) download. Download canceled", Then::Ends},
    {"veltra2 config clone_config %s %s",
     "Error save configuration: Cannot clone configuration number %1", Then::NextItem},
    {"config desc", "Error save configuration: Cannot get configuration description",
     Then::NextItem},
    {"config desc \"%s %s\"", "Error save configuration: Cannot set configuration description",
     Then::NextItem},
    {"system download prepare 'config' '%s'",
     "Error save configuration: Cannot prepare configuration for download. Export aborted.",
     Then::Ends,
     {QMessageBox::Critical, "Save Configurations",
      "Cannot prepare configuration for download.\nExport aborted."}},
    {"system download available", nullptr, Then::Ends},
    {"system download %d", nullptr, Then::Ends},
    {"veltra2 config delete_config %s",
     "Error save configuration: Cannot delete configuration %1."},
    {"config active_config %s", "Error save configuration: Cannot set active configuration '%1'"},
};

constexpr Box notRecognized{QMessageBox::Critical, "Save Configurations",
                            "Configuration data can not be recognized."};
constexpr Box saved{QMessageBox::Information, "Save Configurations",
                    "Configuration data successfully written to the file\n%1"};
constexpr Box notWritten{QMessageBox::Critical, "Save Configurations",
                         "Configuration data written to the file %1 failed!\n"};

constexpr char savedName[] = "saved.dat";
constexpr char backupName[] = "saved.dat.bak";

// What a copy is called when the one it is of says @p description.
QByteArray datedToday(const QByteArray &description)
{
    static const QRegularExpression dateAtEnd("\\d{2,2}-\\d{2,2}-\\d{4,4}$");
    QString text = QString::fromLatin1(description).remove('"');
    if (text.startsWith("copy of ")) {
        text.remove(0, 8);
    }
    text.replace(dateAtEnd, "00-00-0000");
    if (text.endsWith(" 00-00-0000")) {
        text.chop(11);
    }
    return (text + ' ' + QLocale::c().toString(QDate::currentDate(), "dd-MM-yyyy")).toLatin1();
}

Box rehearseOutcome(Rehearsal &rehearsal)
{
    QByteArray isAvailable;
    if (!rehearsal.ask("system download available", &isAvailable) || isAvailable != "yes") {
        return notRecognized;
    }
    QByteArray contents;
    const bool isWhole = rehearseDownload(rehearsal, &contents, true);
    if (!contents.isNull()) {
        rehearsal.files[savedName] = contents; // as far as it has come
    }
    return isWhole ? saved : notWritten;
}

// False if the whole operation is over.
bool rehearseCopy(Rehearsal &rehearsal, const QByteArray &copy, const QByteArray &original,
                  int position)
{
    QByteArray description;
    const QByteArray clone = "veltra2 config clone_config " + copy + ' ' + original;
    if (!rehearsal.sendStructural(clone, nullptr, QString::number(position))
        || !rehearsal.ask("config desc", &description)
        || !rehearsal.send("config desc \"" + datedToday(description) + '"')) {
        return true;
    }
    return rehearsal.send("system download prepare 'config' '" + copy + '\'');
}

void rehearseSave(Rehearsal &rehearsal, const QString &path)
{
    rehearsal.follow(saveRules);
    rehearsal.openWindow("Save configuration(s)");
    rehearsal.files[backupName] = rehearsal.files.take(savedName);
    QByteArray active;
    rehearsal.ask("config active_config", &active);
    if (!rehearsal.send("system download cancel")) {
        rehearsal.leaveWaitCursor();
        return;
    }
    QByteArrayList copies;
    for (const QByteArray &original : {Sample::active, Sample::fair}) {
        copies << rehearsal.newIdentifier();
        if (!rehearseCopy(rehearsal, copies.last(), original, copies.size() - 1)) {
            return;
        }
    }
    const Box box = rehearseOutcome(rehearsal);
    for (const QByteArray &copy : copies) {
        rehearsal.sendStructural("veltra2 config delete_config " + copy, nullptr,
                                 QString::fromLatin1(copy));
    }
    rehearsal.send("config active_config " + active, QString::fromLatin1(active));
    rehearsal.show(box, path);
}

} // namespace

class TestSweepSave : public QObject
{
    Q_OBJECT

private slots:
    void save_data() { Sweep::addRows(); }

    // Over an older file, which stays under another name whatever happens.
    void save()
    {
        QString path;
        const auto perform = [&path](Stage &stage) {
            path = stage.chooseFile(savedName);
            stage.onDialog("ConfigSaveDlgClass", [&stage](QDialog *dialog) {
                UserInput::click(dialog, "checkBox_allSettings");
                UserInput::click(dialog, "pushButton_clearSelection");
                Table::click(dialog, Sample::activeText, Qt::ControlModifier);
                Table::click(dialog, Sample::fairText, Qt::ControlModifier);
                stage.begin();
                UserInput::click(dialog, "pushButton_save");
                UserInput::click(dialog, "pushButton_exit");
            });
            stage.useList([](QDialog *list) { UserInput::click(list, "pushButton_save"); });
        };
        Sweep::run({perform,
                    [&path](Rehearsal &rehearsal) { rehearseSave(rehearsal, path); },
                    {},
                    smallSample(),
                    {{savedName, "the older one"}, {backupName, "the oldest one"}}});
    }

    void cleanupTestCase() { Sweep::sayTotal(); }
};

VELTRA4_TEST(TestSweepSave)
#include "tst_sweepsave.moc"

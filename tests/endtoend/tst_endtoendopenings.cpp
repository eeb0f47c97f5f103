#include "backup/backupschema.h"
#include "tests/endtoend/frontend.h"
#include "tests/endtoend/table.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QApplication>
#include <QDir>
#include <QPushButton>
#include <QWindow>
#include <QtTest>

#include <algorithm>

#include <malloc.h>

namespace {

constexpr int warmUp = 20;         // openings until most caches are filled
constexpr int bytesOfNoise = 2000; // per opening: far less than any window takes

// How often each window is opened: VELTRA4_OPENINGS, if set.
int openings()
{
    bool isSet = false;
    const int number = qEnvironmentVariableIntValue("VELTRA4_OPENINGS", &isSet);
    return isSet ? qMax(number, 2) : 60;
}

// What a process holds at one time.
struct Holdings
{
    int objects;
    int widgets;
    int windows;
    int files;
};

qint64 heapInUse()
{
    const auto info = mallinfo2();
    return static_cast<qint64>(info.uordblks) + static_cast<qint64>(info.hblkhd);
}

Holdings holdings(const FrontEnd &frontEnd)
{
    Holdings now{};
    now.objects = frontEnd.window->findChildren<QObject *>().size();
    now.widgets = QApplication::allWidgets().size();
    now.windows = QGuiApplication::allWindows().size();
    now.files = int(QDir("/proc/self/fd").count());
    return now;
}

// How many bytes are lost each time, given the heap in use after each: the median of the slopes
// between any two. Caches that grow now and then hardly bend it; a leak does.
qint64 slope(const QVector<qint64> &heaps)
{
    QVector<qint64> slopes;
    for (int from = 0; from < heaps.size(); ++from) {
        for (int to = from + 1; to < heaps.size(); ++to) {
            slopes << (heaps.at(to) - heaps.at(from)) / (to - from);
        }
    }
    std::sort(slopes.begin(), slopes.end());
    return slopes.at(slopes.size() / 2);
}

qint64 lossPerTime(const std::function<void()> &act)
{
    QVector<qint64> heaps;
    heaps.reserve(openings());
    for (int i = 0; i < openings(); ++i) {
        act();
        heaps << heapInUse();
    }
    return slope(heaps);
}

// Sanitizers have an allocator of their own, of which these figures say nothing.
bool isHeapMeasured()
{
    const qint64 before = heapInUse();
    const QByteArray block(100000, 'x');
    return heapInUse() - before >= block.size();
}

struct Scene
{
    TemporaryHome home;
    FrontEnd frontEnd;
    QString file;

    void expect(const char *objectName, const std::function<void(QDialog *)> &action)
    {
        frontEnd.driver.expectDialog(QString::fromLatin1(objectName), action);
    }
    void answer(QMessageBox::StandardButton button)
    {
        expect("", [button](QDialog *box) {
            qobject_cast<QMessageBox *>(box)->button(button)->click();
        });
    }
};

using Step = void (*)(Scene &scene);
using Opening = void (*)(Scene &scene, QDialog *list);

void cancel(QDialog *dialog)
{
    dialog->reject();
}

void openNew(Scene &scene, QDialog *list)
{
    scene.expect("NewConfigurationDialog", cancel);
    UserInput::click(list, "pushButton_new");
}

void openNewWarning(Scene &scene, QDialog *list)
{
    scene.expect("NewConfigurationDialog", [](QDialog *dialog) {
        UserInput::click(dialog, "pushButton_create");
        dialog->reject();
    });
    scene.answer(QMessageBox::Ok);
    UserInput::click(list, "pushButton_new");
}

void openEdit(Scene &scene, QDialog *list)
{
    Table::click(list, Sample::activeText);
    scene.expect("EditConfigDialog", cancel);
    UserInput::click(list, "pushButton_edit");
}

void openLock(Scene &scene, QDialog *list)
{
    Table::click(list, Sample::activeText);
    scene.expect("LockConfigurationDialog", cancel);
    UserInput::click(list, "pushButton_lock");
}

void openUnlock(Scene &scene, QDialog *list)
{
    Table::click(list, Sample::activeText);
    scene.expect("UnlockConfigurationDialog", cancel);
    UserInput::click(list, "pushButton_lock");
}

void openWrongPassword(Scene &scene, QDialog *list)
{
    Table::click(list, Sample::activeText);
    scene.expect("UnlockConfigurationDialog", [](QDialog *dialog) {
        UserInput::type(dialog, "lineEdit_password", "wrong");
        UserInput::click(dialog, "pushButton_ok");
        dialog->reject();
    });
    scene.answer(QMessageBox::Ok);
    UserInput::click(list, "pushButton_lock");
}

void openDeletion(Scene &scene, QDialog *list)
{
    Table::click(list, Sample::activeText);
    scene.answer(QMessageBox::Cancel);
    UserInput::click(list, "pushButton_delete");
}

void openSave(Scene &scene, QDialog *list)
{
    scene.expect("ConfigSaveDlgClass",
                 [](QDialog *dialog) { UserInput::click(dialog, "pushButton_exit"); });
    UserInput::click(list, "pushButton_save");
}

void openLoad(Scene &scene, QDialog *list)
{
    scene.frontEnd.driver.expectFileDialog("Load Configurations", scene.file);
    scene.expect("ConfigLoadDlgClass", cancel);
    UserInput::click(list, "pushButton_load");
}

void nothing(Scene & /*scene*/) { }

void lockActive(Scene &scene)
{
    scene.frontEnd.controller.execute("config new_password 'right'");
}

void makeFile(Scene &scene)
{
    scene.file = TransferFiles::write(scene.home.filePath("some.dat"),
                                      Archive::pack({TransferFiles::item(
                                          configurationIn(scene.frontEnd.state(), Sample::fair))}));
}

struct Window
{
    const char *name;
    Step prepare;
    Opening open;
    bool isFileValidated;
};

const Window windows[] = {
    {"new dialog", nothing, openNew, false},
    {"new dialog's warning", nothing, openNewWarning, false},
    {"edit dialog", nothing, openEdit, false},
    {"lock dialog", nothing, openLock, false},
    {"unlock dialog", lockActive, openUnlock, false},
    {"wrong password", lockActive, openWrongPassword, false},
    {"deletion", nothing, openDeletion, false},
    {"save dialog", nothing, openSave, false},
    {"load dialog", makeFile, openLoad, true},
};

} // namespace

Q_DECLARE_METATYPE(Step)
Q_DECLARE_METATYPE(Opening)

/// Whoever works with the front end all day opens the same windows again and again: the process
/// must not grow.
class TestEndToEndOpenings : public QObject
{
    Q_OBJECT

private slots:
    void theListLeavesNothingBehind()
    {
        Scene scene;
        openAgainAndAgain(
            scene.frontEnd,
            [&scene] {
                scene.expect("ConfigurationDialog", cancel);
                scene.frontEnd.tryAction();
            },
            0);
    }

    void itsWindowsLeaveNothingBehind_data()
    {
        QTest::addColumn<Step>("prepare");
        QTest::addColumn<Opening>("open");
        QTest::addColumn<bool>("isFileValidated");
        for (const Window &window : windows) {
            QTest::newRow(window.name) << window.prepare << window.open << window.isFileValidated;
        }
    }

    void itsWindowsLeaveNothingBehind()
    {
        QFETCH(const Step, prepare);
        QFETCH(const Opening, open);
        QFETCH(const bool, isFileValidated);
        Scene scene;
        prepare(scene);
        const qint64 knownLoss = isFileValidated ? lossPerValidation(scene.file) : 0;
        scene.expect("ConfigurationDialog", [&](QDialog *list) {
            openAgainAndAgain(
                scene.frontEnd, [&] { open(scene, list); }, knownLoss);
            list->reject();
        });
        scene.frontEnd.triggerAction();
    }

private:
    // The @p knownLoss, bytes per opening, is not ours.
    static void openAgainAndAgain(FrontEnd &frontEnd, const std::function<void()> &open,
                                  qint64 knownLoss)
    {
        const auto openOnce = [&] {
            open();
            frontEnd.driver.verify();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            frontEnd.record.takeCommands();
            frontEnd.record.takeMessages();
        };
        for (int i = 0; i < warmUp; ++i) {
            openOnce();
        }
        const Holdings before = holdings(frontEnd);
        const qint64 loss = lossPerTime(openOnce);
        const Holdings after = holdings(frontEnd);
        QCOMPARE(after.objects, before.objects);
        QCOMPARE(after.widgets, before.widgets);
        QCOMPARE(after.windows, before.windows);
        QCOMPARE(after.files, before.files);
        qInfo("%d openings, %lld bytes lost by each, %lld of them known", openings(), loss,
              knownLoss);
        if (isHeapMeasured()) {
            QVERIFY(loss - knownLoss < bytesOfNoise);
        }
    }

    // Qt's validator forgets some memory with each document.
    static qint64 lossPerValidation(const QString &path)
    {
        return lossPerTime([&path] { BackupSchema::validate(path); });
    }
};

VELTRA4_TEST(TestEndToEndOpenings)
#include "tst_endtoendopenings.moc"

#include "backup/backupschema.h"
#include "tests/endtoend/scene.h"
#include "tests/endtoend/table.h"
#include "tests/support/quickstyle.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QApplication>
#include <QDir>
#include <QWindow>
#include <QTest>

#include <algorithm>

#include <malloc.h>

using namespace Story;

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

qint64 heapInUse()
{
    const auto info = mallinfo2();
    return static_cast<qint64>(info.uordblks) + static_cast<qint64>(info.hblkhd);
}

// What a process holds at one time.
QString holdings(const FrontEnd &frontEnd)
{
    return QStringLiteral("%1 objects, %2 widgets, %3 windows, %4 files")
        .arg(frontEnd.window->findChildren<QObject *>().size())
        .arg(QApplication::allWidgets().size())
        .arg(QGuiApplication::allWindows().size())
        .arg(QDir("/proc/self/fd").count());
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

// A window that a button of the list opens, and what comes with it.
struct Window
{
    const char *name;
    const char *button;
    Steps steps;
    bool isForLocked = false; // the active configuration
};

QVector<Window> windows()
{
    return {
        {"new dialog", "pushButton_new", {onNew({leave})}},
        {"new dialog's warning",
         "pushButton_new",
         {onNew({click("pushButton_create"), leave}), answer(QMessageBox::Ok)}},
        {"edit dialog", "pushButton_edit", {onEdit({leave})}},
        {"lock dialog", "pushButton_lock", {onLock({leave})}},
        {"unlock dialog", "pushButton_lock", {onUnlock({leave})}, true},
        {"wrong password",
         "pushButton_lock",
         {onUnlock({type("lineEdit_password", "wrong"), click("pushButton_ok"), leave}),
          answer(QMessageBox::Ok)},
         true},
        {"deletion", "pushButton_delete", {answer(QMessageBox::Cancel)}},
        {"save dialog", "pushButton_save", {onSave({click("pushButton_exit")})}},
        {"load dialog", "pushButton_load", {chooseToLoad("some.dat"), onLoad({leave})}},
    };
}

} // namespace

/// Whoever works with the front end all day opens the same windows again and again: the process
/// must not grow.
class TestEndToEndOpenings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QuickStyle::use(); }

    void theListLeavesNothingBehind()
    {
        Scene scene;
        openAgainAndAgain(scene, [&scene] { scene.play({onList({leave})}); });
    }

    void itsWindowsLeaveNothingBehind_data()
    {
        QTest::addColumn<int>("index");
        const QVector<Window> all = windows();
        for (int i = 0; i < all.size(); ++i) {
            QTest::newRow(all.at(i).name) << i;
        }
    }

    void itsWindowsLeaveNothingBehind()
    {
        QFETCH(const int, index);
        const Window window = windows().at(index);
        Scene scene;
        makeFile("some.dat", {Sample::fair})(scene);
        if (window.isForLocked) {
            execute("config new_password 'right'")(scene);
        }
        const bool isFileValidated = window.button == QByteArray("pushButton_load");
        const qint64 knownLoss =
            isFileValidated ? lossPerValidation(scene.filePath("some.dat")) : 0;
        const auto open = [&](QDialog *list) {
            Table::click(list, Sample::activeText);
            for (const Step &step : window.steps) {
                step(scene);
            }
            UserInput::click(list, window.button);
        };
        scene.play({onList({[&](QDialog *list) {
                                openAgainAndAgain(
                                    scene, [&] { open(list); }, knownLoss);
                            },
                            leave})});
    }

private:
    // The @p knownLoss, bytes per opening, is not ours.
    static void openAgainAndAgain(FrontEnd &frontEnd, const std::function<void()> &open,
                                  qint64 knownLoss = 0)
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
        const QString before = holdings(frontEnd);
        const qint64 loss = lossPerTime(openOnce);
        QCOMPARE(holdings(frontEnd), before);
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

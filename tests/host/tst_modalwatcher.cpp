#include "host/tour/modalwatcher.h"

#include "host/tour/stepfailed.h"
#include "tests/support/testmain.h"

#include <QDialog>
#include <QMessageBox>
#include <QtTest>

namespace {

ModalStep titled(const QString &title, const std::function<void(QDialog *)> &handle)
{
    return {title, [title](QDialog *dialog) { return dialog->windowTitle() == title; }, handle};
}

void accept(QDialog *dialog)
{
    dialog->accept();
}

int open(const QString &title)
{
    QDialog dialog;
    dialog.setWindowTitle(title);
    return dialog.exec();
}

} // namespace

class TestModalWatcher : public QObject
{
    Q_OBJECT

private:
    // What the step complains about; empty when it does not.
    static QString failureOf(const std::function<void()> &step)
    {
        try {
            step();
        } catch (const StepFailed &failure) {
            return failure.reason();
        }
        return {};
    }

private slots:
    void windowsAreHandedOutInOrder()
    {
        ModalWatcher watcher;
        QVector<int> results;
        watcher.during(
            [&] { results << open("a") << open("b"); },
            {titled("a", accept), titled("b", [](QDialog *dialog) { dialog->done(7); })});
        QCOMPARE(results, QVector<int>({QDialog::Accepted, 7}));
    }

    void aStepMayOpenFurtherWindows()
    {
        ModalWatcher watcher;
        int inner = -1;
        const auto outer = [&](QDialog *dialog) {
            watcher.during([&] { inner = open("inner"); }, {titled("inner", accept)});
            dialog->accept();
        };
        watcher.during([] { open("outer"); }, {titled("outer", outer)});
        QCOMPARE(inner, int(QDialog::Accepted));
    }

    void aWindowNobodyExpectsFailsAndIsClosed()
    {
        ModalWatcher watcher;
        const auto action = [] {
            QMessageBox::warning(nullptr, QStringLiteral("Surprise"), QStringLiteral("Boo"));
        };
        QCOMPARE(failureOf([&] { watcher.during(action, {}); }),
                 QStringLiteral("unexpected box \"Surprise\" saying \"Boo\""));
    }

    void anotherWindowThanExpectedFails()
    {
        ModalWatcher watcher;
        QCOMPARE(failureOf([&] { watcher.during([] { open("b"); }, {titled("a", accept)}); }),
                 QStringLiteral("unexpected window \"b\""));
    }

    void aWindowThatNeverOpensFails()
    {
        ModalWatcher watcher;
        QCOMPARE(failureOf([&] { watcher.during([] {}, {titled("a", accept)}); }),
                 QStringLiteral("a did not open"));
    }

    void aWindowThatStaysOpenFailsAndIsClosed()
    {
        ModalWatcher watcher;
        const auto nothing = [](QDialog *) {};
        QCOMPARE(failureOf([&] { watcher.during([] { open("a"); }, {titled("a", nothing)}); }),
                 QStringLiteral("left open: window \"a\""));
    }

    void aFailureInsideClosesAllWindowsAndComesOut()
    {
        ModalWatcher watcher;
        const auto failing = [](QDialog *) { throw StepFailed(QStringLiteral("not so")); };
        const auto outer = [&](QDialog *) {
            watcher.during([] { open("inner"); }, {titled("inner", failing)});
            QFAIL("reached");
        };
        QCOMPARE(
            failureOf([&] { watcher.during([] { open("outer"); }, {titled("outer", outer)}); }),
            QStringLiteral("not so"));
        QVERIFY(!QApplication::activeModalWidget());
    }

    void windowsAfterAFailureAreClosedToo()
    {
        ModalWatcher watcher;
        const auto failing = [](QDialog *) { throw StepFailed(QStringLiteral("first")); };
        const auto action = [] {
            open("a");
            open("b");
        };
        QCOMPARE(failureOf([&] { watcher.during(action, {titled("a", failing)}); }),
                 QStringLiteral("first"));
    }

    void aWindowThatOpensOnItsOwnFailsTheNextStep()
    {
        ModalWatcher watcher;
        open("stray");
        QCOMPARE(failureOf([&] { watcher.rearm(); }),
                 QStringLiteral("unexpected window \"stray\""));
        QCOMPARE(failureOf([&] { watcher.rearm(); }), QString());
    }

    void waitingEndsWhenTheConditionHolds()
    {
        ModalWatcher watcher;
        bool isThere = false;
        QTimer::singleShot(0, &watcher, [&] {
            isThere = true;
            watcher.wake();
        });
        QVERIFY(watcher.waitUntil([&] { return isThere; }));
    }

    void waitingInVainEnds()
    {
        ModalWatcher watcher;
        watcher.setLongestStep(1);
        watcher.rearm();
        QVERIFY(!watcher.waitUntil([] { return false; }));
    }

    void aStepThatTakesTooLongFailsAndItsWindowIsClosed()
    {
        ModalWatcher watcher;
        watcher.setLongestStep(1);
        watcher.rearm();
        const auto waiting = [](QDialog *dialog) {
            QEventLoop loop;
            connect(dialog, &QDialog::finished, &loop, &QEventLoop::quit);
            loop.exec();
        };
        QCOMPARE(failureOf([&] { watcher.during([] { open("a"); }, {titled("a", waiting)}); }),
                 QStringLiteral("takes too long"));
    }
};

VELTRA4_TEST(TestModalWatcher)
#include "tst_modalwatcher.moc"

#include "host/tour/modalwatcher.h"

#include "host/tour/stepfailed.h"
#include "tests/support/testmain.h"

#include <QDialog>
#include <QMessageBox>
#include <QTest>

namespace {

void accept(QDialog *dialog)
{
    dialog->accept();
}

void complain(QDialog * /*dialog*/)
{
    throw StepFailed("not so");
}

// Expects a window of that title.
ModalStep titled(const QString &title, const std::function<void(QDialog *)> &handle = accept)
{
    return {title, [title](QDialog *dialog) { return dialog->windowTitle() == title; }, handle};
}

int open(const QString &title)
{
    QDialog dialog;
    dialog.setWindowTitle(title);
    return dialog.exec();
}

std::function<void()> opening(const QString &title)
{
    return [title] { open(title); };
}

} // namespace

class TestModalWatcher : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<ModalWatcher> m_watcher;

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

    QString failureDuring(const std::function<void()> &action, const QVector<ModalStep> &steps)
    {
        return failureOf([&] { m_watcher->during(action, steps); });
    }

private slots:
    void init() { m_watcher = std::make_unique<ModalWatcher>(); }

    void cleanup()
    {
        QVERIFY(!QApplication::activeModalWidget());
        m_watcher.reset();
    }

    void windowsAreHandedOutInOrder()
    {
        QVector<int> results;
        m_watcher->during([&] { results << open("a") << open("b"); },
                          {titled("a"), titled("b", [](QDialog *dialog) { dialog->done(7); })});
        QCOMPARE(results, QVector<int>({QDialog::Accepted, 7}));
    }

    void aStepMayOpenFurtherWindows()
    {
        int inner = -1;
        const auto outer = [&](QDialog *dialog) {
            m_watcher->during([&] { inner = open("inner"); }, {titled("inner")});
            dialog->accept();
        };
        m_watcher->during(opening("outer"), {titled("outer", outer)});
        QCOMPARE(inner, int(QDialog::Accepted));
    }

    void whatIsNotAsExpectedFails()
    {
        const auto warning = [] { QMessageBox::warning(nullptr, "Surprise", "Boo"); };
        const auto nothing = [](QDialog *) {};
        QCOMPARE(failureDuring(warning, {}), "unexpected box \"Surprise\" saying \"Boo\"");
        QCOMPARE(failureDuring(opening("b"), {titled("a")}), "unexpected window \"b\"");
        QCOMPARE(failureDuring([] {}, {titled("a")}), "a did not open");
        QCOMPARE(failureDuring(opening("a"), {titled("a", nothing)}), "left open: window \"a\"");
    }

    void aFailureInsideClosesAllWindowsAndComesOut()
    {
        const auto outer = [&](QDialog *) {
            m_watcher->during(opening("inner"), {titled("inner", complain)});
            QFAIL("reached");
        };
        QCOMPARE(failureDuring(opening("outer"), {titled("outer", outer)}), "not so");
    }

    void windowsAfterAFailureAreClosedToo()
    {
        const auto action = [] {
            open("a");
            open("b");
        };
        QCOMPARE(failureDuring(action, {titled("a", complain)}), "not so");
    }

    void aWindowThatOpensOnItsOwnFailsTheNextStep()
    {
        open("stray");
        QCOMPARE(failureOf([&] { m_watcher->rearm(); }), "unexpected window \"stray\"");
        QCOMPARE(failureOf([&] { m_watcher->rearm(); }), "");
    }

    void waitingEndsWhenTheConditionHoldsOrInVain()
    {
        bool isThere = false;
        QTimer::singleShot(0, m_watcher.get(), [&] {
            isThere = true;
            m_watcher->wake();
        });
        QVERIFY(m_watcher->waitUntil([&] { return isThere; }));
        m_watcher->setLongestStep(1);
        m_watcher->rearm();
        QVERIFY(!m_watcher->waitUntil([] { return false; }));
    }

    void aStepThatTakesTooLongFailsAndItsWindowIsClosed()
    {
        m_watcher->setLongestStep(1);
        m_watcher->rearm();
        const auto waiting = [](QDialog *dialog) {
            QEventLoop loop;
            connect(dialog, &QDialog::finished, &loop, &QEventLoop::quit);
            loop.exec();
        };
        QCOMPARE(failureDuring(opening("a"), {titled("a", waiting)}), "takes too long");
    }
};

VELTRA4_TEST(TestModalWatcher)
#include "tst_modalwatcher.moc"

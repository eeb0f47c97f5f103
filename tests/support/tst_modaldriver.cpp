#include "tests/support/modaldriver.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest>

using Change = std::function<void(ExpectedBox *)>;
Q_DECLARE_METATYPE(Change)

namespace {

ExpectedBox expectedBox(const QString &text)
{
    ExpectedBox expected;
    expected.icon = QMessageBox::Warning;
    expected.title = "Title";
    expected.text = text;
    expected.parent = nullptr;
    return expected;
}

int showBox(const QString &text)
{
    return QMessageBox::warning(nullptr, "Title", text);
}

class NamedDialog : public QDialog
{
public:
    explicit NamedDialog(const QString &name) { setObjectName(name); }
};

} // namespace

class TestModalDriver : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(QApplication::topLevelWidgets().size(), 0); }

    void boxesAreAnsweredInOrder()
    {
        ModalDriver driver;
        ExpectedBox question = expectedBox("second");
        question.buttons = QMessageBox::Yes | QMessageBox::No;
        question.defaultButton = QMessageBox::No;
        question.answer = QMessageBox::Yes;
        driver.expectBox(expectedBox("first"));
        driver.expectBox(question);

        QCOMPARE(showBox("first"), int(QMessageBox::Ok));
        QCOMPARE(QMessageBox::warning(nullptr, "Title", "second", question.buttons,
                                      question.defaultButton),
                 QMessageBox::Yes);
        QCOMPARE(driver.takeProblems(), QStringList());
    }

    void aBoxNobodyExpectedIsClosedAndReported()
    {
        ModalDriver driver;
        showBox("surprise");
        QCOMPARE(driver.takeProblems(),
                 QStringList("unexpected QMessageBox '' titled 'Title' saying 'surprise'"));
    }

    void allOtherBoxesAreAnsweredAsAskedFor()
    {
        ModalDriver driver;
        QStringList seen;
        driver.answerBoxes([&seen](const QMessageBox *box) {
            seen << box->text();
            return QMessageBox::No;
        });
        driver.expectBox(expectedBox("expected"));
        const auto ask = [](const char *text) {
            return QMessageBox::question(nullptr, "Title", text,
                                         QMessageBox::Yes | QMessageBox::No);
        };
        QCOMPARE(showBox("expected"), int(QMessageBox::Ok));
        QCOMPARE(ask("one"), QMessageBox::No);
        QCOMPARE(ask("two"), QMessageBox::No);
        QCOMPARE(seen, QStringList({"one", "two"}));
        QCOMPARE(driver.takeProblems(), QStringList());
        showBox("without that button");
        QCOMPARE(driver.takeProblems().size(), 1);
    }

    void everyDifferenceIsReported_data()
    {
        QTest::addColumn<Change>("change");
        QTest::newRow("icon") << Change(
            [](ExpectedBox *box) { box->icon = QMessageBox::Critical; });
        QTest::newRow("title") << Change([](ExpectedBox *box) { box->title = "title"; });
        QTest::newRow("text") << Change([](ExpectedBox *box) { box->text += "."; });
        QTest::newRow("buttons") << Change(
            [](ExpectedBox *box) { box->buttons |= QMessageBox::Cancel; });
        QTest::newRow("default button")
            << Change([](ExpectedBox *box) { box->defaultButton = QMessageBox::Cancel; });
    }

    void everyDifferenceIsReported()
    {
        QFETCH(const Change, change);
        ExpectedBox expected = expectedBox("text");
        change(&expected);
        ModalDriver driver;
        driver.expectBox(expected);
        QCOMPARE(showBox("text"), int(QMessageBox::Ok));
        const QStringList problems = driver.takeProblems();
        QCOMPARE(problems.size(), 1);
        QVERIFY2(problems.first().startsWith(QLatin1String(QTest::currentDataTag()) + " is "),
                 qPrintable(problems.first()));
    }

    void anotherParentIsReported()
    {
        const auto window = std::make_unique<QWidget>();
        ExpectedBox expected = expectedBox("text");
        expected.parent = window.get();
        ModalDriver driver;
        driver.expectBox(expected);
        showBox("text");
        const QStringList problems = driver.takeProblems();
        QCOMPARE(problems.size(), 1);
        QVERIFY2(problems.first().startsWith("parent is "), qPrintable(problems.first()));
    }

    void aBoxWithoutTheAnswerIsClosedAndReported()
    {
        ExpectedBox expected = expectedBox("text");
        expected.answer = QMessageBox::Discard;
        ModalDriver driver;
        driver.expectBox(expected);
        showBox("text");
        QCOMPARE(driver.takeProblems(),
                 QStringList("left open: QMessageBox '' titled 'Title' saying 'text'"));
    }

    void aWindowOutOfOrderIsClosedAndReported()
    {
        ModalDriver driver;
        driver.expectDialog("Asked", [](QDialog *dialog) { dialog->accept(); });
        showBox("surprise");
        NamedDialog dialog("Asked");
        QCOMPARE(dialog.exec(), int(QDialog::Accepted)); // still expected
        QCOMPARE(
            driver.takeProblems(),
            QStringList("unexpected QMessageBox '' titled 'Title' saying 'surprise' instead of "
                        "dialog 'Asked'"));
    }

    void anExpectationLeftOverIsReported()
    {
        ModalDriver driver;
        driver.expectBox(expectedBox("text"));
        driver.expectDialog("Asked", [](QDialog *) {});
        driver.expectFileDialog("Open", QString());
        QCOMPARE(driver.takeProblems(),
                 QStringList({"never seen: message box 'text'", "never seen: dialog 'Asked'",
                              "never seen: file dialog 'Open'"}));
    }

    void problemsAreReportedOnce()
    {
        ModalDriver driver;
        driver.expectBox(expectedBox("text"));
        QCOMPARE(driver.takeProblems().size(), 1);
        QCOMPARE(driver.takeProblems(), QStringList());
        driver.verify();
    }

    void aDialogIsHandedToItsAction()
    {
        ModalDriver driver;
        QPointer<QDialog> seen;
        driver.expectDialog("Asked", [&seen](QDialog *shown) {
            seen = shown;
            shown->done(7);
        });
        NamedDialog dialog("Asked");
        QCOMPARE(dialog.exec(), 7);
        QCOMPARE(seen.data(), &dialog);
    }

    void aDialogIsActiveWhenItsActionRuns()
    {
        ModalDriver driver;
        bool isActive = false;
        bool hasFocus = false;
        NamedDialog dialog("Asked");
        QLineEdit field(&dialog);
        driver.expectDialog("Asked", [&](QDialog *shown) {
            isActive = shown->isActiveWindow();
            hasFocus = field.hasFocus();
            shown->accept();
        });
        dialog.exec();
        QVERIFY(isActive);
        QVERIFY(hasFocus);
    }

    void aDialogMayBeShownAgain()
    {
        ModalDriver driver;
        NamedDialog dialog("Asked");
        for (int result = 1; result <= 3; ++result) {
            driver.expectDialog("Asked", [result](QDialog *shown) { shown->done(result); });
        }
        QCOMPARE(dialog.exec(), 1);
        QCOMPARE(dialog.exec(), 2);
        QCOMPARE(dialog.exec(), 3);
    }

    void aDialogLeftOpenIsClosedAndReported()
    {
        ModalDriver driver;
        driver.expectDialog("Asked", [](QDialog *) {});
        NamedDialog dialog("Asked");
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
        QCOMPARE(driver.takeProblems(), QStringList("left open: QDialog 'Asked' titled ''"));
    }

    void windowsWithinAnActionAreExpectedAfterIt()
    {
        ModalDriver driver;
        QStringList order;
        driver.expectDialog("Outer", [&](QDialog *shown) {
            order << "outer";
            NamedDialog("Inner").exec();
            showBox("text");
            order << "outer again";
            shown->accept();
        });
        driver.expectDialog("Inner", [&](QDialog *shown) {
            order << "inner";
            shown->accept();
        });
        driver.expectBox(expectedBox("text"));
        QCOMPARE(NamedDialog("Outer").exec(), int(QDialog::Accepted));
        QCOMPARE(order, QStringList({"outer", "inner", "outer again"}));
        QCOMPARE(driver.takeProblems(), QStringList());
    }

    void anActionMayDestroyItsDialog()
    {
        ModalDriver driver;
        driver.expectDialog("Asked", [](QDialog *shown) { delete shown; });
        auto *dialog = new NamedDialog("Asked");
        QCOMPARE(dialog->exec(), int(QDialog::Rejected));
        QCOMPARE(driver.takeProblems(), QStringList());
    }

    void windowsBeyondWhatIsExpectedMayBeHandled()
    {
        ModalDriver driver;
        QStringList seen;
        driver.handleOthers([&seen](QWidget *window) {
            seen << window->windowTitle();
            if (seen.size() < 2) {
                window->close();
            }
        });
        driver.expectBox(expectedBox("first"));
        showBox("first");
        showBox("second");
        QCOMPARE(driver.takeProblems(), QStringList());
        showBox("third");
        QCOMPARE(seen, QStringList({"Title", "Title"}));
        QCOMPARE(driver.takeProblems(),
                 QStringList("left open: QMessageBox '' titled 'Title' saying 'third'"));
    }

    void aFileIsChosen()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath("chosen.dat");
        ModalDriver driver;
        driver.expectFileDialog("Save", path);
        QFileDialog dialog(nullptr, "Save", directory.path());
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        QCOMPARE(dialog.exec(), int(QDialog::Accepted));
        QCOMPARE(dialog.selectedFiles(), QStringList(path));
    }

    void aFileDialogIsLookedAtAndCancelled()
    {
        const QTemporaryDir directory;
        ModalDriver driver;
        QString seen;
        driver.expectFileDialog("Open", QString(), [&seen](QFileDialog *dialog) {
            seen = dialog->directory().absolutePath();
        });
        QFileDialog dialog(nullptr, "Open", directory.path());
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
        QCOMPARE(seen, directory.path());
    }
};

VELTRA4_TEST(TestModalDriver)
#include "tst_modaldriver.moc"

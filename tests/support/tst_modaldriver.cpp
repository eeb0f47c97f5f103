#include "tests/support/modaldriver.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

namespace {

ExpectedBox expectedBox(const QString &text)
{
    ExpectedBox expected{QMessageBox::Warning, "Title", text};
    expected.parent = nullptr;
    return expected;
}

QMessageBox::StandardButton showBox(const QString &text,
                                    QMessageBox::StandardButtons buttons = QMessageBox::Ok)
{
    const auto last = buttons.testFlag(QMessageBox::No) ? QMessageBox::No : QMessageBox::Ok;
    return QMessageBox::warning(nullptr, "Title", text, buttons, last);
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
    void init() { m_driver = std::make_unique<ModalDriver>(); }

    void cleanup()
    {
        m_driver->verify();
        QCOMPARE(QApplication::topLevelWidgets().size(), 0);
    }

    void boxesAreAnsweredInOrder()
    {
        ExpectedBox question = expectedBox("second");
        question.buttons = QMessageBox::Yes | QMessageBox::No;
        question.defaultButton = QMessageBox::No;
        question.answer = QMessageBox::Yes;
        m_driver->expectBox(expectedBox("first"));
        m_driver->expectBox(question);
        QCOMPARE(showBox("first"), QMessageBox::Ok);
        QCOMPARE(showBox("second", question.buttons), QMessageBox::Yes);
    }

    void aBoxNobodyExpectedIsClosedAndReported()
    {
        showBox("surprise");
        expectProblems({"unexpected QMessageBox '' titled 'Title' saying 'surprise'"});
    }

    void everyDifferenceIsReported()
    {
        const auto report = [this](const std::function<void(ExpectedBox *)> &change) {
            ExpectedBox expected = expectedBox("text");
            change(&expected);
            m_driver->expectBox(expected);
            showBox("text");
            const QStringList problems = m_driver->takeProblems();
            return problems.size() == 1 ? problems.first().section(" is ", 0, 0) : QString();
        };
        QCOMPARE(report([](auto *box) { box->icon = QMessageBox::Critical; }), "icon");
        QCOMPARE(report([](auto *box) { box->title = "title"; }), "title");
        QCOMPARE(report([](auto *box) { box->text += "."; }), "text");
        QCOMPARE(report([](auto *box) { box->buttons |= QMessageBox::Cancel; }), "buttons");
        QCOMPARE(report([](auto *box) { box->defaultButton = QMessageBox::Cancel; }),
                 "default button");
        QWidget window;
        QCOMPARE(report([&window](auto *box) { box->parent = &window; }), "parent");
    }

    void aBoxWithoutTheAnswerIsClosedAndReported()
    {
        ExpectedBox expected = expectedBox("text");
        expected.answer = QMessageBox::Discard;
        m_driver->expectBox(expected);
        showBox("text");
        expectProblems({"left open: QMessageBox '' titled 'Title' saying 'text'"});
    }

    void aWindowOutOfOrderIsClosedAndReported()
    {
        m_driver->expectDialog("Asked", [](QDialog *dialog) { dialog->accept(); });
        showBox("surprise");
        QCOMPARE(NamedDialog("Asked").exec(), int(QDialog::Accepted)); // still expected
        expectProblems({"unexpected QMessageBox '' titled 'Title' saying 'surprise' instead of "
                        "dialog 'Asked'"});
    }

    void anExpectationLeftOverIsReportedOnce()
    {
        m_driver->expectBox(expectedBox("text"));
        m_driver->expectDialog("Asked", [](QDialog *) {});
        m_driver->expectFileDialog("Open", QString());
        expectProblems({"never seen: message box 'text'", "never seen: dialog 'Asked'",
                        "never seen: file dialog 'Open'"});
        expectProblems({});
    }

    void aDialogIsHandedToItsActionEachTimeItIsShown()
    {
        NamedDialog dialog("Asked");
        for (int result = 1; result <= 3; ++result) {
            m_driver->expectDialog("Asked", [&dialog, result](QDialog *shown) {
                QCOMPARE(shown, &dialog);
                shown->done(result);
            });
        }
        QCOMPARE(dialog.exec(), 1);
        QCOMPARE(dialog.exec(), 2);
        QCOMPARE(dialog.exec(), 3);
    }

    void aDialogIsActiveWhenItsActionRuns()
    {
        NamedDialog dialog("Asked");
        const QLineEdit field(&dialog);
        bool hasFocus = false;
        m_driver->expectDialog("Asked", [&](QDialog *shown) {
            hasFocus = shown->isActiveWindow() && field.hasFocus();
            shown->accept();
        });
        dialog.exec();
        QVERIFY(hasFocus);
    }

    void aDialogLeftOpenIsClosedAndReported()
    {
        m_driver->expectDialog("Asked", [](QDialog *) {});
        QCOMPARE(NamedDialog("Asked").exec(), int(QDialog::Rejected));
        expectProblems({"left open: QDialog 'Asked' titled ''"});
    }

    void windowsWithinAnActionAreExpectedAfterIt()
    {
        QStringList order;
        m_driver->expectDialog("Outer", [&](QDialog *shown) {
            order << "outer";
            NamedDialog("Inner").exec();
            showBox("text");
            order << "outer again";
            shown->accept();
        });
        m_driver->expectDialog("Inner", [&](QDialog *shown) {
            order << "inner";
            shown->accept();
        });
        m_driver->expectBox(expectedBox("text"));
        QCOMPARE(NamedDialog("Outer").exec(), int(QDialog::Accepted));
        QCOMPARE(order, QStringList({"outer", "inner", "outer again"}));
    }

    void anActionMayDestroyItsDialog()
    {
        m_driver->expectDialog("Asked", [](QDialog *shown) { delete shown; });
        auto *dialog = new NamedDialog("Asked");
        QCOMPARE(dialog->exec(), int(QDialog::Rejected));
    }

    void windowsThatAreNotExpectedMayBeHandled()
    {
        QStringList seen;
        m_driver->handleOthers([&seen](QWidget *window) {
            seen << qobject_cast<QMessageBox *>(window)->text();
            if (seen.size() < 3) {
                window->close();
            }
        });
        m_driver->expectDialog("Asked", [](QDialog *shown) {
            showBox("within it");
            shown->accept();
        });
        m_driver->expectDialog("Asked next", [](QDialog *shown) { shown->accept(); });
        NamedDialog("Asked").exec();
        NamedDialog("Asked next").exec();
        showBox("afterwards");
        expectProblems({});
        showBox("not closed");
        expectProblems({"unexpected QMessageBox '' titled 'Title' saying 'not closed'"});
        QCOMPARE(seen, QStringList({"within it", "afterwards", "not closed"}));
    }

    void boxesMayBeAgreedTo()
    {
        m_driver->handleOthers(ModalDriver::agree);
        QCOMPARE(showBox("one", QMessageBox::Yes | QMessageBox::No), QMessageBox::Yes);
        QCOMPARE(showBox("two", QMessageBox::Ok | QMessageBox::Cancel), QMessageBox::Ok);
        expectProblems({});
        NamedDialog("Asked").exec();
        showBox("with neither", QMessageBox::No);
        QCOMPARE(m_driver->takeProblems().size(), 2);
    }

    void aFileIsChosen()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath("chosen.dat");
        m_driver->expectFileDialog("Save", path);
        QFileDialog dialog(nullptr, "Save", directory.path());
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        QCOMPARE(dialog.exec(), int(QDialog::Accepted));
        QCOMPARE(dialog.selectedFiles(), QStringList(path));
    }

    void aFileDialogIsLookedAtAndCancelled()
    {
        const QTemporaryDir directory;
        QString seen;
        m_driver->expectFileDialog("Open", QString(), [&seen](QFileDialog *dialog) {
            seen = dialog->directory().absolutePath();
        });
        QFileDialog dialog(nullptr, "Open", directory.path());
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
        QCOMPARE(seen, directory.path());
    }

private:
    void expectProblems(const QStringList &problems)
    {
        QCOMPARE(m_driver->takeProblems(), problems);
    }

    std::unique_ptr<ModalDriver> m_driver;
};

VELTRA4_TEST(TestModalDriver)
#include "tst_modaldriver.moc"

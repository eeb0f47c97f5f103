#include "dialogs/unlockconfigdlg.h"
#include "tests/dialogs/smalldialogtest.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QtTest>

using UserInput::click;
using UserInput::focusOf;
using UserInput::named;
using UserInput::press;
using UserInput::textOf;
using UserInput::type;

namespace {

const QStringList reading{"queryString config desc_of_config hall"};

QStringList presenting(const QString &password)
{
    return {"sendCommand config password '" + password + '\'', "queryString config is_changeable"};
}

QStringList presentingSuper(const QString &password)
{
    return {"sendCommand config super_password '" + password + '\'',
            "queryString config is_changeable"};
}

QStringList removing()
{
    return {"sendCommand config new_password none", ScriptedChannel::announced()};
}

const QStringList withdrawing{"sendCommand config super_password '.'"};

ExpectedBox warning(const QString &text)
{
    ExpectedBox box;
    box.icon = QMessageBox::Warning;
    box.title = "Warning";
    box.text = text;
    box.parent = nullptr;
    return box;
}

void enterPassword(QDialog *dialog, const QString &password)
{
    type(dialog, "lineEdit_password", password);
    click(dialog, "pushButton_ok");
}

void enterSecret(QDialog *dialog)
{
    enterPassword(dialog, "secret");
}

void enterSuperSecret(QDialog *dialog)
{
    click(dialog, "checkBox_use_super_password");
    QCOMPARE(focusOf(dialog), "lineEdit_password");
    enterSecret(dialog);
}

SmallDialogTest::Design design()
{
    return {
        "UnlockConfigurationDialog",
        {{"label_configuration", "QLabel", "unlock configuration []:", ""},
         {"label_4", "QLabel", "", ""},
         {"label", "QLabel", "password:", "Input the password of the configuration"},
         {"lineEdit_password", "QLineEdit", "", "Input the password of the configuration"},
         {"checkBox_use_super_password", "QCheckBox", "super password",
          "Use super password to unlock the configuration"},
         {"label_5", "QLabel", "", ""},
         {"label_description", "QLabel", "", ""},
         {"label_3", "QLabel", "", ""},
         {"pushButton_ok", "QPushButton", "OK",
          "Unlock the configuration using the given password and close the dialog"},
         {"pushButton_cancel", "QPushButton", "Cancel", "Close the dialog"}},
        {"lineEdit_password", "checkBox_use_super_password", "pushButton_ok", "pushButton_cancel"},
        "pushButton_cancel",
        reading};
}

} // namespace

class TestUnlockConfigDlg : public SmallDialogTest
{
    Q_OBJECT

public:
    TestUnlockConfigDlg()
        : SmallDialogTest(design())
    {
    }

protected:
    std::unique_ptr<QDialog> makeDialog() override
    {
        return std::make_unique<UnlockConfigDlg>(m_channel.get(), nullptr);
    }
    int exec(QDialog *dialog) override
    {
        return qobject_cast<UnlockConfigDlg *>(dialog)->update_and_exec("hall");
    }
    void scriptAnswers() override
    {
        m_channel->answer("config desc_of_config hall", "main hall");
        m_channel->answer("config is_changeable", "yes");
    }
    void fillIn(QDialog *dialog) override { type(dialog, "lineEdit_password", "secret"); }

private slots:
    void theFormIsAsDesigned()
    {
        const UnlockConfigDlg dialog(m_channel.get(), nullptr);
        QCOMPARE(dialog.windowTitle(), "Unlock Configuration");
        QCOMPARE(dialog.whatsThis(), "Unlock configuration dialog");
        QCOMPARE(dialog.size(), QSize(500, 200));
        QCOMPARE(dialog.maximumSize(), QSize(10000, 10000));
        QCOMPARE(named<QFrame>(&dialog, "line")->frameShape(), QFrame::HLine);
        QCOMPARE(named<QFrame>(&dialog, "line")->frameShadow(), QFrame::Sunken);
        QVERIFY(named<QPushButton>(&dialog, "pushButton_ok")->autoDefault());
        QVERIFY(named<QPushButton>(&dialog, "pushButton_cancel")->autoDefault());
        QVERIFY(!named<QCheckBox>(&dialog, "checkBox_use_super_password")->isChecked());

        auto *password = named<QLineEdit>(&dialog, "lineEdit_password");
        QCOMPARE(password->echoMode(), QLineEdit::Password);
        QCOMPARE(password->maxLength(), 100);

        const auto *grid = dialog.findChild<QGridLayout *>("gridLayout");
        const auto nameAt = [grid](int row, int column) {
            return grid->itemAtPosition(row, column)->widget()->objectName();
        };
        QCOMPARE(nameAt(0, 0), "label");
        QCOMPARE(nameAt(0, 1), "lineEdit_password");
        QCOMPARE(nameAt(0, 2), "checkBox_use_super_password");
        QCOMPARE(nameAt(1, 0), "label_5");
        QCOMPARE(nameAt(1, 1), "label_description");
        QCOMPARE(nameAt(1, 2), "label_description");
    }

    void theLabelNamesTheConfiguration_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("label");
        QTest::newRow("plain") << QByteArray("main hall") << "unlock configuration main hall:";
        QTest::newRow("quoted") << QByteArray("\"main hall\"")
                                << "unlock configuration \"main hall\":";
        QTest::newRow("place marker") << QByteArray("100 %1") << "unlock configuration 100 %1:";
        QTest::newRow("mark-up") << QByteArray("<b>hall</b>")
                                 << "unlock configuration <b>hall</b>:";
        QTest::newRow("empty") << QByteArray() << "unlock configuration :";
    }

    void theLabelNamesTheConfiguration()
    {
        QFETCH(const QByteArray, answer);
        QFETCH(const QString, label);
        m_channel->answer("config desc_of_config hall", answer);
        QString shown;
        runDialog([&shown](QDialog *dialog) {
            shown = named<QLabel>(dialog, "label_configuration")->text();
            dialog->reject();
        });
        QCOMPARE(shown, label);
    }

    void aFailedQueryLeavesTheNameOut()
    {
        m_channel->failNth(1);
        QString shown;
        runDialog([&shown](QDialog *dialog) {
            shown = named<QLabel>(dialog, "label_configuration")->text();
            enterSecret(dialog);
        });
        QCOMPARE(shown, "unlock configuration :");
        QCOMPARE(m_channel->trace(), reading + presenting("secret") + removing());
    }

    void theRightPasswordUnlocks()
    {
        QCOMPARE(runDialog(enterSecret), int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), reading + presenting("secret") + removing());
    }

    void theRightSuperPasswordUnlocksAndIsWithdrawn()
    {
        QCOMPARE(runDialog(enterSuperSecret), int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(),
                 reading + presentingSuper("secret") + removing() + withdrawing);
    }

    void theEnterKeyMeansOk()
    {
        const int result = runDialog([](QDialog *dialog) {
            type(dialog, "lineEdit_password", "secret");
            press(dialog, Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), reading + presenting("secret") + removing());
    }

    void theEnterKeyOnCancelCancels()
    {
        const int result = runDialog([](QDialog *dialog) {
            type(dialog, "lineEdit_password", "secret");
            named<QPushButton>(dialog, "pushButton_cancel")->setFocus();
            press(dialog, Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QCOMPARE(m_channel->trace(), reading);
    }

    void anEmptyPasswordIsRefused()
    {
        QStringList traceAfterWarning;
        const int result = runDialog([&](QDialog *dialog) {
            m_driver->expectBox(warning("Please enter the password for this configuration."));
            click(dialog, "pushButton_ok");
            QCOMPARE(focusOf(dialog), "lineEdit_password");
            traceAfterWarning = m_channel->trace();
            enterSecret(dialog);
        });
        QCOMPARE(traceAfterWarning, reading);
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), reading + presenting("secret") + removing());
    }

    void onlyYesMeansChangeable_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("no") << QByteArray("no");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("capital first") << QByteArray("Yes");
        QTest::newRow("capital last") << QByteArray("yeS");
        QTest::newRow("blank before") << QByteArray(" yes");
        QTest::newRow("blank after") << QByteArray("yes ");
        QTest::newRow("control character after") << QByteArray("yes\x01");
        QTest::newRow("line break after") << QByteArray("yes\n");
        QTest::newRow("quoted") << QByteArray("\"yes\"");
        QTest::newRow("a longer word") << QByteArray("yesterday");
        QTest::newRow("its beginning") << QByteArray("ye");
        QTest::newRow("a number") << QByteArray("1");
        QTest::newRow("as long as can be") << QByteArray(199, 'y');
    }

    void onlyYesMeansChangeable()
    {
        QFETCH(const QByteArray, answer);
        m_channel->answer("config is_changeable", answer);
        runDialog([this](QDialog *dialog) {
            m_driver->expectBox(warning("The password is invalid."));
            enterSecret(dialog);
            dialog->reject();
        });
        QCOMPARE(m_channel->trace(), reading + presenting("secret"));
    }

    void aWrongPasswordIsClearedForAnotherTry()
    {
        m_channel->answerInTurn("config is_changeable", {"no", "yes"});
        QString left;
        QString focused;
        const int result = runDialog([&](QDialog *dialog) {
            m_driver->expectBox(warning("The password is invalid."));
            enterPassword(dialog, "guess");
            left = textOf(dialog, "lineEdit_password");
            focused = focusOf(dialog);
            enterSecret(dialog);
        });
        QCOMPARE(left, "");
        QCOMPARE(focused, "lineEdit_password");
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(),
                 reading + presenting("guess") + presenting("secret") + removing());
    }

    void aWrongSuperPasswordIsNotWithdrawn()
    {
        m_channel->answer("config is_changeable", "no");
        QString left;
        QString focused;
        const int result = runDialog([&](QDialog *dialog) {
            m_driver->expectBox(warning("The super password is invalid."));
            enterSuperSecret(dialog);
            left = textOf(dialog, "lineEdit_password");
            focused = focusOf(dialog);
            dialog->reject();
        });
        QCOMPARE(left, "");
        QCOMPARE(focused, "lineEdit_password");
        QCOMPARE(result, int(QDialog::Rejected));
        QCOMPARE(m_channel->trace(), reading + presentingSuper("secret"));
    }

    void aRightSuperPasswordAfterAWrongOneIsWithdrawnOnce()
    {
        m_channel->answerInTurn("config is_changeable", {"no", "yes"});
        const int result = runDialog([this](QDialog *dialog) {
            m_driver->expectBox(warning("The super password is invalid."));
            click(dialog, "checkBox_use_super_password");
            enterPassword(dialog, "guess");
            enterSecret(dialog);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(),
                 reading + presentingSuper("guess") + presentingSuper("secret") + removing()
                     + withdrawing);
    }

    void aFailedCheckIsReportedAndNothingElseHappens_data()
    {
        QTest::addColumn<Action>("enter");
        QTest::addColumn<QStringList>("presented");
        QTest::newRow("password") << Action(enterSecret) << presenting("secret");
        QTest::newRow("super password") << Action(enterSuperSecret) << presentingSuper("secret");
    }

    void aFailedCheckIsReportedAndNothingElseHappens()
    {
        QFETCH(const Action, enter);
        QFETCH(const QStringList, presented);
        m_channel->failNth(3);
        QString left;
        bool isOpen = false;
        runDialog([&](QDialog *dialog) {
            enter(dialog);
            left = textOf(dialog, "lineEdit_password");
            isOpen = dialog->isVisible();
            dialog->reject();
        });
        QCOMPARE(left, "secret");
        QVERIFY(isOpen);
        QCOMPARE(m_channel->trace(),
                 reading + presented
                     + QStringList{ScriptedChannel::reported("configuration cannot be checked.")});
    }

    void otherFailuresAreNotNoticed_data()
    {
        QTest::addColumn<QByteArray>("failing");
        QTest::newRow("presentation") << QByteArray("config super_password 'secret'");
        QTest::newRow("removal") << QByteArray("config new_password none");
        QTest::newRow("withdrawal") << QByteArray("config super_password '.'");
    }

    void otherFailuresAreNotNoticed()
    {
        QFETCH(const QByteArray, failing);
        m_channel->fail(failing);
        QCOMPARE(runDialog(enterSuperSecret), int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(),
                 reading + presentingSuper("secret") + removing() + withdrawing);
    }

    void everythingIsSentBeforeTheClosing()
    {
        QList<bool> isOpen;
        runDialog([&](QDialog *dialog) {
            const auto look = [&isOpen, dialog] { isOpen << dialog->isVisible(); };
            m_channel->whenPosted("ActiveConfigurationChanged", look);
            m_channel->whenSent("config super_password '.'", look);
            enterSuperSecret(dialog);
        });
        QCOMPARE(isOpen, QList<bool>({true, true}));
    }

    void onlyPermittedCharactersCanBeTyped()
    {
        QString typed;
        runDialog([&typed](QDialog *dialog) {
            type(dialog, "lineEdit_password", "a b'c#d\"e\u00e4f\u20acg=h,i;j:k\\l");
            type(dialog, "lineEdit_password", "AZ09_-+./");
            typed = textOf(dialog, "lineEdit_password");
            dialog->reject();
        });
        QCOMPARE(typed, "abcdefghijklAZ09_-+./");
    }

    void aHundredCharactersAreTheLimit()
    {
        const QString hundred(100, 'x');
        runDialog([&hundred](QDialog *dialog) { enterPassword(dialog, hundred + 'y'); });
        QCOMPARE(m_channel->trace(), reading + presenting(hundred) + removing());
    }

    void theHostMayDestroyItUnderAWarning_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<QStringList>("presented");
        QTest::newRow("no password") << "" << QStringList();
        QTest::newRow("wrong password") << "guess" << presenting("guess");
    }

    void theHostMayDestroyItUnderAWarning()
    {
        QFETCH(const QString, password);
        QFETCH(const QStringList, presented);
        m_channel->answer("config is_changeable", "no");
        QPointer<UnlockConfigDlg> dialog = new UnlockConfigDlg(m_channel.get(), nullptr);
        m_driver->expectDialog("UnlockConfigurationDialog",
                               [&password](QDialog *shown) { enterPassword(shown, password); });
        m_driver->expectDialog("", [&dialog](QDialog *box) {
            delete dialog.data();
            box->accept();
        });
        QCOMPARE(dialog->update_and_exec("hall"), int(QDialog::Rejected));
        QVERIFY(dialog.isNull());
        QCOMPARE(m_channel->trace(), reading + presented);
    }
};

VELTRA4_TEST(TestUnlockConfigDlg)
#include "tst_unlockconfigdlg.moc"

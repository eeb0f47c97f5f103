#include "dialogs/lockconfigdlg.h"
#include "tests/dialogs/smalldialogtest.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

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

QStringList locking(const QString &password)
{
    return reading
        + QStringList{
            "sendCommand config new_password '" + password + '\'',
            ScriptedChannel::announced(),
        };
}

void enterPasswords(QDialog *dialog, const QString &password, const QString &repetition)
{
    named<QLineEdit>(dialog, "lineEdit_new_password")->clear();
    named<QLineEdit>(dialog, "lineEdit_new_password_repeat")->clear();
    type(dialog, "lineEdit_new_password", password);
    type(dialog, "lineEdit_new_password_repeat", repetition);
    click(dialog, "pushButton_ok");
}

void lockWithSecret(QDialog *dialog)
{
    enterPasswords(dialog, "secret", "secret");
}

QStringList entries(QDialog *dialog)
{
    return {textOf(dialog, "lineEdit_new_password"),
            textOf(dialog, "lineEdit_new_password_repeat")};
}

SmallDialogTest::Design design()
{
    return {
        "LockConfigurationDialog",
        {{"label_configuration", "QLabel", "set passwort for configuration", ""},
         {"label", "QLabel", "", ""},
         {"label_new_password", "QLabel", "new password",
          "Input the description of the configuration"},
         {"lineEdit_new_password", "QLineEdit", "", "Input a new password for the configuration"},
         {"label_new_password_repeat", "QLabel", "new password repeat",
          "Input the owner of the configuraton"},
         {"lineEdit_new_password_repeat", "QLineEdit", "",
          "Repeat the new password of the configuraton"},
         {"label_2", "QLabel", "", ""},
         {"pushButton_ok", "QPushButton", "OK",
          "Create the new password and lock the configuration"},
         {"pushButton_cancel", "QPushButton", "Cancel", "Close without creating password"}},
        {"lineEdit_new_password", "lineEdit_new_password_repeat", "pushButton_ok",
         "pushButton_cancel"},
        "pushButton_cancel",
        reading};
}

} // namespace

class TestLockConfigDlg : public SmallDialogTest
{
    Q_OBJECT

public:
    TestLockConfigDlg()
        : SmallDialogTest(design())
    {
    }

protected:
    std::unique_ptr<QDialog> makeDialog() override
    {
        return std::make_unique<LockConfigDlg>(m_channel.get(), nullptr);
    }
    int exec(QDialog *dialog) override
    {
        return qobject_cast<LockConfigDlg *>(dialog)->update_and_exec("hall");
    }
    void scriptAnswers() override { m_channel->answer("config desc_of_config hall", "main hall"); }
    void fillIn(QDialog *dialog) override
    {
        type(dialog, "lineEdit_new_password", "secret");
        type(dialog, "lineEdit_new_password_repeat", "secret");
    }

private slots:
    void theFormIsAsDesigned()
    {
        const LockConfigDlg dialog(m_channel.get(), nullptr);
        QCOMPARE(dialog.windowTitle(), "Lock configuration dialog");
        QCOMPARE(dialog.whatsThis(), "Lock Configuration");
        QCOMPARE(dialog.size(), QSize(450, 171));
        QCOMPARE(dialog.minimumWidth(), 450);
        QVERIFY(dialog.isSizeGripEnabled());
        QCOMPARE(named<QLabel>(&dialog, "label")->minimumHeight(), 11);
        QCOMPARE(named<QLabel>(&dialog, "label")->maximumHeight(), 11);
        QCOMPARE(named<QFrame>(&dialog, "line")->frameShape(), QFrame::HLine);
        QCOMPARE(named<QFrame>(&dialog, "line")->frameShadow(), QFrame::Sunken);
        QVERIFY(named<QPushButton>(&dialog, "pushButton_ok")->autoDefault());
        QVERIFY(!named<QPushButton>(&dialog, "pushButton_cancel")->autoDefault());

        const auto *grid = dialog.findChild<QGridLayout *>("gridLayout");
        auto *password = named<QLineEdit>(&dialog, "lineEdit_new_password");
        auto *repetition = named<QLineEdit>(&dialog, "lineEdit_new_password_repeat");
        auto *passwordLabel = named<QLabel>(&dialog, "label_new_password");
        auto *repetitionLabel = named<QLabel>(&dialog, "label_new_password_repeat");
        QCOMPARE(grid->itemAtPosition(0, 0)->widget(), passwordLabel);
        QCOMPARE(grid->itemAtPosition(0, 1)->widget(), password);
        QCOMPARE(grid->itemAtPosition(1, 0)->widget(), repetitionLabel);
        QCOMPARE(grid->itemAtPosition(1, 1)->widget(), repetition);
        QCOMPARE(passwordLabel->buddy(), password);
        QCOMPARE(repetitionLabel->buddy(), repetition);
        for (const QLineEdit *field : {password, repetition}) {
            QCOMPARE(field->echoMode(), QLineEdit::Password);
            QCOMPARE(field->maxLength(), 100);
            QCOMPARE(field->validator(), password->validator());
        }
    }

    void theLabelNamesTheConfiguration_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("label");
        const QString start = "set password for configuration ";
        QTest::newRow("plain") << QByteArray("main hall") << start + "main hall";
        QTest::newRow("quoted") << QByteArray("\"main hall\"") << start + "\"main hall\"";
        QTest::newRow("place marker") << QByteArray("100 %1") << start + "100 %1";
        QTest::newRow("mark-up") << QByteArray("<b>hall</b>") << start + "<b>hall</b>";
        QTest::newRow("Latin-1") << QByteArray("K\xfc"
                                               "che")
                                 << start + "K\u00fcche";
        QTest::newRow("empty") << QByteArray() << start;
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
            lockWithSecret(dialog);
        });
        QCOMPARE(shown, "set password for configuration ");
        QCOMPARE(m_channel->trace(), locking("secret"));
    }

    void matchingEntriesAreSentOnce()
    {
        QCOMPARE(runDialog(lockWithSecret), int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), locking("secret"));
    }

    void theEnterKeyMeansOk()
    {
        const int result = runDialog([](QDialog *dialog) {
            type(dialog, "lineEdit_new_password", "secret");
            type(dialog, "lineEdit_new_password_repeat", "secret");
            press(dialog, Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), locking("secret"));
    }

    void badEntriesAreRefusedAndStay_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("repetition");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("focus");
        const QString empty = "Password must not be empty.";
        const QString different = "The entered passwords do not match.";
        const QString first = "lineEdit_new_password";
        const QString second = "lineEdit_new_password_repeat";
        QTest::newRow("both empty") << QString() << QString() << empty << first;
        QTest::newRow("first empty") << QString() << QString("abc") << empty << first;
        QTest::newRow("second empty") << QString("abc") << QString() << empty << second;
        QTest::newRow("different") << QString("abc") << QString("abd") << different << second;
        QTest::newRow("different case") << QString("abc") << QString("abC") << different << second;
        QTest::newRow("beginning only") << QString("abc") << QString("abcd") << different << second;
    }

    void badEntriesAreRefusedAndStay()
    {
        QFETCH(const QString, password);
        QFETCH(const QString, repetition);
        QFETCH(const QString, text);
        QFETCH(const QString, focus);
        ExpectedBox warning;
        warning.icon = QMessageBox::Warning;
        warning.title = "Warning";
        warning.text = text;
        warning.parent = nullptr;

        QStringList entriesAfterWarning;
        QStringList traceAfterWarning;
        const int result = runDialog([&](QDialog *dialog) {
            m_driver->expectBox(warning);
            enterPasswords(dialog, password, repetition);
            QCOMPARE(focusOf(dialog), focus);
            const auto *field = named<QLineEdit>(dialog, qPrintable(focus));
            QCOMPARE(field->hasSelectedText(), !field->text().isEmpty());
            entriesAfterWarning = entries(dialog);
            traceAfterWarning = m_channel->trace();
            enterPasswords(dialog, "better", "better");
        });
        QCOMPARE(entriesAfterWarning, QStringList({password, repetition}));
        QCOMPARE(traceAfterWarning, reading);
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), locking("better"));
    }

    void aRefusedCommandIsNotNoticed()
    {
        m_channel->failNth(2);
        QCOMPARE(runDialog(lockWithSecret), int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), locking("secret"));
    }

    void theEventPrecedesTheClosing()
    {
        bool isOpen = false;
        runDialog([&](QDialog *dialog) {
            m_channel->whenPosted("ActiveConfigurationChanged",
                                  [&isOpen, dialog] { isOpen = dialog->isVisible(); });
            lockWithSecret(dialog);
        });
        QVERIFY(isOpen);
    }

    void onlyPermittedCharactersCanBeTyped_data()
    {
        QTest::addColumn<QString>("field");
        QTest::newRow("password") << "lineEdit_new_password";
        QTest::newRow("repetition") << "lineEdit_new_password_repeat";
    }

    void onlyPermittedCharactersCanBeTyped()
    {
        QFETCH(const QString, field);
        QString typed;
        runDialog([&](QDialog *dialog) {
            type(dialog, qPrintable(field), "a b'c#d\"e\u00e4f\u20acg=h,i;j:k\\l");
            type(dialog, qPrintable(field), "AZ09_-+./");
            typed = textOf(dialog, qPrintable(field));
            dialog->reject();
        });
        QCOMPARE(typed, "abcdefghijklAZ09_-+./");
    }

    void aHundredCharactersAreTheLimit()
    {
        const QString hundred(100, 'x');
        runDialog([&hundred](QDialog *dialog) { enterPasswords(dialog, hundred, hundred + 'y'); });
        QCOMPARE(m_channel->trace(), locking(hundred));
    }

    void theHostMayDestroyItUnderAWarning_data()
    {
        QTest::addColumn<QString>("repetition");
        QTest::newRow("empty") << "";
        QTest::newRow("different") << "abd";
    }

    void theHostMayDestroyItUnderAWarning()
    {
        QFETCH(const QString, repetition);
        QPointer<LockConfigDlg> dialog = new LockConfigDlg(m_channel.get(), nullptr);
        m_driver->expectDialog("LockConfigurationDialog", [&repetition](QDialog *shown) {
            enterPasswords(shown, "abc", repetition);
        });
        m_driver->expectDialog("", [&dialog](QDialog *box) {
            delete dialog.data();
            box->accept();
        });
        QCOMPARE(dialog->update_and_exec("hall"), int(QDialog::Rejected));
        QVERIFY(dialog.isNull());
        QCOMPARE(m_channel->trace(), reading);
    }
};

VELTRA4_TEST(TestLockConfigDlg)
#include "tst_lockconfigdlg.moc"

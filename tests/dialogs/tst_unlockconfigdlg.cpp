#include "dialogs/unlockconfigdlg.h"
#include "tests/dialogs/smalldialogtest.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QPushButton>
#include <QTest>

using UserInput::click;
using UserInput::focusOf;
using UserInput::named;
using UserInput::press;
using UserInput::textOf;

namespace {

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

SmallDialogTest::Design unlockDesign()
{
    SmallDialogTest::Design design;
    design.objectName = "UnlockConfigurationDialog";
    design.widgets = {
        {"label_configuration", "QLabel", "unlock configuration []:", ""},
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
        {"pushButton_cancel", "QPushButton", "Cancel", "Close the dialog"},
    };
    design.properties = {
        {nullptr, "windowTitle", "Unlock Configuration"},
        {nullptr, "whatsThis", "Unlock configuration dialog"},
        {nullptr, "size", QSize(500, 200)},
        {nullptr, "maximumSize", QSize(10000, 10000)},
        {"checkBox_use_super_password", "checked", false},
        {"pushButton_cancel", "autoDefault", true},
    };
    design.grid = {{"label", "lineEdit_password", "checkBox_use_super_password"},
                   {"label_5", "label_description", "label_description"}};
    design.tabOrder = QStringList{"lineEdit_password", "checkBox_use_super_password",
                                  "pushButton_ok", "pushButton_cancel"};
    design.okButton = "pushButton_ok";
    design.cancelButton = "pushButton_cancel";
    design.fields = QStringList{"lineEdit_password"};
    design.takesPasswords = true;
    design.entries = QStringList{"secret"};
    design.sent = presenting("secret") + removing();
    design.ignoredFrom = 4;
    design.readings = {
        {"config desc_of_config hall", "\"100 %1\" <b>B\xfcro</b>", "label_configuration",
         "unlock configuration \"100 %1\" <b>B\u00fcro</b>:", "unlock configuration :"}};
    design.refusals = {
        {{""}, "Please enter the password for this configuration.", "lineEdit_password"}};
    return design;
}

} // namespace

class TestUnlockConfigDlg : public SmallDialogTest
{
    Q_OBJECT

public:
    TestUnlockConfigDlg()
        : SmallDialogTest(unlockDesign())
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

private slots:
    void theRightSuperPasswordUnlocksAndIsWithdrawn()
    {
        QList<bool> isOpen;
        const int result = runDialog([&](QDialog *dialog) {
            const auto look = [&isOpen, dialog] { isOpen << dialog->isVisible(); };
            m_channel->whenPosted("ActiveConfigurationChanged", look);
            m_channel->whenSent("config super_password '.'", look);
            choosePasswordKind(dialog, true);
            enterAndAccept(dialog);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(trace(), reading() + presentingSuper("secret") + removing() + withdrawing);
        QCOMPARE(isOpen, QList<bool>({true, true}));
    }

    void otherFailuresThanThatOfTheCheckAreNotNoticed()
    {
        for (const char *command : {"config super_password 'secret'", "config new_password none",
                                    "config super_password '.'"}) {
            m_channel->fail(command);
        }
        const int result = runDialog([this](QDialog *dialog) {
            choosePasswordKind(dialog, true);
            enterAndAccept(dialog);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(trace(), reading() + presentingSuper("secret") + removing() + withdrawing);
    }

    void theEnterKeyOnCancelCancels()
    {
        const int result = runDialog([this](QDialog *dialog) {
            enter(dialog);
            named<QPushButton>(dialog, "pushButton_cancel")->setFocus();
            press(dialog, Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QCOMPARE(trace(), reading());
    }

    void onlyYesMeansChangeable_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("no") << QByteArray("no");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("capital first") << QByteArray("Yes");
        QTest::newRow("blank before") << QByteArray(" yes");
        QTest::newRow("line break after") << QByteArray("yes\n");
        QTest::newRow("quoted") << QByteArray("\"yes\"");
        QTest::newRow("a longer word") << QByteArray("yesterday");
        QTest::newRow("its beginning") << QByteArray("ye");
    }

    void onlyYesMeansChangeable()
    {
        QFETCH(const QByteArray, answer);
        m_channel->answer("config is_changeable", answer);
        runDialog([this](QDialog *dialog) {
            expectWarning("The password is invalid.");
            enterAndAccept(dialog);
            dialog->reject();
        });
        QCOMPARE(trace(), reading() + presenting("secret"));
    }

    void aWrongPasswordIsClearedForAnotherTry_data() { addPasswordKinds(); }

    void aWrongPasswordIsClearedForAnotherTry()
    {
        QFETCH(const bool, isSuper);
        m_channel->answerInTurn("config is_changeable", {"no", "yes"});
        const int result = runDialog([&](QDialog *dialog) {
            choosePasswordKind(dialog, isSuper);
            expectWarning(isSuper ? "The super password is invalid." : "The password is invalid.");
            enterAndAccept(dialog, {"guess"});
            QCOMPARE(textOf(dialog, "lineEdit_password"), "");
            QCOMPARE(focusOf(dialog), "lineEdit_password");
            enterAndAccept(dialog);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        // Only the right super password is withdrawn.
        const QStringList sent = isSuper
            ? presentingSuper("guess") + presentingSuper("secret") + removing() + withdrawing
            : presenting("guess") + presenting("secret") + removing();
        QCOMPARE(trace(), reading() + sent);
    }

    void aFailedCheckIsReportedAndNothingElseHappens_data() { addPasswordKinds(); }

    void aFailedCheckIsReportedAndNothingElseHappens()
    {
        QFETCH(const bool, isSuper);
        m_channel->fail("config is_changeable");
        runDialog([&](QDialog *dialog) {
            choosePasswordKind(dialog, isSuper);
            enterAndAccept(dialog);
            QCOMPARE(textOf(dialog, "lineEdit_password"), "secret");
            QVERIFY(dialog->isVisible());
            dialog->reject();
        });
        const QStringList presented = isSuper ? presentingSuper("secret") : presenting("secret");
        QCOMPARE(trace(),
                 reading() + presented
                     + QStringList{ScriptedChannel::reported("configuration cannot be checked.")});
    }

    void theHostMayDestroyItUnderTheWarningAboutAWrongPassword()
    {
        m_channel->answer("config is_changeable", "no");
        destroyUnderBox([this](QDialog *dialog) { enterAndAccept(dialog); }, presenting("secret"));
    }

private:
    static void addPasswordKinds()
    {
        QTest::addColumn<bool>("isSuper");
        QTest::newRow("password") << false;
        QTest::newRow("super password") << true;
    }

    static void choosePasswordKind(QDialog *dialog, bool isSuper)
    {
        if (isSuper) {
            click(dialog, "checkBox_use_super_password");
            QCOMPARE(focusOf(dialog), "lineEdit_password");
        }
    }
};

VELTRA4_TEST(TestUnlockConfigDlg)
#include "tst_unlockconfigdlg.moc"

#include "dialogs/lockconfigdlg.h"
#include "tests/dialogs/smalldialogtest.h"
#include "tests/support/testmain.h"

namespace {

SmallDialogTest::Design lockDesign()
{
    SmallDialogTest::Design design;
    design.objectName = "LockConfigurationDialog";
    design.widgets = {
        {"label_configuration", "QLabel", "set passwort for configuration", ""},
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
        {"pushButton_cancel", "QPushButton", "Cancel", "Close without creating password"},
    };
    design.properties = {
        {nullptr, "windowTitle", "Lock configuration dialog"},
        {nullptr, "whatsThis", "Lock Configuration"},
        {nullptr, "size", QSize(450, 171)},
        {nullptr, "minimumWidth", 450},
        {nullptr, "sizeGripEnabled", true},
        {"label", "minimumHeight", 11},
        {"label", "maximumHeight", 11},
        {"pushButton_cancel", "autoDefault", false},
    };
    design.grid = {{"label_new_password", "lineEdit_new_password"},
                   {"label_new_password_repeat", "lineEdit_new_password_repeat"}};
    design.okButton = "pushButton_ok";
    design.cancelButton = "pushButton_cancel";
    design.fields = QStringList{"lineEdit_new_password", "lineEdit_new_password_repeat"};
    design.tabOrder = design.fields + QStringList{"pushButton_ok", "pushButton_cancel"};
    design.takesPasswords = true;
    design.entries = QStringList{"secret", "secret"};
    design.sent =
        QStringList{"sendCommand config new_password 'secret'", ScriptedChannel::announced()};
    design.ignoredFrom = 2;
    design.readings = {{"config desc_of_config hall", "\"100 %1\" <b>B\xfcro</b>",
                        "label_configuration",
                        "set password for configuration \"100 %1\" <b>B\u00fcro</b>",
                        "set password for configuration "}};
    const QString empty = "Password must not be empty.";
    const QString different = "The entered passwords do not match.";
    design.refusals = {
        {{"", ""}, empty, design.fields.first()},
        {{"", "abc"}, empty, design.fields.first()},
        {{"abc", ""}, empty, design.fields.last()},
        {{"abc", "abC"}, different, design.fields.last()},
        {{"abc", "abcd"}, different, design.fields.last()},
    };
    return design;
}

} // namespace

class TestLockConfigDlg : public SmallDialogTest
{
    Q_OBJECT

public:
    TestLockConfigDlg()
        : SmallDialogTest(lockDesign())
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
};

VELTRA4_TEST(TestLockConfigDlg)
#include "tst_lockconfigdlg.moc"

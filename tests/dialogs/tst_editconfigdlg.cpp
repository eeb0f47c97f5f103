#include "dialogs/editconfigdlg.h"
#include "tests/dialogs/smalldialogtest.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QTest>

using UserInput::click;
using UserInput::textOf;
using UserInput::type;

namespace {

QStringList storing(const QString &description, const QString &owner)
{
    return {"sendCommand config active_config hall", "sendCommand config owner \"" + owner + '"',
            "sendCommand config desc \"" + description + '"', ScriptedChannel::announced()};
}

SmallDialogTest::Design editDesign()
{
    SmallDialogTest::Design design;
    design.objectName = "EditConfigDialog";
    design.widgets = {
        {"label", "QLabel", "&description", "Edit description of the configuration"},
        {"lineEdit_desc", "QLineEdit", "", "Edit the description of the configuration"},
        {"label_2", "QLabel", "&owner", "Edit owner of the configuration"},
        {"lineEdit_owner", "QLineEdit", "", "Edit the owner of the configuration"},
        {"label_configId", "QLabel", "&ID", "Config ID of the configuration"},
        {"lineEdit_configId", "QLineEdit", "", "Config ID of the configuration"},
        {"pushButton_ok", "QPushButton", "OK", "Accept changes and close"},
        {"pushButton_2", "QPushButton", "Cancel", "Discard changes and close"},
    };
    design.properties = {
        {nullptr, "windowTitle", "Edit Configuration"},
        {nullptr, "whatsThis", "Edit selected configuration"},
        {nullptr, "size", QSize(400, 156)},
        {"lineEdit_configId", "readOnly", true},
        {"pushButton_2", "autoDefault", false},
    };
    design.grid = {{"label", "lineEdit_desc"},
                   {"label_2", "lineEdit_owner"},
                   {"label_configId", "lineEdit_configId"}};
    design.tabOrder = QStringList{"lineEdit_desc", "lineEdit_owner", "lineEdit_configId",
                                  "pushButton_ok", "pushButton_2"};
    design.okButton = "pushButton_ok";
    design.cancelButton = "pushButton_2";
    design.fields = QStringList{"lineEdit_desc", "lineEdit_owner"};
    design.entries = QStringList{"hall, 2 cameras", "me"};
    design.sent = storing("hall, 2 cameras", "me");
    design.ignoredFrom = 3;
    design.readings = {
        {"config owner_of_config hall", R"("the ""operator")", "lineEdit_owner", "the operator",
         ""},
        {"config desc_of_config hall", R"("main "large" hall")", "lineEdit_desc", "main large hall",
         ""},
    };
    design.refusals = {
        {{"", "me"}, "Configuration description must not be empty.", "lineEdit_desc"}};
    return design;
}

} // namespace

class TestEditConfigDlg : public SmallDialogTest
{
    Q_OBJECT

public:
    TestEditConfigDlg()
        : SmallDialogTest(editDesign())
    {
    }

protected:
    std::unique_ptr<QDialog> makeDialog() override
    {
        return std::make_unique<EditConfigDlg>(m_channel.get(), nullptr);
    }
    int exec(QDialog *dialog) override
    {
        return qobject_cast<EditConfigDlg *>(dialog)->update_and_exec("hall");
    }

private slots:
    void okWithoutChangesSendsEverythingAllTheSame()
    {
        QString identifier;
        runDialog([&identifier](QDialog *dialog) {
            type(dialog, "lineEdit_configId", "x"); // cannot be edited
            identifier = textOf(dialog, "lineEdit_configId");
            click(dialog, "pushButton_ok");
        });
        QCOMPARE(identifier, "hall");
        QCOMPARE(trace(), reading() + storing("main large hall", "the operator"));
    }

    void blanksAreADescription()
    {
        QCOMPARE(runDialog([this](QDialog *dialog) {
                     enterAndAccept(dialog, {" ", ""});
                 }),
                 int(QDialog::Accepted));
        QCOMPARE(trace(), reading() + storing(" ", ""));
    }

    void noQuoteIsEverSentBack()
    {
        // A stored text may hold characters that cannot be typed; a line edit that starts with one
        // of them lets everything through.
        m_channel->answer("config owner_of_config hall", "\"J\xf6rg\"");
        m_channel->answer("config desc_of_config hall", "\"B\xfcro\"");
        runDialog([](QDialog *dialog) {
            type(dialog, "lineEdit_owner", "\"");
            type(dialog, "lineEdit_desc", " \"2\"");
            click(dialog, "pushButton_ok");
        });
        QCOMPARE(trace(), reading() + storing("B\u00fcro 2", "J\u00f6rg"));
    }
};

VELTRA4_TEST(TestEditConfigDlg)
#include "tst_editconfigdlg.moc"

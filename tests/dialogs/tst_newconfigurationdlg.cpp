#include "dialogs/newconfigurationdlg.h"
#include "tests/dialogs/smalldialogtest.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QApplication>
#include <QTest>

using UserInput::click;
using UserInput::focusOf;
using UserInput::press;

namespace {

QStringList creation(const QString &command, const QString &description, const QString &owner)
{
    return {
        "queryString config active_config",
        "setTimeout 0 20000 1",
        "sendCommandReply veltra2 config " + command,
        "sendCommand config new_password none",
        "sendCommand config owner \"" + owner + "\" ",
        "sendCommand config desc \"" + description + "\" ",
        ScriptedChannel::announced(),
    };
}

SmallDialogTest::Design newDesign()
{
    SmallDialogTest::Design design;
    design.objectName = "NewConfigurationDialog";
    design.widgets = {
        {"label", "QLabel", "de&scription", "Input the description of the configuration"},
        {"lineEdit_desc", "QLineEdit", "", "Input the description of the configuration"},
        {"label_2", "QLabel", "&owner", "Input the owner of the configuraton"},
        {"lineEdit_owner", "QLineEdit", "", "Input the owner of the configuraton"},
        {"radioButton_clone", "QRadioButton", "clo&ne current configuration",
         "Clone current configuration or create a new one"},
        {"radioButton_new", "QRadioButton", "create with &default values",
         "Clone current configuration or create a new one"},
        {"pushButton_create", "QPushButton", "&Create", "Create configuration and close"},
        {"pushButton_2", "QPushButton", "Cancel", "Close without creating a configuration"},
    };
    design.properties = {
        {nullptr, "windowTitle", "New Configuration"},
        {nullptr, "whatsThis", "Create new configuration"},
        {nullptr, "size", QSize(450, 170)},
        {nullptr, "sizeGripEnabled", true},
        {"radioButton_clone", "checked", true},
        {"pushButton_2", "autoDefault", false},
    };
    design.grid = {{"label", "lineEdit_desc"}, {"label_2", "lineEdit_owner"}};
    design.tabOrder = QStringList{"lineEdit_desc", "lineEdit_owner", "radioButton_clone",
                                  "pushButton_create", "pushButton_2"};
    design.okButton = "pushButton_create";
    design.cancelButton = "pushButton_2";
    design.fields = QStringList{"lineEdit_desc", "lineEdit_owner"};
    design.entries = QStringList{"main hall, 2 cameras", "A. Operator"};
    design.sent =
        creation("clone_config configSTAMP standard", "main hall, 2 cameras", "A. Operator");
    design.ignoredFrom = 2;
    design.announcesWhileOpen = false;
    design.refusals = {{{"", "me"}, "Please enter a configuration description.", "lineEdit_desc"}};
    design.ownsWarnings = true;
    return design;
}

} // namespace

class TestNewConfigurationDlg : public SmallDialogTest
{
    Q_OBJECT

public:
    TestNewConfigurationDlg()
        : SmallDialogTest(newDesign())
    {
    }

protected:
    std::unique_ptr<QDialog> makeDialog() override
    {
        return std::make_unique<NewConfigurationDlg>(m_channel.get(), nullptr);
    }
    int exec(QDialog *dialog) override
    {
        return qobject_cast<NewConfigurationDlg *>(dialog)->update_and_exec();
    }

private slots:
    void aMnemonicReachesTheOwner()
    {
        QString focused;
        runDialog([&focused](QDialog *dialog) {
            press(dialog, Qt::Key_O, Qt::AltModifier);
            focused = focusOf(dialog);
            dialog->reject();
        });
        QCOMPARE(focused, "lineEdit_owner");
    }

    void defaultValuesNeedNoSourceButItIsAskedFor()
    {
        runDialog([this](QDialog *dialog) {
            click(dialog, "radioButton_new");
            enterAndAccept(dialog, {"hall", "me"});
        });
        QCOMPARE(trace(), creation("new_config configSTAMP", "hall", "me"));
    }

    void blanksAreADescriptionAndTheOwnerMayBeEmpty()
    {
        QCOMPARE(runDialog([this](QDialog *dialog) {
                     enterAndAccept(dialog, {"  ", ""});
                 }),
                 int(QDialog::Accepted));
        QCOMPARE(trace(), creation("clone_config configSTAMP standard", "  ", ""));
    }

    void twoConfigurationsNeverShareAnIdentifier()
    {
        QStringList commands;
        for (int i = 0; i < 2; ++i) {
            runDialog([this](QDialog *dialog) { enterAndAccept(dialog, {"x", ""}); });
            commands << m_channel->takeTrace().at(2);
        }
        QVERIFY(commands.first() != commands.last());
    }

    void aFailedQueryLeavesTheSourceEmpty()
    {
        m_channel->failNth(1);
        QCOMPARE(runDialog([this](QDialog *dialog) {
                     enterAndAccept(dialog, {"hall", ""});
                 }),
                 int(QDialog::Accepted));
        QCOMPARE(trace(), creation("clone_config configSTAMP ", "hall", ""));
    }

    void theDialogsOwnCursorWaits()
    {
        QList<Qt::CursorShape> shapes;
        bool applicationWaits = false;
        runDialog([&](QDialog *dialog) {
            const auto look = [&shapes, &applicationWaits, dialog] {
                shapes << dialog->cursor().shape();
                applicationWaits = applicationWaits || QApplication::overrideCursor() != nullptr;
            };
            m_channel->whenSent("config active_config", look);
            m_channel->whenSent("config desc \"hall\" ", look);
            m_channel->whenPosted("ActiveConfigurationChanged", look);
            look();
            enterAndAccept(dialog, {"hall", ""});
        });
        const QList<Qt::CursorShape> expected{Qt::ArrowCursor, Qt::WaitCursor, Qt::WaitCursor,
                                              Qt::ArrowCursor};
        QCOMPARE(shapes, expected);
        QVERIFY(!applicationWaits);
    }
};

VELTRA4_TEST(TestNewConfigurationDlg)
#include "tst_newconfigurationdlg.moc"

#include "dialogs/newconfigurationdlg.h"
#include "tests/dialogs/smalldialogtest.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QtTest>

using UserInput::click;
using UserInput::focusOf;
using UserInput::named;
using UserInput::press;
using UserInput::textOf;
using UserInput::type;

namespace {

// The trace with the clock's part of the new identifier replaced, once its form has been checked.
QStringList withoutStamp(QStringList trace)
{
    static const QRegularExpression stamp(QStringLiteral(R"(\bconfig20\d{12}\d{1,3}\b)"));
    return trace.replaceInStrings(stamp, QStringLiteral("configSTAMP"));
}

QStringList creation(const QString &command, const QString &owner, const QString &description)
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

void createHall(QDialog *dialog)
{
    type(dialog, "lineEdit_desc", "hall");
    click(dialog, "pushButton_create");
}

SmallDialogTest::Design design()
{
    return {"NewConfigurationDialog",
            {{"label", "QLabel", "de&scription", "Input the description of the configuration"},
             {"lineEdit_desc", "QLineEdit", "", "Input the description of the configuration"},
             {"label_2", "QLabel", "&owner", "Input the owner of the configuraton"},
             {"lineEdit_owner", "QLineEdit", "", "Input the owner of the configuraton"},
             {"radioButton_clone", "QRadioButton", "clo&ne current configuration",
              "Clone current configuration or create a new one"},
             {"radioButton_new", "QRadioButton", "create with &default values",
              "Clone current configuration or create a new one"},
             {"line", "QFrame", "", ""},
             {"pushButton_create", "QPushButton", "&Create", "Create configuration and close"},
             {"pushButton_2", "QPushButton", "Cancel", "Close without creating a configuration"}},
            {"lineEdit_desc", "lineEdit_owner", "radioButton_clone", "pushButton_create",
             "pushButton_2"},
            "pushButton_2",
            {}};
}

} // namespace

class TestNewConfigurationDlg : public SmallDialogTest
{
    Q_OBJECT

public:
    TestNewConfigurationDlg()
        : SmallDialogTest(design())
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
    void scriptAnswers() override { m_channel->answer("config active_config", "standard"); }
    void fillIn(QDialog *dialog) override { type(dialog, "lineEdit_desc", "hall"); }

private slots:
    void theFormIsAsDesigned()
    {
        const NewConfigurationDlg dialog(m_channel.get(), nullptr);
        QCOMPARE(dialog.windowTitle(), "New Configuration");
        QCOMPARE(dialog.whatsThis(), "Create new configuration");
        QCOMPARE(dialog.size(), QSize(450, 170));
        QVERIFY(dialog.isSizeGripEnabled());
        QCOMPARE(named<QLabel>(&dialog, "label")->buddy()->objectName(), "lineEdit_desc");
        QCOMPARE(named<QLabel>(&dialog, "label_2")->buddy()->objectName(), "lineEdit_owner");
        QCOMPARE(named<QLineEdit>(&dialog, "lineEdit_desc")->maxLength(), 100);
        QCOMPARE(named<QLineEdit>(&dialog, "lineEdit_owner")->maxLength(), 100);
        QCOMPARE(named<QLineEdit>(&dialog, "lineEdit_desc")->validator(),
                 named<QLineEdit>(&dialog, "lineEdit_owner")->validator());
        QVERIFY(named<QRadioButton>(&dialog, "radioButton_clone")->isChecked());
        QCOMPARE(named<QFrame>(&dialog, "line")->frameShape(), QFrame::HLine);
        QVERIFY(named<QPushButton>(&dialog, "pushButton_create")->autoDefault());
        QVERIFY(!named<QPushButton>(&dialog, "pushButton_2")->autoDefault());
        QVERIFY(dialog.findChild<QVBoxLayout *>("verticalLayout"));
        QVERIFY(dialog.findChild<QGridLayout *>("gridLayout"));
        QVERIFY(dialog.findChild<QHBoxLayout *>("horizontalLayout"));
    }

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

    void theActiveConfigurationIsCloned()
    {
        m_channel->answer("config active_config", "config20240102030405678");
        const int result = runDialog([](QDialog *dialog) {
            type(dialog, "lineEdit_desc", "main hall, 2 cameras");
            type(dialog, "lineEdit_owner", "A. Operator");
            click(dialog, "pushButton_create");
        });
        QCOMPARE(result, int(QDialog::Accepted));
        const QStringList trace = m_channel->trace();
        QVERIFY(trace.at(2).endsWith(" config20240102030405678"));
        QCOMPARE(withoutStamp(trace),
                 creation("clone_config configSTAMP configSTAMP", "A. Operator",
                          "main hall, 2 cameras"));
    }

    void defaultValuesNeedNoSourceButItIsAskedFor()
    {
        const int result = runDialog([](QDialog *dialog) {
            type(dialog, "lineEdit_desc", "empty hall");
            type(dialog, "lineEdit_owner", "operator");
            click(dialog, "radioButton_new");
            click(dialog, "pushButton_create");
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(withoutStamp(m_channel->trace()),
                 creation("new_config configSTAMP", "operator", "empty hall"));
    }

    void theOwnerMayBeEmpty()
    {
        runDialog(createHall);
        QCOMPARE(withoutStamp(m_channel->trace()),
                 creation("clone_config configSTAMP standard", "", "hall"));
    }

    void blanksAreADescription()
    {
        const int result = runDialog([](QDialog *dialog) {
            type(dialog, "lineEdit_desc", "  ");
            click(dialog, "pushButton_create");
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(withoutStamp(m_channel->trace()),
                 creation("clone_config configSTAMP standard", "", "  "));
    }

    void twoConfigurationsNeverShareAnIdentifier()
    {
        QStringList commands;
        for (int i = 0; i < 2; ++i) {
            runDialog([](QDialog *dialog) {
                named<QLineEdit>(dialog, "lineEdit_desc")->setText("hall");
                named<QPushButton>(dialog, "pushButton_create")->click();
            });
            commands << m_channel->takeTrace().at(2);
        }
        QVERIFY(commands.first() != commands.last());
    }

    void theEnterKeyCreates()
    {
        const int result = runDialog([](QDialog *dialog) {
            type(dialog, "lineEdit_desc", "hall");
            press(dialog, Qt::Key_Return);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(withoutStamp(m_channel->trace()),
                 creation("clone_config configSTAMP standard", "", "hall"));
    }

    void anEmptyDescriptionIsRefusedAndTheInputStays()
    {
        QString ownerAfterWarning;
        QStringList traceAfterWarning;
        const int result = runDialog([&](QDialog *dialog) {
            ExpectedBox warning;
            warning.icon = QMessageBox::Warning;
            warning.title = "Warning";
            warning.text = "Please enter a configuration description.";
            warning.parent = dialog;
            m_driver->expectBox(warning);
            type(dialog, "lineEdit_owner", "operator");
            click(dialog, "radioButton_new");
            click(dialog, "pushButton_create");
            QCOMPARE(focusOf(dialog), "lineEdit_desc");
            ownerAfterWarning = textOf(dialog, "lineEdit_owner");
            traceAfterWarning = m_channel->trace();
            createHall(dialog);
        });
        QCOMPARE(ownerAfterWarning, "operator");
        QCOMPARE(traceAfterWarning, QStringList());
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(withoutStamp(m_channel->trace()),
                 creation("new_config configSTAMP", "operator", "hall"));
    }

    void everyCommandIsSentWhateverFails_data()
    {
        QTest::addColumn<int>("failing");
        QTest::addColumn<bool>("lasting");
        // The first one is the query for the source.
        for (int failing = 2; failing <= 5; ++failing) {
            QTest::addRow("command %d fails", failing) << failing << false;
            QTest::addRow("all from command %d fail", failing) << failing << true;
        }
    }

    void everyCommandIsSentWhateverFails()
    {
        QFETCH(const int, failing);
        QFETCH(const bool, lasting);
        m_channel->failNth(failing, lasting);
        const int result = runDialog(createHall);
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(withoutStamp(m_channel->trace()),
                 creation("clone_config configSTAMP standard", "", "hall"));
    }

    void aFailedQueryLeavesTheSourceEmpty()
    {
        m_channel->failNth(1);
        const int result = runDialog(createHall);
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(withoutStamp(m_channel->trace()),
                 creation("clone_config configSTAMP ", "", "hall"));
    }

    void theEventFollowsTheClosing()
    {
        bool isOpen = true;
        int resultSoFar = QDialog::Rejected;
        runDialog([&](QDialog *dialog) {
            m_channel->whenPosted("ActiveConfigurationChanged", [&isOpen, &resultSoFar, dialog] {
                isOpen = dialog->isVisible();
                resultSoFar = dialog->result();
            });
            createHall(dialog);
        });
        QVERIFY(!isOpen);
        QCOMPARE(resultSoFar, int(QDialog::Accepted));
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
            createHall(dialog);
        });
        const QList<Qt::CursorShape> expected{Qt::ArrowCursor, Qt::WaitCursor, Qt::WaitCursor,
                                              Qt::ArrowCursor};
        QCOMPARE(shapes, expected);
        QVERIFY(!applicationWaits);
    }

    void onlyPermittedCharactersCanBeTyped_data()
    {
        QTest::addColumn<QString>("field");
        QTest::newRow("description") << "lineEdit_desc";
        QTest::newRow("owner") << "lineEdit_owner";
    }

    void onlyPermittedCharactersCanBeTyped()
    {
        QFETCH(const QString, field);
        QString typed;
        runDialog([&](QDialog *dialog) {
            type(dialog, qPrintable(field), "a\"b\\c'd#e%f\u00e4g\u20ach<i>j&k");
            type(dialog, qPrintable(field), "AZ09 _-+=.,;:/");
            typed = textOf(dialog, qPrintable(field));
            dialog->reject();
        });
        QCOMPARE(typed, "abcdefghijkAZ09 _-+=.,;:/");
    }

    void aHundredCharactersAreTheLimit()
    {
        const QString hundred(100, 'x');
        runDialog([&hundred](QDialog *dialog) {
            type(dialog, "lineEdit_desc", hundred + 'y');
            type(dialog, "lineEdit_owner", hundred + 'z');
            click(dialog, "pushButton_create");
        });
        QCOMPARE(withoutStamp(m_channel->trace()),
                 creation("clone_config configSTAMP standard", hundred, hundred));
    }

    void theHostMayDestroyItUnderTheWarning()
    {
        QPointer<NewConfigurationDlg> dialog = new NewConfigurationDlg(m_channel.get(), nullptr);
        m_driver->expectDialog("NewConfigurationDialog",
                               [](QDialog *shown) { click(shown, "pushButton_create"); });
        m_driver->expectDialog("", [&dialog](QDialog *) { delete dialog.data(); });
        QCOMPARE(dialog->update_and_exec(), int(QDialog::Rejected));
        QVERIFY(dialog.isNull());
        QCOMPARE(m_channel->trace(), QStringList());
    }
};

VELTRA4_TEST(TestNewConfigurationDlg)
#include "tst_newconfigurationdlg.moc"

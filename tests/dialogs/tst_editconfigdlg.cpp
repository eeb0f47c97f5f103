#include "dialogs/editconfigdlg.h"
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

const QStringList reading{
    "queryString config owner_of_config hall",
    "queryString config desc_of_config hall",
};

QStringList editing(const QString &owner, const QString &description)
{
    return reading
        + QStringList{
            "sendCommand config active_config hall",
            "sendCommand config owner \"" + owner + '"',
            "sendCommand config desc \"" + description + '"',
            ScriptedChannel::announced(),
        };
}

void clickOk(QDialog *dialog)
{
    click(dialog, "pushButton_ok");
}

SmallDialogTest::Design design()
{
    return {
        "EditConfigDialog",
        {{"label", "QLabel", "&description", "Edit description of the configuration"},
         {"lineEdit_desc", "QLineEdit", "", "Edit the description of the configuration"},
         {"label_2", "QLabel", "&owner", "Edit owner of the configuration"},
         {"lineEdit_owner", "QLineEdit", "", "Edit the owner of the configuration"},
         {"label_configId", "QLabel", "&ID", "Config ID of the configuration"},
         {"lineEdit_configId", "QLineEdit", "", "Config ID of the configuration"},
         {"line", "QFrame", "", ""},
         {"pushButton_ok", "QPushButton", "OK", "Accept changes and close"},
         {"pushButton_2", "QPushButton", "Cancel", "Discard changes and close"}},
        {"lineEdit_desc", "lineEdit_owner", "lineEdit_configId", "pushButton_ok", "pushButton_2"},
        "pushButton_2",
        reading};
}

} // namespace

class TestEditConfigDlg : public SmallDialogTest
{
    Q_OBJECT

public:
    TestEditConfigDlg()
        : SmallDialogTest(design())
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
    void scriptAnswers() override
    {
        m_channel->answer("config owner_of_config hall", "\"operator\"");
        m_channel->answer("config desc_of_config hall", "\"main hall\"");
    }
    void fillIn(QDialog *dialog) override { type(dialog, "lineEdit_desc", " and more"); }

private slots:
    void theFormIsAsDesigned()
    {
        const EditConfigDlg dialog(m_channel.get(), nullptr);
        QCOMPARE(dialog.windowTitle(), "Edit Configuration");
        QCOMPARE(dialog.whatsThis(), "Edit selected configuration");
        QCOMPARE(dialog.size(), QSize(400, 156));
        QCOMPARE(named<QLabel>(&dialog, "label")->buddy()->objectName(), "lineEdit_desc");
        QCOMPARE(named<QLabel>(&dialog, "label_2")->buddy()->objectName(), "lineEdit_owner");
        QCOMPARE(named<QLabel>(&dialog, "label_configId")->buddy()->objectName(),
                 "lineEdit_configId");
        QCOMPARE(named<QLineEdit>(&dialog, "lineEdit_desc")->maxLength(), 100);
        QCOMPARE(named<QLineEdit>(&dialog, "lineEdit_owner")->maxLength(), 100);
        QCOMPARE(named<QLineEdit>(&dialog, "lineEdit_desc")->validator(),
                 named<QLineEdit>(&dialog, "lineEdit_owner")->validator());
        QVERIFY(named<QLineEdit>(&dialog, "lineEdit_configId")->isReadOnly());
        QCOMPARE(named<QFrame>(&dialog, "line")->frameShape(), QFrame::HLine);
        QVERIFY(named<QPushButton>(&dialog, "pushButton_ok")->autoDefault());
        QVERIFY(!named<QPushButton>(&dialog, "pushButton_2")->autoDefault());
        QVERIFY(dialog.findChild<QVBoxLayout *>("verticalLayout"));
        QVERIFY(dialog.findChild<QGridLayout *>("gridLayout"));
        QVERIFY(dialog.findChild<QHBoxLayout *>("horizontalLayout"));
    }

    void itShowsWhatTheControllerStores()
    {
        QStringList shown;
        runDialog([&shown](QDialog *dialog) {
            shown << textOf(dialog, "lineEdit_desc") << textOf(dialog, "lineEdit_owner")
                  << textOf(dialog, "lineEdit_configId");
            dialog->reject();
        });
        QCOMPARE(shown, QStringList({"main hall", "operator", "hall"}));
    }

    void aFieldThatIsNotAnsweredStaysEmpty_data()
    {
        QTest::addColumn<int>("failing");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("owner") << 1 << QStringList{"main hall", ""};
        QTest::newRow("description") << 2 << QStringList{"", "operator"};
    }

    void aFieldThatIsNotAnsweredStaysEmpty()
    {
        QFETCH(const int, failing);
        QFETCH(const QStringList, shown);
        m_channel->failNth(failing);
        QStringList actual;
        runDialog([&actual](QDialog *dialog) {
            actual << textOf(dialog, "lineEdit_desc") << textOf(dialog, "lineEdit_owner");
            dialog->reject();
        });
        QCOMPARE(actual, shown);
        QCOMPARE(m_channel->trace(), reading);
    }

    void storedQuotesAreNeitherShownNorSentBack()
    {
        m_channel->answer("config owner_of_config hall", R"("the ""operator")");
        m_channel->answer("config desc_of_config hall", R"("main "large" hall")");
        QStringList shown;
        runDialog([&shown](QDialog *dialog) {
            shown << textOf(dialog, "lineEdit_desc") << textOf(dialog, "lineEdit_owner");
            clickOk(dialog);
        });
        QCOMPARE(shown, QStringList({"main large hall", "the operator"}));
        QCOMPARE(m_channel->trace(), editing("the operator", "main large hall"));
    }

    void okSendsBothFields()
    {
        const int result = runDialog([](QDialog *dialog) {
            type(dialog, "lineEdit_desc", ", 2 cameras");
            type(dialog, "lineEdit_owner", " A");
            clickOk(dialog);
        });
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), editing("operator A", "main hall, 2 cameras"));
    }

    void okWithoutChangesSendsEverythingAllTheSame()
    {
        QCOMPARE(runDialog(clickOk), int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), editing("operator", "main hall"));
    }

    void theEnterKeyMeansOk()
    {
        QCOMPARE(runDialog([](QDialog *dialog) { press(dialog, Qt::Key_Return); }),
                 int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), editing("operator", "main hall"));
    }

    void anEmptyDescriptionIsRefusedAndTheInputStays()
    {
        ExpectedBox warning;
        warning.icon = QMessageBox::Warning;
        warning.title = "Warning";
        warning.text = "Configuration description must not be empty.";
        warning.parent = nullptr;

        QString ownerAfterWarning;
        QStringList traceAfterWarning;
        const int result = runDialog([&](QDialog *dialog) {
            m_driver->expectBox(warning);
            named<QLineEdit>(dialog, "lineEdit_desc")->clear();
            type(dialog, "lineEdit_owner", " A");
            clickOk(dialog);
            QCOMPARE(focusOf(dialog), "lineEdit_desc");
            ownerAfterWarning = textOf(dialog, "lineEdit_owner");
            traceAfterWarning = m_channel->trace();
            type(dialog, "lineEdit_desc", "small hall");
            clickOk(dialog);
        });
        QCOMPARE(ownerAfterWarning, "operator A");
        QCOMPARE(traceAfterWarning, reading);
        QCOMPARE(result, int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), editing("operator A", "small hall"));
    }

    void blanksAreADescription()
    {
        m_channel->answer("config desc_of_config hall", "\" \"");
        QCOMPARE(runDialog(clickOk), int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), editing("operator", " "));
    }

    void everyCommandIsSentWhateverFails_data()
    {
        QTest::addColumn<int>("failing");
        QTest::addColumn<bool>("lasting");
        // The first two are the queries for the fields.
        for (int failing = 3; failing <= 5; ++failing) {
            QTest::addRow("command %d fails", failing) << failing << false;
            QTest::addRow("all from command %d fail", failing) << failing << true;
        }
    }

    void everyCommandIsSentWhateverFails()
    {
        QFETCH(const int, failing);
        QFETCH(const bool, lasting);
        m_channel->failNth(failing, lasting);
        QCOMPARE(runDialog(clickOk), int(QDialog::Accepted));
        QCOMPARE(m_channel->trace(), editing("operator", "main hall"));
    }

    void theEventPrecedesTheClosing()
    {
        bool isOpen = false;
        runDialog([&](QDialog *dialog) {
            m_channel->whenPosted("ActiveConfigurationChanged",
                                  [&isOpen, dialog] { isOpen = dialog->isVisible(); });
            clickOk(dialog);
        });
        QVERIFY(isOpen);
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
            named<QLineEdit>(dialog, qPrintable(field))->clear();
            type(dialog, qPrintable(field), "a\"b\\c'd#e%f\u00e4g\u20ach<i>j&k");
            type(dialog, qPrintable(field), "AZ09 _-+=.,;:/");
            typed = textOf(dialog, qPrintable(field));
            dialog->reject();
        });
        QCOMPARE(typed, "abcdefghijkAZ09 _-+=.,;:/");
    }

    void noQuoteIsEverSentBack()
    {
        // A stored text may hold characters that cannot be typed; a line edit that starts with one
        // of them lets everything through.
        m_channel->answer("config owner_of_config hall", "\"J\xf6rg\"");
        m_channel->answer("config desc_of_config hall",
                          "\"K\xfc"
                          "che\"");
        runDialog([](QDialog *dialog) {
            type(dialog, "lineEdit_owner", "\"");
            type(dialog, "lineEdit_desc", " \"2\"");
            clickOk(dialog);
        });
        QCOMPARE(m_channel->trace(), editing("J\u00f6rg", "K\u00fcche 2"));
    }

    void aHundredCharactersAreTheLimit()
    {
        const QString hundred(100, 'x');
        runDialog([&hundred](QDialog *dialog) {
            for (const char *field : {"lineEdit_desc", "lineEdit_owner"}) {
                named<QLineEdit>(dialog, field)->clear();
                type(dialog, field, hundred + 'y');
            }
            clickOk(dialog);
        });
        QCOMPARE(m_channel->trace(), editing(hundred, hundred));
    }

    void theIdentifierCannotBeEdited()
    {
        QString identifier;
        runDialog([&identifier](QDialog *dialog) {
            type(dialog, "lineEdit_configId", "x");
            identifier = textOf(dialog, "lineEdit_configId");
            clickOk(dialog);
        });
        QCOMPARE(identifier, "hall");
        QCOMPARE(m_channel->trace(), editing("operator", "main hall"));
    }

    void theHostMayDestroyItUnderTheWarning()
    {
        QPointer<EditConfigDlg> dialog = new EditConfigDlg(m_channel.get(), nullptr);
        m_driver->expectDialog("EditConfigDialog", [](QDialog *shown) {
            named<QLineEdit>(shown, "lineEdit_desc")->clear();
            clickOk(shown);
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

VELTRA4_TEST(TestEditConfigDlg)
#include "tst_editconfigdlg.moc"

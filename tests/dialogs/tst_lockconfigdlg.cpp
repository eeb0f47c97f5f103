#include "dialogs/lockconfigdlg.h"
#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QApplication>
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

using Action = std::function<void(QDialog *)>;
Q_DECLARE_METATYPE(Action)

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

} // namespace

class TestLockConfigDlg : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theFormIsAsDesigned();
    void everyWidgetIsAsDesigned_data();
    void everyWidgetIsAsDesigned();
    void thePasswordHasTheFocus();
    void theTabKeyLeadsThroughTheForm();

    void theLabelNamesTheConfiguration_data();
    void theLabelNamesTheConfiguration();
    void aFailedQueryLeavesTheNameOut();
    void matchingEntriesAreSentOnce();
    void theEnterKeyMeansOk();
    void givingUpSendsNothing_data();
    void givingUpSendsNothing();
    void badEntriesAreRefusedAndStay_data();
    void badEntriesAreRefusedAndStay();
    void aRefusedCommandIsNotNoticed();
    void theEventPrecedesTheClosing();

    void onlyPermittedCharactersCanBeTyped_data();
    void onlyPermittedCharactersCanBeTyped();
    void aHundredCharactersAreTheLimit();
    void theHostMayDestroyItUnderAWarning_data();
    void theHostMayDestroyItUnderAWarning();

private:
    int runDialog(const Action &action);

    std::unique_ptr<ScriptedChannel> m_channel;
    std::unique_ptr<ModalDriver> m_driver;
};

void TestLockConfigDlg::init()
{
    m_channel = std::make_unique<ScriptedChannel>();
    m_channel->answer("config desc_of_config hall", "main hall");
    m_driver = std::make_unique<ModalDriver>();
}

void TestLockConfigDlg::cleanup()
{
    m_driver->verify();
    QCOMPARE(QApplication::topLevelWidgets().size(), 0);
}

int TestLockConfigDlg::runDialog(const Action &action)
{
    m_driver->expectDialog("LockConfigurationDialog", action);
    LockConfigDlg dialog(m_channel.get(), nullptr);
    return dialog.update_and_exec("hall");
}

void TestLockConfigDlg::theFormIsAsDesigned()
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

void TestLockConfigDlg::everyWidgetIsAsDesigned_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("whatsThis");
    QTest::newRow("label_configuration") << "QLabel"
                                         << "set passwort for configuration"
                                         << "";
    QTest::newRow("label") << "QLabel"
                           << ""
                           << "";
    QTest::newRow("label_new_password") << "QLabel"
                                        << "new password"
                                        << "Input the description of the configuration";
    QTest::newRow("lineEdit_new_password") << "QLineEdit"
                                           << ""
                                           << "Input a new password for the configuration";
    QTest::newRow("label_new_password_repeat") << "QLabel"
                                               << "new password repeat"
                                               << "Input the owner of the configuraton";
    QTest::newRow("lineEdit_new_password_repeat") << "QLineEdit"
                                                  << ""
                                                  << "Repeat the new password of the configuraton";
    QTest::newRow("label_2") << "QLabel"
                             << ""
                             << "";
    QTest::newRow("pushButton_ok") << "QPushButton"
                                   << "OK"
                                   << "Create the new password and lock the configuration";
    QTest::newRow("pushButton_cancel") << "QPushButton"
                                       << "Cancel"
                                       << "Close without creating password";
}

void TestLockConfigDlg::everyWidgetIsAsDesigned()
{
    QFETCH(const QString, kind);
    QFETCH(const QString, text);
    QFETCH(const QString, whatsThis);
    const LockConfigDlg dialog(m_channel.get(), nullptr);
    const QWidget *widget = UserInput::widgetNamed(&dialog, QTest::currentDataTag());
    QCOMPARE(QString(widget->metaObject()->className()), kind);
    QCOMPARE(widget->property("text").toString(), text);
    QCOMPARE(widget->whatsThis(), whatsThis);
}

void TestLockConfigDlg::thePasswordHasTheFocus()
{
    QString focused;
    runDialog([&focused](QDialog *dialog) {
        focused = focusOf(dialog);
        dialog->reject();
    });
    QCOMPARE(focused, "lineEdit_new_password");
}

void TestLockConfigDlg::theTabKeyLeadsThroughTheForm()
{
    QStringList visited;
    runDialog([&visited](QDialog *dialog) {
        for (int i = 0; i < 4; ++i) {
            press(dialog, Qt::Key_Tab);
            visited << focusOf(dialog);
        }
        dialog->reject();
    });
    QCOMPARE(visited,
             QStringList({"lineEdit_new_password_repeat", "pushButton_ok", "pushButton_cancel",
                          "lineEdit_new_password"}));
}

void TestLockConfigDlg::theLabelNamesTheConfiguration_data()
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

void TestLockConfigDlg::theLabelNamesTheConfiguration()
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

void TestLockConfigDlg::aFailedQueryLeavesTheNameOut()
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

void TestLockConfigDlg::matchingEntriesAreSentOnce()
{
    QCOMPARE(runDialog(lockWithSecret), int(QDialog::Accepted));
    QCOMPARE(m_channel->trace(), locking("secret"));
}

void TestLockConfigDlg::theEnterKeyMeansOk()
{
    const int result = runDialog([](QDialog *dialog) {
        type(dialog, "lineEdit_new_password", "secret");
        type(dialog, "lineEdit_new_password_repeat", "secret");
        press(dialog, Qt::Key_Return);
    });
    QCOMPARE(result, int(QDialog::Accepted));
    QCOMPARE(m_channel->trace(), locking("secret"));
}

void TestLockConfigDlg::givingUpSendsNothing_data()
{
    QTest::addColumn<Action>("giveUp");
    QTest::newRow("Cancel") << Action([](QDialog *dialog) { click(dialog, "pushButton_cancel"); });
    QTest::newRow("Escape") << Action([](QDialog *dialog) { press(dialog, Qt::Key_Escape); });
    QTest::newRow("close button") << Action([](QDialog *dialog) { dialog->close(); });
}

void TestLockConfigDlg::givingUpSendsNothing()
{
    QFETCH(const Action, giveUp);
    const int result = runDialog([&giveUp](QDialog *dialog) {
        type(dialog, "lineEdit_new_password", "secret");
        type(dialog, "lineEdit_new_password_repeat", "secret");
        giveUp(dialog);
    });
    QCOMPARE(result, int(QDialog::Rejected));
    QCOMPARE(m_channel->trace(), reading);
}

void TestLockConfigDlg::badEntriesAreRefusedAndStay_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("repetition");
    QTest::addColumn<QString>("text");
    const QString empty = "Password must not be empty.";
    const QString different = "The entered passwords do not match.";
    QTest::newRow("both empty") << ""
                                << "" << empty;
    QTest::newRow("first empty") << ""
                                 << "abc" << empty;
    QTest::newRow("second empty") << "abc"
                                  << "" << empty;
    QTest::newRow("different") << "abc"
                               << "abd" << different;
    QTest::newRow("different case") << "abc"
                                    << "abC" << different;
    QTest::newRow("beginning only") << "abc"
                                    << "abcd" << different;
}

void TestLockConfigDlg::badEntriesAreRefusedAndStay()
{
    QFETCH(const QString, password);
    QFETCH(const QString, repetition);
    QFETCH(const QString, text);
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
        entriesAfterWarning = entries(dialog);
        traceAfterWarning = m_channel->trace();
        enterPasswords(dialog, "better", "better");
    });
    QCOMPARE(entriesAfterWarning, QStringList({password, repetition}));
    QCOMPARE(traceAfterWarning, reading);
    QCOMPARE(result, int(QDialog::Accepted));
    QCOMPARE(m_channel->trace(), locking("better"));
}

void TestLockConfigDlg::aRefusedCommandIsNotNoticed()
{
    m_channel->failNth(2);
    QCOMPARE(runDialog(lockWithSecret), int(QDialog::Accepted));
    QCOMPARE(m_channel->trace(), locking("secret"));
}

void TestLockConfigDlg::theEventPrecedesTheClosing()
{
    bool isOpen = false;
    runDialog([&](QDialog *dialog) {
        m_channel->whenPosted("ActiveConfigurationChanged",
                              [&isOpen, dialog] { isOpen = dialog->isVisible(); });
        lockWithSecret(dialog);
    });
    QVERIFY(isOpen);
}

void TestLockConfigDlg::onlyPermittedCharactersCanBeTyped_data()
{
    QTest::addColumn<QString>("field");
    QTest::newRow("password") << "lineEdit_new_password";
    QTest::newRow("repetition") << "lineEdit_new_password_repeat";
}

void TestLockConfigDlg::onlyPermittedCharactersCanBeTyped()
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

void TestLockConfigDlg::aHundredCharactersAreTheLimit()
{
    const QString hundred(100, 'x');
    runDialog([&hundred](QDialog *dialog) { enterPasswords(dialog, hundred, hundred + 'y'); });
    QCOMPARE(m_channel->trace(), locking(hundred));
}

void TestLockConfigDlg::theHostMayDestroyItUnderAWarning_data()
{
    QTest::addColumn<QString>("repetition");
    QTest::newRow("empty") << "";
    QTest::newRow("different") << "abd";
}

void TestLockConfigDlg::theHostMayDestroyItUnderAWarning()
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

VELTRA4_TEST_MAIN(TestLockConfigDlg)
#include "tst_lockconfigdlg.moc"

#include "tests/dialogs/smalldialogtest.h"

#include "tests/support/userinput.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

#include <utility>

using UserInput::click;
using UserInput::focusOf;
using UserInput::named;
using UserInput::press;
using UserInput::textOf;
using UserInput::widgetNamed;

namespace {

QString described(const char *widget, const char *property, const QVariant &value)
{
    QString text;
    QDebug(&text).noquote() << (widget ? widget : "dialog") << property << value;
    return text;
}

// A text of everything that the keyboard has, and what a field takes of it.
struct Typing
{
    explicit Typing(bool isPassword)
    {
        const QString marks = isPassword ? "_-+./" : " _-+=.,;:/";
        for (char character = ' '; character <= '~'; ++character) {
            typed += character;
        }
        typed += "\u00e4\u20ac";
        for (const QChar character : qAsConst(typed)) {
            const bool isAscii = character.unicode() < 0x80;
            if ((isAscii && character.isLetterOrNumber()) || marks.contains(character)) {
                taken += character;
            }
        }
    }

    QString typed;
    QString taken;
};

} // namespace

SmallDialogTest::SmallDialogTest(Design design)
    : m_design(std::move(design))
{
}

int SmallDialogTest::runDialog(const Action &action)
{
    m_driver->expectDialog(m_design.objectName, action);
    const std::unique_ptr<QDialog> dialog = makeDialog();
    return exec(dialog.get());
}

void SmallDialogTest::enter(QDialog *dialog, const QStringList &entries) const
{
    QCOMPARE(entries.size(), m_design.fields.size());
    for (int i = 0; i < entries.size(); ++i) {
        const QByteArray field = m_design.fields.at(i).toLatin1();
        named<QLineEdit>(dialog, field)->clear();
        UserInput::type(dialog, field, entries.at(i));
    }
}

void SmallDialogTest::enterAndAccept(QDialog *dialog, const QStringList &entries) const
{
    enter(dialog, entries);
    click(dialog, m_design.okButton);
}

void SmallDialogTest::expectWarning(const QString &text, QWidget *parent)
{
    ExpectedBox warning{QMessageBox::Warning, "Warning", text};
    warning.parent = parent;
    m_driver->expectBox(warning);
}

void SmallDialogTest::destroyUnderBox(const Action &action, const QStringList &sent)
{
    const QPointer<QDialog> dialog = makeDialog().release();
    m_driver->expectDialog(m_design.objectName, action);
    m_driver->expectDialog("", [&dialog](QDialog *shown) {
        const QPointer<QDialog> box(shown);
        delete dialog.data();
        if (box) { // it is no child of the dialog
            box->accept();
        }
    });
    QCOMPARE(exec(dialog), int(QDialog::Rejected));
    QVERIFY(dialog.isNull());
    QCOMPARE(m_channel->trace(), reading() + sent);
}

QStringList SmallDialogTest::reading() const
{
    QStringList lines;
    for (const Reading &reading : m_design.readings) {
        lines << "queryString " + reading.query;
    }
    return lines;
}

QStringList SmallDialogTest::trace() const
{
    static const QRegularExpression stamp(QStringLiteral(R"(\bconfig20\d{12}\d{1,3}\b)"));
    return m_channel->trace().replaceInStrings(stamp, "configSTAMP");
}

void SmallDialogTest::init()
{
    m_channel = std::make_unique<ScriptedChannel>();
    m_driver = std::make_unique<ModalDriver>();
    for (const Reading &reading : m_design.readings) {
        m_channel->answer(reading.query, reading.answer);
    }
    m_channel->answer("config active_config", "standard");
    m_channel->answer("config is_changeable", "yes");
}

void SmallDialogTest::cleanup()
{
    m_driver->verify();
    QCOMPARE(QApplication::topLevelWidgets().size(), 0);
}

void SmallDialogTest::everyWidgetIsAsDesigned()
{
    const std::unique_ptr<QDialog> dialog = makeDialog();
    for (const FormWidget &expected : m_design.widgets) {
        const QWidget *widget = widgetNamed(dialog.get(), expected.name);
        const QString text = widget->property("text").toString();
        QCOMPARE(described(expected.name, widget->metaObject()->className(), text),
                 described(expected.name, expected.kind, QString(expected.text)));
        QCOMPARE(described(expected.name, "whatsThis", widget->whatsThis()),
                 described(expected.name, "whatsThis", QString(expected.whatsThis)));
    }
    const auto *line = named<QFrame>(dialog.get(), "line");
    QCOMPARE(line->frameStyle(), int(QFrame::HLine) | int(QFrame::Sunken));
    QVERIFY(named<QPushButton>(dialog.get(), m_design.okButton)->autoDefault());
    for (const QString &field : m_design.fields) {
        QCOMPARE(named<QLineEdit>(dialog.get(), field.toLatin1())->echoMode(),
                 m_design.takesPasswords ? QLineEdit::Password : QLineEdit::Normal);
    }
}

void SmallDialogTest::everyPropertyIsAsDesigned()
{
    const std::unique_ptr<QDialog> dialog = makeDialog();
    for (const Property &expected : m_design.properties) {
        const QWidget *widget =
            expected.widget ? widgetNamed(dialog.get(), expected.widget) : dialog.get();
        QCOMPARE(described(expected.widget, expected.name, widget->property(expected.name)),
                 described(expected.widget, expected.name, expected.value));
    }
}

void SmallDialogTest::everyLabelStandsBeforeItsField()
{
    const std::unique_ptr<QDialog> dialog = makeDialog();
    QVERIFY(dialog->findChild<QVBoxLayout *>("verticalLayout"));
    QVERIFY(dialog->findChild<QHBoxLayout *>("horizontalLayout"));
    const auto *grid = dialog->findChild<QGridLayout *>("gridLayout");
    for (int row = 0; row < m_design.grid.size(); ++row) {
        const QStringList &names = m_design.grid.at(row);
        for (int column = 0; column < names.size(); ++column) {
            QCOMPARE(grid->itemAtPosition(row, column)->widget()->objectName(), names.at(column));
        }
        QCOMPARE(named<QLabel>(dialog.get(), names.at(0).toLatin1())->buddy(),
                 dialog->findChild<QLineEdit *>(names.at(1)));
    }
}

void SmallDialogTest::theTabKeyLeadsThroughTheForm()
{
    QStringList visited;
    runDialog([&](QDialog *dialog) {
        while (visited.size() < m_design.tabOrder.size()) {
            visited << focusOf(dialog);
            press(dialog, Qt::Key_Tab);
        }
        visited << focusOf(dialog);
        dialog->reject();
    });
    QCOMPARE(visited, m_design.tabOrder + m_design.tabOrder.mid(0, 1));
}

void SmallDialogTest::fieldsTakeAHundredPermittedCharacters()
{
    const Typing typing(m_design.takesPasswords);
    for (const QString &name : m_design.fields) {
        const QByteArray field = name.toLatin1();
        QString taken;
        runDialog([&](QDialog *dialog) {
            named<QLineEdit>(dialog, field)->clear();
            UserInput::type(dialog, field, typing.typed + QString(100, 'x'));
            taken = textOf(dialog, field);
            dialog->reject();
        });
        QCOMPARE(taken, typing.taken.leftJustified(100, 'x'));
    }
}

QStringList SmallDialogTest::shownTexts()
{
    QStringList texts;
    runDialog([&](QDialog *dialog) {
        for (const Reading &reading : m_design.readings) {
            texts << widgetNamed(dialog, reading.widget)->property("text").toString();
        }
        dialog->reject();
    });
    return texts;
}

void SmallDialogTest::itShowsWhatTheControllerAnswers()
{
    QStringList expected;
    for (const Reading &reading : m_design.readings) {
        expected << reading.shown;
    }
    QCOMPARE(shownTexts(), expected);
    QCOMPARE(m_channel->trace(), reading());
}

void SmallDialogTest::aTextThatIsNotAnsweredIsLeftOut()
{
    for (int failing = 0; failing < m_design.readings.size(); ++failing) {
        QStringList expected;
        for (const Reading &reading : m_design.readings) {
            expected << (expected.size() == failing ? reading.shownWithoutAnswer : reading.shown);
        }
        m_channel->failNth(failing + 1);
        QCOMPARE(shownTexts(), expected);
        QCOMPARE(m_channel->takeTrace(), reading());
    }
}

void SmallDialogTest::aLongTextIsShownWhole()
{
    for (const Reading &reading : m_design.readings) {
        m_channel->answer(reading.query, QByteArray("long words ").repeated(18));
    }
    QStringList cut;
    runDialog([&cut](QDialog *dialog) {
        for (const QLabel *label : dialog->findChildren<QLabel *>()) {
            if (label->height() < label->heightForWidth(label->width())) {
                cut << label->objectName();
            }
        }
        dialog->reject();
    });
    QCOMPARE(cut, QStringList());
}

void SmallDialogTest::okAndTheEnterKeySend()
{
    QCOMPARE(runDialog([this](QDialog *dialog) { enterAndAccept(dialog); }),
             int(QDialog::Accepted));
    QCOMPARE(trace(), reading() + m_design.sent);
    m_channel->takeTrace();
    const int result = runDialog([this](QDialog *dialog) {
        enter(dialog);
        press(dialog, Qt::Key_Return);
    });
    QCOMPARE(result, int(QDialog::Accepted));
    QCOMPARE(trace(), reading() + m_design.sent);
}

void SmallDialogTest::givingUpSendsNothing()
{
    const Action cancel = [this](QDialog *dialog) { click(dialog, m_design.cancelButton); };
    const Action escape = [](QDialog *dialog) { press(dialog, Qt::Key_Escape); };
    const Action close = [](QDialog *dialog) { dialog->close(); };
    for (const Action &giveUp : {cancel, escape, close}) {
        const int result = runDialog([&](QDialog *dialog) {
            enter(dialog);
            giveUp(dialog);
        });
        QCOMPARE(result, int(QDialog::Rejected));
        QCOMPARE(m_channel->takeTrace(), reading());
    }
}

void SmallDialogTest::everyCommandIsSentWhateverFails()
{
    m_channel->failNth(m_design.ignoredFrom, true);
    QCOMPARE(runDialog([this](QDialog *dialog) { enterAndAccept(dialog); }),
             int(QDialog::Accepted));
    QCOMPARE(trace(), reading() + m_design.sent);
}

void SmallDialogTest::theEventComesBeforeOrAfterTheClosing()
{
    QList<bool> isOpen;
    QList<int> resultSoFar;
    runDialog([&](QDialog *dialog) {
        m_channel->whenPosted("ActiveConfigurationChanged", [&isOpen, &resultSoFar, dialog] {
            isOpen << dialog->isVisible();
            resultSoFar << dialog->result();
        });
        enterAndAccept(dialog);
    });
    const bool whileOpen = m_design.announcesWhileOpen;
    QCOMPARE(isOpen, QList<bool>{whileOpen});
    QCOMPARE(resultSoFar, QList<int>{whileOpen ? QDialog::Rejected : QDialog::Accepted});
}

void SmallDialogTest::addRefusals() const
{
    QTest::addColumn<Refusal>("refusal");
    for (const Refusal &refusal : m_design.refusals) {
        QTest::addRow("'%s'", qPrintable(refusal.entries.join("', '"))) << refusal;
    }
}

void SmallDialogTest::badEntriesAreRefusedAndStay()
{
    QFETCH(const Refusal, refusal);
    const int result = runDialog([&](QDialog *dialog) {
        expectWarning(refusal.warning, m_design.ownsWarnings ? dialog : nullptr);
        enterAndAccept(dialog, refusal.entries);
        QStringList left;
        for (const QString &field : m_design.fields) {
            left << textOf(dialog, field.toLatin1());
        }
        QCOMPARE(left, refusal.entries);
        QCOMPARE(focusOf(dialog), refusal.focus);
        const auto *field = named<QLineEdit>(dialog, refusal.focus.toLatin1());
        QCOMPARE(field->selectedText().size(), field->text().size());
        QCOMPARE(m_channel->trace(), reading());
        enterAndAccept(dialog);
    });
    QCOMPARE(result, int(QDialog::Accepted));
    QCOMPARE(trace(), reading() + m_design.sent);
}

void SmallDialogTest::theHostMayDestroyItUnderAWarning()
{
    QFETCH(const Refusal, refusal);
    destroyUnderBox([&](QDialog *dialog) { enterAndAccept(dialog, refusal.entries); }, {});
}

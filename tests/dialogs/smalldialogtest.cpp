#include "tests/dialogs/smalldialogtest.h"

#include "tests/support/userinput.h"

#include <QApplication>
#include <QtTest>

#include <utility>

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

void SmallDialogTest::init()
{
    m_channel = std::make_unique<ScriptedChannel>();
    m_driver = std::make_unique<ModalDriver>();
    scriptAnswers();
}

void SmallDialogTest::cleanup()
{
    m_driver->verify();
    QCOMPARE(QApplication::topLevelWidgets().size(), 0);
}

void SmallDialogTest::everyWidgetIsAsDesigned_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("whatsThis");
    for (const FormWidget &widget : m_design.widgets) {
        QTest::newRow(widget.name) << widget.kind << widget.text << widget.whatsThis;
    }
}

void SmallDialogTest::everyWidgetIsAsDesigned()
{
    QFETCH(const QString, kind);
    QFETCH(const QString, text);
    QFETCH(const QString, whatsThis);
    const std::unique_ptr<QDialog> dialog = makeDialog();
    const QWidget *widget = UserInput::widgetNamed(dialog.get(), QTest::currentDataTag());
    QCOMPARE(QString(widget->metaObject()->className()), kind);
    QCOMPARE(widget->property("text").toString(), text);
    QCOMPARE(widget->whatsThis(), whatsThis);
}

void SmallDialogTest::theFirstFieldHasTheFocus()
{
    QString focused;
    runDialog([&focused](QDialog *dialog) {
        focused = UserInput::focusOf(dialog);
        dialog->reject();
    });
    QCOMPARE(focused, m_design.tabOrder.constFirst());
}

void SmallDialogTest::theTabKeyLeadsThroughTheForm()
{
    QStringList visited;
    runDialog([&](QDialog *dialog) {
        while (visited.size() < m_design.tabOrder.size()) {
            visited << UserInput::focusOf(dialog);
            UserInput::press(dialog, Qt::Key_Tab);
        }
        visited << UserInput::focusOf(dialog);
        dialog->reject();
    });
    QCOMPARE(visited, m_design.tabOrder + m_design.tabOrder.mid(0, 1));
}

void SmallDialogTest::givingUpSendsNothing_data()
{
    QTest::addColumn<Action>("giveUp");
    QTest::newRow("Cancel") << Action(
        [this](QDialog *dialog) { UserInput::click(dialog, m_design.cancelButton); });
    QTest::newRow("Escape") << Action(
        [](QDialog *dialog) { UserInput::press(dialog, Qt::Key_Escape); });
    QTest::newRow("close button") << Action([](QDialog *dialog) { dialog->close(); });
}

void SmallDialogTest::givingUpSendsNothing()
{
    QFETCH(const Action, giveUp);
    const int result = runDialog([&](QDialog *dialog) {
        fillIn(dialog);
        giveUp(dialog);
    });
    QCOMPARE(result, int(QDialog::Rejected));
    QCOMPARE(m_channel->trace(), m_design.reading);
}

#include "tests/endtoend/frontend.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QtTest>

#include <optional>

namespace {

const QString listDialog = QStringLiteral("ConfigurationDialog");
const QString saveDialog = QStringLiteral("ConfigSaveDlgClass");
const QString loadDialog = QStringLiteral("ConfigLoadDlgClass");
const QString lockDialog = QStringLiteral("LockConfigurationDialog");
const QString unlockDialog = QStringLiteral("UnlockConfigurationDialog");

ControllerState stateFor(const QString &dialog)
{
    ControllerState state = ControllerState::sample();
    state.activeIdentifier = dialog == unlockDialog ? Sample::locked : Sample::fair;
    return state;
}

QString accessibleText(QWidget *widget, QAccessible::Text kind)
{
    const QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(widget);
    return interface != nullptr ? interface->text(kind) : QString();
}

bool isControl(const QWidget *widget)
{
    return qobject_cast<const QAbstractButton *>(widget) != nullptr
        || qobject_cast<const QLineEdit *>(widget) != nullptr
        || qobject_cast<const QTableWidget *>(widget) != nullptr;
}

// All of them, also those that are disabled just now, but not the parts that Qt makes them of.
QVector<QWidget *> controlsOf(const QDialog *dialog)
{
    QVector<QWidget *> controls;
    const QList<QWidget *> widgets = dialog->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        const bool isPart = isControl(widget->parentWidget())
            || widget->objectName().startsWith(QLatin1String("qt_"));
        if (isControl(widget) && !isPart && widget->isVisible()) {
            controls << widget;
        }
    }
    return controls;
}

// Of alternatives only the chosen one; the arrow keys lead to the others.
bool isTabStop(const QWidget *control)
{
    const auto *button = qobject_cast<const QAbstractButton *>(control);
    const bool isOtherAlternative =
        button != nullptr && button->autoExclusive() && !button->isChecked();
    return control->isEnabled() && (control->focusPolicy() & Qt::TabFocus) != 0
        && !isOtherAlternative;
}

QVector<QWidget *> tabStopsOf(const QDialog *dialog)
{
    QVector<QWidget *> stops;
    const QVector<QWidget *> controls = controlsOf(dialog);
    for (QWidget *control : controls) {
        if (isTabStop(control)) {
            stops << control;
        }
    }
    return stops;
}

// Where Tab leads, beginning after what has the focus, for as many steps as there are stops.
QVector<QWidget *> tabWalk(QDialog *dialog, int steps)
{
    QVector<QWidget *> visited;
    for (int i = 0; i < steps; ++i) {
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
        visited << dialog->focusWidget();
    }
    return visited;
}

// Goes to a control by Tab and presses a key there.
void pressAt(QDialog *dialog, const QString &control, Qt::Key key)
{
    const int stops = tabStopsOf(dialog).size();
    for (int i = 0; i < stops && UserInput::focusOf(dialog) != control; ++i) {
        UserInput::press(dialog, Qt::Key_Tab);
    }
    QCOMPARE(UserInput::focusOf(dialog), control);
    UserInput::press(dialog, key);
}

QRect placeIn(const QDialog *dialog, const QWidget *widget)
{
    return {widget->mapTo(dialog, QPoint()), widget->size()};
}

// In reading order: below, or in the same line further to the right.
bool comesAfter(const QRect &next, const QRect &previous)
{
    const bool isInSameLine =
        next.center().y() <= previous.bottom() && next.center().y() >= previous.top();
    return isInSameLine ? next.left() > previous.left() : next.top() > previous.top();
}

QString names(const QVector<QWidget *> &widgets)
{
    QStringList names;
    for (const QWidget *widget : widgets) {
        names << widget->objectName();
    }
    return names.join(QLatin1Char(' '));
}

QString mnemonicText(const QWidget *widget)
{
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
        return button->text();
    }
    const auto *label = qobject_cast<const QLabel *>(widget);
    return label != nullptr && label->buddy() != nullptr ? label->text() : QString();
}

} // namespace

/// Every dialog of the loaded plug-in as somebody uses it who has no mouse or sees no screen.
class TestEndToEndAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_home.emplace(); }
    void cleanup() { m_home.reset(); }

    void everyControlHasAName_data() { dialogs(); }

    void everyControlHasAName()
    {
        visit([](QDialog *dialog) {
            QVERIFY(!accessibleText(dialog, QAccessible::Name).isEmpty());
            const QVector<QWidget *> controls = controlsOf(dialog);
            QVERIFY(controls.size() >= 4);
            for (QWidget *control : controls) {
                const QString name = accessibleText(control, QAccessible::Name);
                QVERIFY2(!name.isEmpty() && !name.contains(QLatin1Char('&')),
                         qPrintable(control->objectName() + QStringLiteral(": ") + name));
            }
        });
    }

    void everyControlSaysWhatItIsFor_data() { dialogs(); }

    void everyControlSaysWhatItIsFor()
    {
        visit([](QDialog *dialog) {
            const QVector<QWidget *> controls = controlsOf(dialog);
            for (QWidget *control : controls) {
                // One that only displays tells the text that it shows.
                const QString expected =
                    control->objectName() == QLatin1String("lineEdit_activeConfig")
                    ? UserInput::textOf(dialog, "lineEdit_activeConfig")
                    : control->whatsThis();
                QCOMPARE(accessibleText(control, QAccessible::Description), expected);
            }
        });
    }

    void tabReachesEverythingInReadingOrder_data() { dialogs(); }

    void tabReachesEverythingInReadingOrder()
    {
        visit([](QDialog *dialog) {
            const QVector<QWidget *> stops = tabStopsOf(dialog);
            const QVector<QWidget *> visited = tabWalk(dialog, stops.size());
            for (QWidget *stop : stops) {
                QVERIFY2(visited.contains(stop), qPrintable(names(visited)));
            }
            int jumpsBack = 0;
            for (int i = 0; i < visited.size(); ++i) {
                const QWidget *next = visited.at((i + 1) % visited.size());
                if (!comesAfter(placeIn(dialog, next), placeIn(dialog, visited.at(i)))) {
                    ++jumpsBack;
                }
            }
            QVERIFY2(jumpsBack == 1, qPrintable(names(visited)));
        });
    }

    void mnemonicsAreUnique_data() { dialogs(); }

    void mnemonicsAreUnique()
    {
        visit([](QDialog *dialog) {
            QMap<QString, QString> owners;
            const QList<QWidget *> widgets = dialog->findChildren<QWidget *>();
            for (const QWidget *widget : widgets) {
                const QString mnemonic = QKeySequence::mnemonic(mnemonicText(widget)).toString();
                if (mnemonic.isEmpty() || !widget->isVisible()) {
                    continue;
                }
                QVERIFY2(
                    !owners.contains(mnemonic),
                    qPrintable(QStringLiteral("%1: %2 and %3")
                                   .arg(mnemonic, owners.value(mnemonic), widget->objectName())));
                owners.insert(mnemonic, widget->objectName());
            }
        });
    }

    void everyFieldHasALabel_data() { dialogs(); }

    void everyFieldHasALabel()
    {
        visit([](QDialog *dialog) {
            QVector<const QWidget *> labelled;
            const QList<QLabel *> labels = dialog->findChildren<QLabel *>();
            for (const QLabel *label : labels) {
                labelled << label->buddy();
            }
            const QList<QLineEdit *> fields = dialog->findChildren<QLineEdit *>();
            for (const QLineEdit *field : fields) {
                QVERIFY2(labelled.contains(field), qPrintable(field->objectName()));
            }
        });
    }

    void configurationsAreMadeAndSavedWithoutAMouse()
    {
        FrontEnd frontEnd;
        const QString file = m_home->filePath(QStringLiteral("two.dat"));
        const auto create = [](QDialog *dialog) {
            QTest::keyClicks(dialog->focusWidget(), QStringLiteral("Made by keyboard"));
            UserInput::press(dialog, Qt::Key_Return);
        };
        const auto saveFirstTwo = [&](QDialog *dialog) {
            pressAt(dialog, QStringLiteral("checkBox_allSettings"), Qt::Key_Space);
            pressAt(dialog, QStringLiteral("pushButton_clearSelection"), Qt::Key_Space);
            pressAt(dialog, QStringLiteral("tableWidget_selectConfigs"), Qt::Key_Space);
            UserInput::press(dialog, Qt::Key_Down);
            UserInput::press(dialog, Qt::Key_Space);
            frontEnd.driver.expectFileDialog(QStringLiteral("Save configuration(s)"), file);
            frontEnd.driver.expectBox(
                {QMessageBox::Information, QStringLiteral("Save Configurations"),
                 QStringLiteral("Configuration data successfully written to the file\n%1")
                     .arg(file)});
            pressAt(dialog, QStringLiteral("pushButton_save"), Qt::Key_Space);
            UserInput::press(dialog, Qt::Key_Escape);
        };
        frontEnd.useList([&](QDialog *list) {
            frontEnd.driver.expectDialog(QStringLiteral("NewConfigurationDialog"), create);
            pressAt(list, QStringLiteral("pushButton_new"), Qt::Key_Space);
            frontEnd.driver.expectDialog(saveDialog, saveFirstTwo);
            pressAt(list, QStringLiteral("pushButton_save"), Qt::Key_Space);
        });
        const QVector<Configuration> &configurations = frontEnd.state().configurations;
        QCOMPARE(configurations.constLast().description, QByteArrayLiteral("Made by keyboard"));
        QVector<Archive::Item> items;
        QString problem;
        QVERIFY2(Archive::unpack(TransferFiles::contentsOf(file), &items, &problem),
                 qPrintable(problem));
        QCOMPARE(items.size(), 2);
    }

private:
    static void dialogs()
    {
        QTest::addColumn<QString>("dialog");
        QTest::addColumn<QString>("button"); // of the list, which opens the dialog
        QTest::newRow("list") << listDialog << QString();
        QTest::newRow("new") << "NewConfigurationDialog"
                             << "pushButton_new";
        QTest::newRow("edit") << "EditConfigDialog"
                              << "pushButton_edit";
        QTest::newRow("lock") << lockDialog << "pushButton_lock";
        QTest::newRow("unlock") << unlockDialog << "pushButton_lock";
        QTest::newRow("save") << saveDialog << "pushButton_save";
        QTest::newRow("load") << loadDialog << "pushButton_load";
    }

    // Opens the dialog of the test's data, runs @p action on it, and closes it.
    void visit(const std::function<void(QDialog *dialog)> &action) const
    {
        QFETCH(const QString, dialog);
        QFETCH(const QString, button);
        FrontEnd frontEnd(stateFor(dialog));
        bool isVisited = false;
        const auto look = [&](QDialog *window) {
            if (dialog == saveDialog) {
                UserInput::click(window, "checkBox_allSettings"); // enables all the rest
            }
            action(window);
            isVisited = true;
            window->reject();
        };
        if (button.isEmpty()) {
            frontEnd.openList(look);
        } else {
            frontEnd.useList([&](QDialog *list) {
                if (dialog == loadDialog) {
                    const QString file =
                        TransferFiles::write(m_home->filePath(QStringLiteral("cells.dat")),
                                             TransferFiles::wholeArchive(frontEnd.state()));
                    frontEnd.driver.expectFileDialog(QStringLiteral("Load Configurations"), file);
                }
                frontEnd.driver.expectDialog(dialog, look);
                UserInput::click(list, button.toLatin1().constData());
            });
        }
        QVERIFY(isVisited);
    }

    std::optional<TemporaryHome> m_home;
};

VELTRA4_TEST(TestEndToEndAccessibility)
#include "tst_endtoendaccessibility.moc"

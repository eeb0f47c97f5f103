#include "tests/endtoend/scene.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

using namespace Story;

namespace {

const QString listDialog = QStringLiteral("ConfigurationDialog");
const QString saveDialog = QStringLiteral("ConfigSaveDlgClass");
const QString loadDialog = QStringLiteral("ConfigLoadDlgClass");
const QString unlockDialog = QStringLiteral("UnlockConfigurationDialog");

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
Action pressAt(const QString &control, Qt::Key key)
{
    return [control, key](QDialog *dialog) {
        const int stops = tabStopsOf(dialog).size();
        for (int i = 0; i < stops && UserInput::focusOf(dialog) != control; ++i) {
            UserInput::press(dialog, Qt::Key_Tab);
        }
        QCOMPARE(UserInput::focusOf(dialog), control);
        UserInput::press(dialog, key);
    };
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
        Scene scene;
        const Action typeAtFocus = [](QDialog *dialog) {
            QTest::keyClicks(dialog->focusWidget(), QStringLiteral("Made by keyboard"));
        };
        scene.play({onList({pressAt("pushButton_new", Qt::Key_Space),
                            pressAt("pushButton_save", Qt::Key_Space), leave}),
                    onNew({typeAtFocus, press(Qt::Key_Return)}),
                    onSave({pressAt("checkBox_allSettings", Qt::Key_Space),
                            pressAt("pushButton_clearSelection", Qt::Key_Space),
                            pressAt("tableWidget_selectConfigs", Qt::Key_Space),
                            press(Qt::Key_Down), press(Qt::Key_Space),
                            pressAt("pushButton_save", Qt::Key_Space), press(Qt::Key_Escape)}),
                    chooseToSave("two.dat"), savedBox("two.dat")});
        const QVector<Configuration> &configurations = scene.state().configurations;
        QCOMPARE(configurations.constLast().description, QByteArrayLiteral("Made by keyboard"));
        QVector<Archive::Item> items;
        QString problem;
        QVERIFY2(
            Archive::unpack(TransferFiles::contentsOf(scene.filePath("two.dat")), &items, &problem),
            qPrintable(problem));
        QCOMPARE(items.size(), 2);
    }

private:
    static void dialogs()
    {
        QTest::addColumn<QString>("dialog");
        QTest::addColumn<QString>("button"); // of the list, which opens the dialog
        const auto row = [](const char *name, const QString &dialog, const QString &button) {
            QTest::newRow(name) << dialog << button;
        };
        row("list", listDialog, "");
        row("new", "NewConfigurationDialog", "pushButton_new");
        row("edit", "EditConfigDialog", "pushButton_edit");
        row("lock", "LockConfigurationDialog", "pushButton_lock");
        row("unlock", unlockDialog, "pushButton_lock");
        row("save", saveDialog, "pushButton_save");
        row("load", loadDialog, "pushButton_load");
    }

    // Opens the dialog of the test's data, runs @p action on it, and closes it.
    static void visit(const Action &action)
    {
        QFETCH(const QString, dialog);
        QFETCH(const QString, button);
        ControllerState state = ControllerState::sample();
        state.activeIdentifier = dialog == unlockDialog ? Sample::locked : Sample::fair;
        bool isVisited = false;
        const auto look = [&](QDialog *window) {
            if (dialog == saveDialog) {
                UserInput::click(window, "checkBox_allSettings"); // enables all the rest
            }
            action(window);
            isVisited = true;
        };
        Steps steps{makeFile("cells.dat", {Sample::fair, Sample::locked})};
        if (dialog == listDialog) {
            steps << onList({look, leave});
        } else {
            steps << onList({click(button.toLatin1()), leave});
            if (dialog == loadDialog) {
                steps << chooseToLoad("cells.dat");
            }
            steps << on(dialog, {look, leave});
        }
        Scene scene(state);
        scene.play(steps);
        QVERIFY(isVisited);
    }
};

VELTRA4_TEST(TestEndToEndAccessibility)
#include "tst_endtoendaccessibility.moc"

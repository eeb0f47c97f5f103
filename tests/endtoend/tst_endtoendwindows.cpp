#include "tests/endtoend/operations.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTextDocument>
#include <QtTest>

namespace {

/// Sees whether a window has been put on the screen again since another one before it has closed.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(const QWidget *watched)
        : m_watched(watched)
    {
        qApp->installEventFilter(this);
    }

    bool isUpToDate() const { return !m_isCoverLifted; }

private:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Hide && object != m_watched
            && qobject_cast<QDialog *>(object) != nullptr) {
            m_isCoverLifted = true;
        } else if (event->type() == QEvent::Expose && object == m_watched->windowHandle()) {
            m_isCoverLifted = false;
        }
        return false;
    }

    const QWidget *m_watched;
    bool m_isCoverLifted = false;
};

// Opens a dialog by a button of the list.
void visit(const QByteArray &button, const QByteArray &dialog, const Scene::Action &look)
{
    Scene scene;
    scene.useList([&](QDialog *list) {
        scene.expect(dialog, look);
        UserInput::click(list, button);
    });
}

// Opens the load dialog on all configurations, then runs @p afterwards on the list.
void load(Scene &scene, const Scene::Action &look, const Scene::Action &afterwards = {})
{
    const QString path = TransferFiles::write(scene.home.filePath("all.dat"),
                                              TransferFiles::wholeArchive(scene.frontEnd.state()));
    scene.useList([&](QDialog *list) {
        scene.expectChooser("Load Configurations", path);
        scene.expect("ConfigLoadDlgClass", look);
        UserInput::click(list, "pushButton_load");
        if (afterwards) {
            afterwards(list);
        }
    });
}

QStringList boldButtons(const QDialog *dialog)
{
    QStringList names;
    const auto buttons = dialog->findChildren<QPushButton *>();
    for (const QPushButton *button : buttons) {
        if (button->window() == dialog && button->font().bold()) {
            names << button->objectName();
        }
    }
    return names;
}

QColor backgroundOf(QWidget *field)
{
    const QImage picture = field->grab().toImage();
    return picture.pixelColor(picture.width() - 10, picture.height() / 2); // right of the text
}

} // namespace

/// What users see of the windows and where their keys go, beyond what is said to the controller.
class TestEndToEndWindows : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QApplication::setPalette(QPalette()); }

    void closedWindowsArePaintedOverBeforeTheNextCommand_data()
    {
        QTest::addColumn<int>("index");
        const auto operations = allOperations();
        for (int i = 0; i < operations.size(); ++i) {
            QTest::newRow(operations.at(i).name) << i;
        }
    }

    void closedWindowsArePaintedOverBeforeTheNextCommand()
    {
        QFETCH(const int, index);
        const Operation operation = allOperations().at(index);
        Scene scene;
        operation.prepare(scene);
        std::optional<PaintWatch> watch;
        scene.frontEnd.record.onCommand = [&](const QByteArray &command) {
            const auto *list = scene.frontEnd.window->findChild<QDialog *>("ConfigurationDialog");
            if (list == nullptr || !list->isVisible()) {
                watch.reset();
            } else if (!watch) {
                watch.emplace(list);
            }
            QVERIFY2(!watch || watch->isUpToDate(), command.constData());
        };
        operation.play(scene);
    }

    void theButtonOfTheReturnKeyStandsOut_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QByteArray>("dialog");
        const auto row = [](const char *button, const char *dialog) {
            QTest::newRow(dialog) << QByteArray(button) << QByteArray(dialog);
        };
        row("pushButton_new", "NewConfigurationDialog");
        row("pushButton_edit", "EditConfigDialog");
        row("pushButton_lock", "LockConfigurationDialog");
        row("pushButton_save", "ConfigSaveDlgClass");
    }

    void theButtonOfTheReturnKeyStandsOut()
    {
        QFETCH(const QByteArray, button);
        QFETCH(const QByteArray, dialog);
        visit(button, dialog, [](QDialog *opened) {
            const QStringList bold = boldButtons(opened);
            QCOMPARE(bold.size(), 1);
            QVERIFY(UserInput::named<QPushButton>(opened, qPrintable(bold.first()))->isDefault());
            QCOMPARE(boldButtons(qobject_cast<QDialog *>(opened->parentWidget())),
                     QStringList("pushButton_apply"));
            opened->reject();
        });
    }

    void whatCannotBeTypedIntoLooksLikeIt_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("light") << QPalette(Qt::lightGray);
        QTest::newRow("dark") << QPalette(Qt::darkGray, QColor(32, 32, 32));
    }

    void whatCannotBeTypedIntoLooksLikeIt()
    {
        QFETCH(const QPalette, palette);
        Scene scene;
        QApplication::setPalette(palette); // as a desktop may in the evening
        const auto looksLikeItsWindow = [](QDialog *dialog, const char *name) {
            QWidget *field = UserInput::widgetNamed(dialog, QString::fromLatin1(name));
            const QPalette &around = dialog->palette();
            return backgroundOf(field) == around.color(QPalette::Window)
                && field->palette().color(QPalette::Text) == around.color(QPalette::WindowText);
        };
        load(scene, [&](QDialog *dialog) {
            QVERIFY(looksLikeItsWindow(dialog, "lineEdit_path"));
            dialog->reject();
        });
        scene.useList([&](QDialog *list) {
            QVERIFY(looksLikeItsWindow(list, "lineEdit_activeConfig"));
            scene.expect("EditConfigDialog", [&](QDialog *dialog) {
                QVERIFY(looksLikeItsWindow(dialog, "lineEdit_configId"));
                QVERIFY(!looksLikeItsWindow(dialog, "lineEdit_desc"));
                dialog->reject();
            });
            UserInput::click(list, "pushButton_edit");
        });
    }

    void aLongActiveDescriptionIsToldInATip()
    {
        ControllerState state = ControllerState::sample();
        configurationIn(state, state.activeIdentifier).description = "a < b & <b>c</b>";
        FrontEnd frontEnd(state);
        frontEnd.useList([](QDialog *list) {
            const QWidget *field = UserInput::widgetNamed(list, "lineEdit_activeConfig");
            QVERIFY(Qt::mightBeRichText(field->toolTip()));
            QTextDocument told;
            told.setHtml(field->toolTip());
            QCOMPARE(told.toPlainText(), "a < b & <b>c</b>");
        });
    }

    void afterALoadTheListHasTheKeyboard()
    {
        Scene scene;
        const auto loadAll = [&scene](QDialog *dialog) {
            scene.answer(QMessageBox::Ok);
            UserInput::click(dialog, "pushButton_load");
            // As window managers do that give the keyboard to the window that had it before all
            // others.
            QApplication::setActiveWindow(scene.frontEnd.window.get());
        };
        load(scene, loadAll, [](QDialog *list) {
            QTRY_VERIFY(list->isActiveWindow());
            QCOMPARE(UserInput::focusOf(list), "tableWidget");
        });
    }
};

VELTRA4_TEST(TestEndToEndWindows)
#include "tst_endtoendwindows.moc"

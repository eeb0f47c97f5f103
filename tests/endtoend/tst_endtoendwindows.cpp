#include "tests/endtoend/operations.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QDialog>
#include <QPushButton>
#include <QTextDocument>
#include <QTest>

using namespace Story;

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

    void closedWindowsArePaintedOverBeforeTheNextCommand_data() { addOperations(); }

    void closedWindowsArePaintedOverBeforeTheNextCommand()
    {
        QFETCH(const Operation, operation);
        Scene scene(smallState());
        operation.prepare(scene);
        std::optional<PaintWatch> watch;
        scene.record.onCommand = [&](const QByteArray &command) {
            const auto *list = scene.window->findChild<QDialog *>("ConfigurationDialog");
            if (list == nullptr || !list->isVisible()) {
                watch.reset();
            } else if (!watch) {
                watch.emplace(list);
            }
            QVERIFY2(!watch || watch->isUpToDate(), command.constData());
        };
        operation.play(scene);
    }

    void theButtonOfTheReturnKeyStandsOut()
    {
        const Action look = [](QDialog *dialog) {
            const QStringList bold = boldButtons(dialog);
            QCOMPARE(bold.size(), 1);
            QVERIFY(UserInput::named<QPushButton>(dialog, qPrintable(bold.first()))->isDefault());
            QCOMPARE(boldButtons(qobject_cast<QDialog *>(dialog->parentWidget())),
                     QStringList("pushButton_apply"));
        };
        Scene scene;
        scene.play({onList({click("pushButton_new"), click("pushButton_edit"),
                            click("pushButton_lock"), click("pushButton_save"), leave}),
                    onNew({look, leave}), onEdit({look, leave}), onLock({look, leave}),
                    onSave({look, leave})});
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
        const auto seeLikeItsWindow = [](const char *name, bool expected) {
            return [name, expected](QDialog *dialog) {
                QWidget *field = UserInput::widgetNamed(dialog, name);
                const QPalette &around = dialog->palette();
                QCOMPARE(backgroundOf(field) == around.color(QPalette::Window), expected);
                QVERIFY(!expected
                        || field->palette().color(QPalette::Text)
                            == around.color(QPalette::WindowText));
            };
        };
        scene.play({makeFile("some.dat", {Sample::fair}),
                    onList({click("pushButton_load"), click("pushButton_edit"),
                            seeLikeItsWindow("lineEdit_activeConfig", true), leave}),
                    chooseToLoad("some.dat"),
                    onLoad({seeLikeItsWindow("lineEdit_path", true), leave}),
                    onEdit({seeLikeItsWindow("lineEdit_configId", true),
                            seeLikeItsWindow("lineEdit_desc", false), leave})});
    }

    void aLongActiveDescriptionIsToldInATip()
    {
        ControllerState state = ControllerState::sample();
        configurationIn(state, state.activeIdentifier).description = "a < b & <b>c</b>";
        const Action seeTip = [](QDialog *list) {
            const QWidget *field = UserInput::widgetNamed(list, "lineEdit_activeConfig");
            QVERIFY(Qt::mightBeRichText(field->toolTip()));
            QTextDocument told;
            told.setHtml(field->toolTip());
            QCOMPARE(told.toPlainText(), "a < b & <b>c</b>");
        };
        Scene scene(state);
        scene.play({onList({seeTip, leave})});
    }

    void afterALoadTheListHasTheKeyboard()
    {
        Scene scene;
        // As window managers do that give the keyboard to the window that had it before all others.
        const Action activateHost = [&scene](QDialog *) {
            QApplication::setActiveWindow(scene.window.get());
        };
        const Action seeKeyboard = [](QDialog *list) {
            QTRY_VERIFY(list->isActiveWindow());
            QCOMPARE(UserInput::focusOf(list), "tableWidget");
        };
        scene.play({makeFile("some.dat", {Sample::fair}),
                    onList({click("pushButton_load"), seeKeyboard, leave}),
                    chooseToLoad("some.dat"), onLoad({click("pushButton_load"), activateHost}),
                    answer(QMessageBox::Ok)});
    }
};

VELTRA4_TEST(TestEndToEndWindows)
#include "tst_endtoendwindows.moc"

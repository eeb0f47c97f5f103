#include "host/tour/tour.h"

#include "host/channelmonitor.h"
#include "host/hostsession.h"
#include "host/simulatedlink.h"
#include "host/tour/dialogdriver.h"
#include "host/tour/stepfailed.h"

#include <QAbstractButton>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

namespace {

QAction *actionWithText(const QWidget *container, const QString &text)
{
    const QList<QAction *> actions = container->actions();
    for (QAction *action : actions) {
        if (action->text() == text) {
            return action;
        }
    }
    throw StepFailed(QStringLiteral("there is no action \"%1\"").arg(text));
}

void clickBox(QMessageBox *box, QMessageBox::StandardButton answer)
{
    QAbstractButton *button = box->button(answer);
    if (!button) {
        throw StepFailed(QStringLiteral("the box lacks the button for its answer"));
    }
    QTest::mouseClick(button, Qt::LeftButton);
}

void chooseFile(QFileDialog *dialog, const QString &path)
{
    auto *edit = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    // Not typed: the completer's list would take the keys.
    edit->setText(path);
    QTest::keyClick(edit, Qt::Key_Return);
}

} // namespace

Tour::Tour(HostSession &session, SimulatedLink &link, const QDir &folder)
    : m_session(session)
    , m_window(session.window())
    , m_monitor(session.monitor())
    , m_link(link)
    , m_folder(folder)
    , m_pictures(folder)
    , m_transcript(folder.filePath(QStringLiteral("transcript.txt")), m_monitor)
{
    QObject::connect(&m_monitor, &ChannelMonitor::commandSent, &m_watcher, &ModalWatcher::wake);
    QObject::connect(&m_monitor, &ChannelMonitor::eventPosted, &m_watcher, &ModalWatcher::wake);
    QObject::connect(&session, &HostSession::identityShown, &m_watcher, &ModalWatcher::wake);
    m_window.takePreferredSize();
}

void Tour::step(const QString &name)
{
    m_step = name;
    m_transcript.heading(name);
    m_watcher.rearm();
}

void Tour::note(const QString &text)
{
    m_transcript.write(text);
}

void Tour::startModule()
{
    m_session.start();
}

void Tour::expectAction(const QString &menuTitle, const QString &actionText)
{
    actionWithText(actionWithText(m_window.menuBar(), menuTitle)->menu(), actionText);
}

void Tour::chooseInMenu(const QString &menuTitle, const QString &actionText,
                        const QVector<ModalStep> &steps, const QString &pictureName)
{
    QMenu *menu = openMenu(menuTitle);
    QAction *action = actionWithText(menu, actionText);
    if (!pictureName.isEmpty()) {
        menu->setActiveAction(action);
        pictureWindow(pictureName, menu);
    }
    const QPoint place = menu->actionGeometry(action).center();
    during([&] { QTest::mouseClick(menu, Qt::LeftButton, {}, place); }, steps);
}

ModalStep Tour::dialog(const QString &objectName, const Visit &visit)
{
    ModalStep step;
    step.name = QStringLiteral("dialog \"%1\"").arg(objectName);
    step.fits = [objectName](QDialog *dialog) { return dialog->objectName() == objectName; };
    step.handle = [this, visit](QDialog *dialog) {
        DialogDriver driver(*this, dialog);
        visit(driver);
    };
    return step;
}

ModalStep Tour::box(const QString &title, const QString &text, QMessageBox::StandardButton answer,
                    const QString &pictureName)
{
    ModalStep step;
    step.name = QStringLiteral("box \"%1\" saying \"%2\"").arg(title, text);
    step.fits = [title, text](QDialog *dialog) {
        auto *box = qobject_cast<QMessageBox *>(dialog);
        return box != nullptr && box->windowTitle() == title && box->text() == text;
    };
    step.handle = [this, answer, pictureName](QDialog *dialog) {
        if (!pictureName.isEmpty()) {
            picture(pictureName, dialog);
        }
        clickBox(qobject_cast<QMessageBox *>(dialog), answer);
    };
    return step;
}

ModalStep Tour::fileDialog(const QString &caption, const QString &path, const QString &pictureName)
{
    ModalStep step;
    step.name = QStringLiteral("file dialog \"%1\"").arg(caption);
    step.fits = [caption](QDialog *dialog) {
        return qobject_cast<QFileDialog *>(dialog) != nullptr && dialog->windowTitle() == caption;
    };
    step.handle = [this, path, pictureName](QDialog *dialog) {
        if (!pictureName.isEmpty()) {
            picture(pictureName, dialog);
        }
        chooseFile(qobject_cast<QFileDialog *>(dialog), path);
    };
    return step;
}

void Tour::expect(bool isAsExpected, const QString &what)
{
    if (!isAsExpected) {
        throw StepFailed(what);
    }
}

void Tour::waitUntil(const QString &what, const std::function<bool()> &condition)
{
    if (!m_watcher.waitUntil(condition)) {
        throw StepFailed(QStringLiteral("waited in vain until ") + what);
    }
}

QString Tour::windowText(const QString &label) const
{
    return m_window.findChild<QLabel *>(label)->text();
}

void Tour::pictureWindow(const QString &name, QWidget *above)
{
    settle();
    if (above) {
        m_pictures.add(name, &m_window, above);
    } else {
        m_pictures.add(name, &m_window);
    }
}

void Tour::picture(const QString &name, QWidget *window)
{
    settle();
    m_pictures.add(name, window);
}

void Tour::pictureWindowDuring(const QByteArray &command, const QString &name,
                               const std::function<void()> &action)
{
    bool isTaken = false;
    const auto take = [&](const Exchange &exchange) {
        if (exchange.command == command && !isTaken) {
            isTaken = true;
            m_pictures.add(name, &m_window);
        }
    };
    const QMetaObject::Connection connection =
        QObject::connect(&m_monitor, &ChannelMonitor::commandSent, take);
    action();
    QObject::disconnect(connection);
    expect(isTaken, QStringLiteral("\"%1\" was not sent").arg(QString::fromLatin1(command)));
}

void Tour::during(const std::function<void()> &action, const QVector<ModalStep> &steps)
{
    m_watcher.during(action, steps);
}

const ControllerState &Tour::controllerState() const
{
    return m_link.controller().state();
}

// Activation, focus and logs reach a window only in the event loop.
void Tour::settle()
{
    QCoreApplication::processEvents();
}

QMenu *Tour::openMenu(const QString &title)
{
    QMenuBar *bar = m_window.menuBar();
    QAction *action = actionWithText(bar, title);
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(action).center());
    QMenu *menu = action->menu();
    expect(menu->isVisible(), QStringLiteral("the menu \"%1\" does not open").arg(title));
    return menu;
}

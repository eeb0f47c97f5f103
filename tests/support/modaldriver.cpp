#include "tests/support/modaldriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QTest>

namespace {

QString describe(QWidget *window)
{
    QString text = QStringLiteral("%1 '%2' titled '%3'")
                       .arg(QString::fromLatin1(window->metaObject()->className()),
                            window->objectName(), window->windowTitle());
    if (auto *box = qobject_cast<QMessageBox *>(window)) {
        text += QStringLiteral(" saying '%1'").arg(box->text());
    }
    return text;
}

void close(QWidget *window)
{
    if (auto *dialog = qobject_cast<QDialog *>(window)) {
        dialog->reject();
    }
    window->close();
}

QStringList differences(const ExpectedBox &expected, QMessageBox *box)
{
    QStringList found;
    const auto compare = [&found](const QString &what, const auto &actual, const auto &wanted) {
        if (actual != wanted) {
            QString text;
            QDebug(&text).nospace()
                << qPrintable(what) << " is " << actual << ", expected " << wanted;
            found << text;
        }
    };
    compare(QStringLiteral("icon"), box->icon(), expected.icon);
    compare(QStringLiteral("title"), box->windowTitle(), expected.title);
    compare(QStringLiteral("text"), box->text(), expected.text);
    compare(QStringLiteral("buttons"), int(box->standardButtons()), int(expected.buttons));
    auto *defaultButton = box->defaultButton();
    compare(QStringLiteral("default button"),
            defaultButton ? box->standardButton(defaultButton) : 0, expected.defaultButton);
    if (expected.parent) {
        compare(QStringLiteral("parent"), box->parentWidget(), *expected.parent);
    }
    return found;
}

} // namespace

ModalDriver::ModalDriver()
{
    scheduleTick();
}

ModalDriver::~ModalDriver()
{
    verify();
}

void ModalDriver::expectBox(const ExpectedBox &expected)
{
    Step step;
    step.name = QStringLiteral("message box '%1'").arg(expected.text);
    step.fits = [](QWidget *window) { return qobject_cast<QMessageBox *>(window) != nullptr; };
    step.action = [this, expected](QWidget *window) {
        auto *box = qobject_cast<QMessageBox *>(window);
        for (const QString &difference : differences(expected, box)) {
            complain(difference);
        }
        if (QAbstractButton *button = box->button(expected.answer)) {
            button->click();
        }
    };
    m_steps.enqueue(step);
}

void ModalDriver::expectDialog(const QString &objectName, std::function<void(QDialog *)> action)
{
    Step step;
    step.name = QStringLiteral("dialog '%1'").arg(objectName);
    step.fits = [objectName](QWidget *window) {
        return qobject_cast<QDialog *>(window) != nullptr && window->objectName() == objectName;
    };
    step.action = [action = std::move(action)](QWidget *window) {
        action(qobject_cast<QDialog *>(window));
    };
    m_steps.enqueue(step);
}

void ModalDriver::expectFileDialog(const QString &caption, const QString &path,
                                   std::function<void(QFileDialog *)> inspect)
{
    Step step;
    step.name = QStringLiteral("file dialog '%1'").arg(caption);
    step.fits = [caption](QWidget *window) {
        return qobject_cast<QFileDialog *>(window) != nullptr && window->windowTitle() == caption;
    };
    step.action = [path, inspect = std::move(inspect)](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        if (inspect) {
            inspect(dialog);
        }
        if (path.isEmpty()) {
            dialog->reject();
            return;
        }
        dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
        QTest::keyClick(dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit")),
                        Qt::Key_Return);
    };
    m_steps.enqueue(step);
}

void ModalDriver::agree(QWidget *window)
{
    const auto *box = qobject_cast<QMessageBox *>(window);
    for (const auto button : {QMessageBox::Yes, QMessageBox::Ok}) {
        if (QAbstractButton *found = box ? box->button(button) : nullptr) {
            found->click();
            return;
        }
    }
}

void ModalDriver::verify()
{
    const QStringList problems = takeProblems();
    if (!problems.isEmpty()) {
        QTest::qFail(qPrintable(problems.join(QStringLiteral("; "))), __FILE__, __LINE__);
    }
}

QStringList ModalDriver::takeProblems()
{
    for (const Step &step : qAsConst(m_steps)) {
        complain(QStringLiteral("never seen: ") + step.name);
    }
    m_steps.clear();
    QStringList problems;
    problems.swap(m_problems);
    return problems;
}

void ModalDriver::scheduleTick() const
{
    // A new timer for each tick: one that is being handled would not fire in the event loops of the
    // windows that its action opens.
    QTimer::singleShot(1, this, &ModalDriver::tick);
}

void ModalDriver::tick()
{
    scheduleTick();
    const QPointer<QWidget> window = QApplication::activeModalWidget();
    if (window && !m_beingHandled.contains(window)) {
        QApplication::setActiveWindow(window); // the window system has not come round to it yet
        m_beingHandled.push(window);
        handle(window);
        m_beingHandled.pop();
    }
}

void ModalDriver::handle(QWidget *window)
{
    if (!m_steps.isEmpty() && m_steps.head().fits(window)) {
        run(m_steps.dequeue().action, window, QStringLiteral("left open: "));
        return;
    }
    const QString instead =
        m_steps.isEmpty() ? QString() : QStringLiteral(" instead of ") + m_steps.head().name;
    run(m_others, window, QStringLiteral("unexpected "), instead);
}

void ModalDriver::run(const std::function<void(QWidget *)> &action, QWidget *window,
                      const QString &complaint, const QString &rest)
{
    const QPointer<QWidget> watched(window);
    action(window);
    if (watched && watched->isVisible()) {
        complain(complaint + describe(watched) + rest);
        close(watched);
    }
}

void ModalDriver::complain(const QString &problem)
{
    m_problems << problem;
}

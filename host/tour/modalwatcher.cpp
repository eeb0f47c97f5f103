#include "host/tour/modalwatcher.h"

#include "host/tour/stepfailed.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QEventLoop>
#include <QMessageBox>
#include <QPointer>

#include <utility>

namespace {

constexpr int defaultLongestStepMs = 60000;

QString describe(QDialog *window)
{
    const QString title = window->windowTitle();
    if (auto *box = qobject_cast<QMessageBox *>(window)) {
        return QStringLiteral("box \"%1\" saying \"%2\"").arg(title, box->text());
    }
    return QStringLiteral("window \"%1\"").arg(title);
}

} // namespace

ModalWatcher::ModalWatcher()
{
    m_watchdog.setSingleShot(true);
    m_watchdog.setInterval(defaultLongestStepMs);
    connect(&m_watchdog, &QTimer::timeout, this, &ModalWatcher::expire);
    m_wakeTimer.setSingleShot(true);
    connect(&m_wakeTimer, &QTimer::timeout, this, &ModalWatcher::woken);
    m_frames.push({});
    qApp->installEventFilter(this);
}

void ModalWatcher::during(const std::function<void()> &action, const QVector<ModalStep> &steps)
{
    Frame frame;
    for (const ModalStep &step : steps) {
        frame.steps.enqueue(step);
    }
    m_frames.push(frame);
    try {
        action();
    } catch (...) {
        m_frames.pop();
        throw;
    }
    frame = m_frames.pop();
    throwFailure(frame);
    if (!frame.steps.isEmpty()) {
        throw StepFailed(QStringLiteral("%1 did not open").arg(frame.steps.head().name));
    }
}

void ModalWatcher::rearm()
{
    m_watchdog.start();
    throwFailure(m_frames.first());
}

bool ModalWatcher::waitUntil(const std::function<bool()> &condition) const
{
    QEventLoop loop;
    connect(this, &ModalWatcher::woken, &loop, [&] {
        if (condition()) {
            loop.quit();
        }
    });
    connect(this, &ModalWatcher::expired, &loop, &QEventLoop::quit);
    if (!condition()) {
        loop.exec();
    }
    return condition();
}

void ModalWatcher::wake()
{
    m_wakeTimer.start();
}

bool ModalWatcher::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        auto *window = qobject_cast<QDialog *>(watched);
        if (window && window->isModal()) {
            // A new timer for each window: it fires in the event loop that the window is about to
            // start.
            QTimer::singleShot(0, window, [this, window] { handle(window); });
        }
    }
    return QObject::eventFilter(watched, event);
}

void ModalWatcher::handle(QDialog *window)
{
    const QPointer<QDialog> watched(window);
    Frame &frame = m_frames.top();
    if (frame.steps.isEmpty() || !frame.steps.head().fits(window)) {
        fail(QStringLiteral("unexpected ") + describe(window));
    } else if (!frame.failure) {
        runStep(frame.steps.dequeue(), window);
    }
    if (watched && watched->isVisible()) {
        fail(QStringLiteral("left open: ") + describe(window));
        watched->reject();
    }
}

// An exception ends here: it must not pass through the event loop that has called us.
void ModalWatcher::runStep(const ModalStep &step, QDialog *window)
{
    try {
        step.handle(window);
    } catch (...) {
        m_frames.top().failure = std::current_exception();
    }
}

// The first failure is the one to be told; the others follow from it.
void ModalWatcher::fail(const QString &reason)
{
    if (!m_frames.top().failure) {
        m_frames.top().failure = std::make_exception_ptr(StepFailed(reason));
    }
}

void ModalWatcher::throwFailure(Frame &frame)
{
    if (const std::exception_ptr failure = std::exchange(frame.failure, nullptr)) {
        std::rethrow_exception(failure);
    }
}

void ModalWatcher::expire()
{
    fail(QStringLiteral("takes too long"));
    emit expired();
    if (auto *window = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
        window->reject();
    }
}

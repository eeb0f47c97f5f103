#pragma once

#include <QObject>
#include <QQueue>
#include <QStack>
#include <QTimer>
#include <QVector>

#include <exception>
#include <functional>

class QDialog;

/// One modal window that an action is expected to open, and what is done with it.
struct ModalStep
{
    QString name;                          ///< for people
    std::function<bool(QDialog *)> fits;   ///< whether it is the right window
    std::function<void(QDialog *)> handle; ///< has to close the window in the end
};

/// Hands the modal windows that an action opens to those who expect them.
///
/// A window that nobody expects, one that stays open after it was handled, one that never opens and
/// one that takes too long fail the step; all windows are closed then, so that the action returns
/// in any case.
class ModalWatcher : public QObject
{
    Q_OBJECT

public:
    ModalWatcher();

    /// Runs @p action, which opens the windows of @p steps one after the other, and returns when it
    /// has returned. Steps may call during() again.
    /// @throw StepFailed, also with what a step threw
    void during(const std::function<void()> &action, const QVector<ModalStep> &steps);

    /// How long a step may take, a minute at first. Takes effect with the next rearm().
    void setLongestStep(int milliseconds) { m_watchdog.setInterval(milliseconds); }
    /// Begins the time anew that the next step may take.
    /// @throw StepFailed if a window has opened since the last step that nobody asked for
    void rearm();
    /// Runs the event loop until @p condition holds. It is looked at whenever wake() was called.
    /// @return whether it came to hold before the time was over
    bool waitUntil(const std::function<bool()> &condition) const;
    /// Lets waitUntil() look again, at the next turn of the event loop.
    void wake();

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void woken();
    void expired();

private:
    struct Frame
    {
        QQueue<ModalStep> steps;
        std::exception_ptr failure;
    };

    void handle(QDialog *window);
    void runStep(const ModalStep &step, QDialog *window);
    void fail(const QString &reason);
    void expire();
    static void throwFailure(Frame &frame);

    QStack<Frame> m_frames; // the lowest one is for windows that open on their own
    QTimer m_watchdog;
    QTimer m_wakeTimer;
};

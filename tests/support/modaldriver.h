#pragma once

#include <QDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QQueue>
#include <QStack>
#include <QStringList>

#include <functional>
#include <optional>

/// What a test expects of one message box, and how it is answered.
struct ExpectedBox
{
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QString title;
    QString text;
    QMessageBox::StandardButton answer = QMessageBox::Ok;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    QMessageBox::StandardButton defaultButton = QMessageBox::Ok;
    std::optional<QWidget *> parent =
        std::nullopt; ///< compared when given; nullptr means no parent
};

/// Answers the modal windows that a test's actions open, in the order in which the test expects
/// them.
///
/// It never waits and never hangs: a window that nobody expected, one that is not as expected, and
/// one that is still open after its action has run are closed and fail the test; so does an
/// expectation that is left over when the driver is destroyed or verify() is called.
class ModalDriver : public QObject
{
public:
    ModalDriver();
    ~ModalDriver() override;

    /// Expects a message box and clicks the button that answers it.
    void expectBox(const ExpectedBox &expected);

    /// Expects a dialog with @p objectName and runs @p action, which has to close it in the end.
    /// The action may open further windows; they are expected after this one.
    void expectDialog(const QString &objectName, std::function<void(QDialog *)> action);

    /// Expects a file dialog with @p caption and chooses @p path in it; an empty path cancels it.
    /// @p inspect may look at the dialog before.
    void expectFileDialog(const QString &caption, const QString &path,
                          std::function<void(QFileDialog *)> inspect = {});

    /// Hands every window that is not expected next to @p action: for when it is not known
    /// beforehand which windows will open. One that is still open afterwards is a surprise.
    void handleOthers(std::function<void(QWidget *)> action) { m_others = std::move(action); }

    /// Says Yes or OK to a message box; leaves other windows open. One for handleOthers().
    static void agree(QWidget *window);

    /// Fails the test if anything went wrong or is left over, and forgets it.
    void verify();

    /// What went wrong so far and what is left over, one sentence each, and forgets it.
    QStringList takeProblems();

private:
    struct Step
    {
        QString name;
        std::function<bool(QWidget *)> fits;
        std::function<void(QWidget *)> action;
    };

    void scheduleTick() const;
    void tick();
    void handle(QWidget *window);
    void run(const std::function<void(QWidget *)> &action, QWidget *window,
             const QString &complaint, const QString &rest = {});
    void complain(const QString &problem);

    QQueue<Step> m_steps;
    std::function<void(QWidget *)> m_others = [](QWidget *) {};
    QStack<QPointer<QWidget>> m_beingHandled; ///< their actions run inside one another
    QStringList m_problems;
};

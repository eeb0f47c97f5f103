#pragma once

#include "host/tour/modalwatcher.h"
#include "host/tour/picturebook.h"
#include "host/tour/transcript.h"

#include <QDebug>
#include <QDir>
#include <QMessageBox>

class ChannelMonitor;
class DialogDriver;
class HostSession;
class MainWindow;
class QMenu;
class SimulatedLink;
struct ControllerState;

/// What the chapters of the tour use: it drives the host's window, follows the modal windows that
/// open, takes pictures, and compares outcomes.
///
/// Every operation throws StepFailed when it does not come out as expected.
class Tour
{
public:
    using Visit = std::function<void(DialogDriver &)>;

    /// Leaves everything in @p folder, which has to exist. The session has its module loaded, but
    /// not started.
    Tour(HostSession &session, SimulatedLink &link, const QDir &folder);

    /// Names what follows, for the transcript and for people who have to find a failure.
    void step(const QString &name);
    QString currentStep() const { return m_step; }
    /// Adds a line to the transcript.
    void note(const QString &text);

    /// Lets the session ask the controller and start its module.
    void startModule();

    /// There is such an action in such a menu of the host's window.
    void expectAction(const QString &menuTitle, const QString &actionText);
    /// Opens a menu of the host's window and chooses an action in it, both by their texts with
    /// mnemonics; the action opens the windows of @p steps.
    /// @param pictureName  if given, the open menu is pictured
    void chooseInMenu(const QString &menuTitle, const QString &actionText,
                      const QVector<ModalStep> &steps, const QString &pictureName = {});

    /// The step of a dialog with this object name.
    ModalStep dialog(const QString &objectName, const Visit &visit);
    /// The step of a message box with exactly this title and text, answered by one of its buttons.
    /// With a @p pictureName it is pictured before.
    ModalStep box(const QString &title, const QString &text, QMessageBox::StandardButton answer,
                  const QString &pictureName = {});
    /// The step of a file dialog in which @p path is chosen.
    ModalStep fileDialog(const QString &caption, const QString &path,
                         const QString &pictureName = {});

    void expect(bool isAsExpected, const QString &what);
    template <typename Value>
    void expectEqual(const Value &actual, const Value &expected, const QString &what);
    /// Runs the event loop until the host has shown or received what makes @p condition true.
    void waitUntil(const QString &what, const std::function<bool()> &condition);

    /// The text of a label in the host's window.
    QString windowText(const QString &label) const;
    /// Takes a picture of the host's window, with @p above on top of it if given.
    void pictureWindow(const QString &name, QWidget *above = nullptr);
    /// Takes a picture of the host's window at the moment when @p action has sent @p command, in
    /// the middle of a transfer for example.
    void pictureWindowDuring(const QByteArray &command, const QString &name,
                             const std::function<void()> &action);
    /// Takes a picture of another window.
    void picture(const QString &name, QWidget *window);
    int pictureCount() const { return m_pictures.count(); }

    /// Runs @p action, which opens the windows of @p steps.
    void during(const std::function<void()> &action, const QVector<ModalStep> &steps);

    const ControllerState &controllerState() const;
    SimulatedLink &link() { return m_link; }
    const QDir &folder() const { return m_folder; }

private:
    static void settle();
    QMenu *openMenu(const QString &title);

    HostSession &m_session;
    MainWindow &m_window;
    ChannelMonitor &m_monitor;
    SimulatedLink &m_link;
    const QDir m_folder;
    ModalWatcher m_watcher;
    PictureBook m_pictures;
    Transcript m_transcript;
    QString m_step;
};

template <typename Value>
void Tour::expectEqual(const Value &actual, const Value &expected, const QString &what)
{
    QString comparison;
    QDebug(&comparison).nospace() << qUtf8Printable(what) << " is " << actual << " instead of "
                                  << expected;
    expect(actual == expected, comparison);
}

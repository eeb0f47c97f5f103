#pragma once

#include "tests/endtoend/frontend.h"

#include <QDialog>
#include <QMessageBox>
#include <QVector>

#include <functional>

/// A user with a home directory of his own in front of a front end.
class Scene : public TemporaryHome, public FrontEnd
{
public:
    using FrontEnd::FrontEnd;

    /// What is prepared, or a window that is to open and what the user does in it.
    using Step = std::function<void(Scene &)>;

    /// Takes the steps in their order, then chooses the plug-in's action. Fails the test unless the
    /// windows open as expected.
    void play(const QVector<Step> &steps);
    /// The same, where the driver is left to the caller.
    void tryToPlay(const QVector<Step> &steps);

    /// Whether a window died before the user was done with it, which play() takes for a failure.
    bool isCutShort = false;
};

/// The words in which scenes are written.
///
/// Windows are named in the order in which they open, however long they stay: what the user does in
/// one goes on when those that it opened have closed. It ends where the window dies.
namespace Story {

using Step = Scene::Step;
using Steps = QVector<Step>;
using Action = std::function<void(QDialog *)>;
using Actions = QVector<Action>;

/// @name What the user does in a window
/// @{
Action click(const QByteArray &button);
Action type(const char *lineEdit, const QString &text);
Action press(Qt::Key key);
Action selectRow(const QString &row);
Action doubleClickRow(const QString &row);
/// In the tables where any number of rows can be selected.
Action selectOnly(const QStringList &rows);
/// Sees the row in the table, as Table::lines() tells it.
Action see(const QString &line);
void leave(QDialog *window);
/// @}

/// @name The windows
/// @{
Step on(const QString &objectName, const Actions &actions);
Step onList(const Actions &actions);
Step onNew(const Actions &actions);
Step onEdit(const Actions &actions);
Step onLock(const Actions &actions);
Step onUnlock(const Actions &actions);
Step onSave(const Actions &actions);
Step onLoad(const Actions &actions);
/// Chooses a file of that name in the home directory.
Step chooseToSave(const QString &name);
Step chooseToBackUp(const QString &name);
Step chooseToLoad(const QString &name);
Step box(const ExpectedBox &expected);
/// What tells of success at last. The file is named as it was chosen.
Step savedBox(const QString &name);
Step backedUpBox();
Step loadedBox();
/// Any message box.
Step answer(QMessageBox::StandardButton button);
/// @}

/// @name Preparations
/// @{
/// What goes wrong in the channel, see FaultPlan::add().
Step fault(const QString &rule);
/// What somebody else tells the controller.
Step execute(const QByteArray &command);
/// A file of what the controller has stored under these identifiers by then.
Step makeFile(const QString &name, const QByteArrayList &identifiers);
/// @}

/// @name Whole visits to the list
/// @{
/// Saves @p rows.
Steps save(const QStringList &rows, const QString &name, const Steps &boxes);
Steps backUp(const QString &name, const Step &outcome = backedUpBox());
/// Chooses a file to load.
Steps load(const QString &name, const Steps &windows);
/// @}

} // namespace Story

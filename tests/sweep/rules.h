#pragma once

#include <QMessageBox>

/// A message box that the plug-in shows; "%1" in its text stands for a file.
struct Box
{
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    const char *title = "";
    const char *text = "";
};

/// What a failed command means for the rest of the procedure.
enum class Then {
    GoesOn,   ///< nothing: the next command follows
    NextItem, ///< the rest for this configuration, slot or chunk is left out
    Ends      ///< nothing of this procedure follows
};

/// What the plug-in owes its user when a command fails. A table of these and the order of the
/// commands are all there is to an operation.
struct Rule
{
    const char *command;          ///< as in the vocabulary, with "%s", "%d" and "%02d"
    const char *report = nullptr; ///< the error posted, if any; "%1" stands for what went wrong
    Then then = Then::GoesOn;
    Box box = {}; ///< shown at once, if it has an icon
};

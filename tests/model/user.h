#pragma once

#include "tests/endtoend/frontend.h"
#include "tests/model/choices.h"
#include "tests/sweep/transcript.h"

#include <functional>

/// What a user does to the windows of a front end. Whatever opens on the way is written down in the
/// transcript.
class User
{
public:
    User(FrontEnd &frontEnd, Transcript &transcript);

    /// Opens the list from the menu and does @p action there, which closes the list. Does nothing
    /// where it does not open.
    void open(const std::function<void(QDialog *list)> &action);
    static void close(QDialog *list);

    static void clickRow(QDialog *list, int row);
    static void doubleClick(QDialog *list, int row);
    static void pressUpOrDown(QDialog *list, int step);
    static void apply(QDialog *list, Way way);
    void deleteCurrent(QDialog *list, Way way, bool isConfirmed);
    void createNew(QDialog *list, bool isClone, const Attempts &attempts);
    /// With a double click, the row is the current one.
    void edit(QDialog *list, Way way, const Attempts &attempts);
    void lock(QDialog *list, const Attempts &attempts);
    void unlock(QDialog *list, const Attempts &attempts);
    void save(QDialog *list, const FileChoice &choice);
    void backUp(QDialog *list, const QString &path);
    void load(QDialog *list, const FileChoice &choice);

private:
    /// The widgets of a dialog with one or two fields.
    struct Form
    {
        const char *dialog;
        const char *first;
        const char *second; ///< null where there is none
        const char *ok;
        const char *cancel;
    };

    void answer(QWidget *window);
    void expect(const QString &objectName, const std::function<void(QDialog *)> &action);
    /// Expects that dialog and makes the attempts in it. @p contents is what it shows at first,
    /// @p choose is done before each of them is confirmed.
    void fillIn(const Form &form, const Attempts &attempts,
                const std::function<QStringList(QDialog *)> &contents,
                const std::function<void(QDialog *, const Attempt &)> &choose = {});
    void useSaveDialog(QDialog *list, const std::function<void(QDialog *)> &action);

    FrontEnd &m_frontEnd;
    Transcript &m_transcript;
    bool m_isDeletionConfirmed = false;
};

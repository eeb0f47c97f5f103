#pragma once

#include "tests/endtoend/frontend.h"
#include "tests/model/choices.h"
#include "tests/model/transcript.h"

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
    void createNew(QDialog *list, const CreationChoice &choice);
    /// With a double click, the row is the current one.
    void edit(QDialog *list, Way way, const EditChoice &choice);
    void lock(QDialog *list, const LockChoice &choice);
    void unlock(QDialog *list, const UnlockChoice &choice);
    void save(QDialog *list, const FileChoice &choice);
    void backUp(QDialog *list, const QString &path);
    void load(QDialog *list, const FileChoice &choice);

private:
    void answer(QWidget *window);
    void expect(const QString &objectName, const std::function<void(QDialog *)> &action);
    void useSaveDialog(QDialog *list, const std::function<void(QDialog *)> &action);

    FrontEnd &m_frontEnd;
    Transcript &m_transcript;
    bool m_isDeletionConfirmed = false;
};

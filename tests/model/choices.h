#pragma once

#include <QString>
#include <QVector>

/// What a user wants, in each of the dialogs. Where there are several attempts, they are made one
/// after the other as long as the dialog stays open; it is cancelled after the last one.

/// What is put into the two fields of a dialog: description and owner, or a password twice.
struct TwoTexts
{
    QString first;
    QString second;
};

struct CreationChoice
{
    bool isClone = true;
    QVector<TwoTexts> attempts; ///< description and owner
};

struct EditChoice
{
    QVector<TwoTexts> attempts; ///< description and owner
};

struct LockChoice
{
    QVector<TwoTexts> attempts; ///< the password and its repetition
};

struct PasswordAttempt
{
    QString password;
    bool isSuper = false;
};

struct UnlockChoice
{
    QVector<PasswordAttempt> attempts;
};

/// Which rows, from the top, go into or come out of which file; an empty path cancels the choice of
/// a file.
struct FileChoice
{
    QVector<int> rows;
    QString path;
    bool opensDialog = true; ///< there are configurations in it, so that there is a choice of rows
};

/// How an action of the list is started.
enum class Way { Button, Key, DoubleClick };

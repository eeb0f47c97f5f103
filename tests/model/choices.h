#pragma once

#include <QString>
#include <QVector>

/// What is put into the two fields of a dialog before it is confirmed: description and owner, a
/// password twice, or a password alone.
struct Attempt
{
    QString first;
    QString second = {};
    bool isSuper = false; ///< the password is the super one
};

/// Made one after the other as long as the dialog stays open; it is cancelled after the last one.
using Attempts = QVector<Attempt>;

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

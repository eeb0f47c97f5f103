#pragma once

#include <QStringList>
#include <QVector>

class QDialog;

/// One row of the list of configurations.
struct RowPicture
{
    QString identifier; ///< in the hidden column
    QString description;
    QString owner;
    QString locked; ///< "yes" or "no" with the icon that belongs to it; empty without the column
    bool isBold = false;
};

/// What the list of configurations looks like: what was predicted, or what is seen.
struct ListPicture
{
    /// What @p list shows now.
    static ListPicture of(const QDialog *list);

    /// One line for each thing that can be seen, to be compared and printed.
    QStringList lines() const;

    QVector<RowPicture> rows;
    int currentRow = -1;
    QString activeText; ///< the description of the active configuration, above the table
    QString warning;    ///< that the store is nearly full; empty if hidden
    QString lockButton; ///< its text; empty if hidden
    QStringList enabledButtons;
    QString focus;
};

#pragma once

#include "tests/model/choices.h"
#include "tests/model/controllermodel.h"
#include "tests/model/listpicture.h"

#include <QByteArrayList>
#include <QDate>
#include <QMap>

/// What the connected controller is able to do, by its version.
struct Abilities
{
    bool hasLocks = true;
    bool hasTransfers = true;
    bool reportsFreeSpace = true;
};

/// What no rule decides, taken from what happened.
struct Facts
{
    QByteArrayList newIdentifiers; ///< they have the time in them
    QStringList shownOrder;        ///< of the rows; those of equal descriptions stand in any order
};

/// A file as a user knows it: the configurations in it; none if it holds something else.
struct FileModel
{
    enum class Kind { Configurations, Text, Empty };

    Kind kind = Kind::Configurations;
    QVector<StoredModel> items;
};

/// What a user sees and what the controller holds after each action, by the rules. Each function is
/// one action, on the list unless it says otherwise; it changes the model and returns the lines of
/// the transcript.
class FrontEndModel
{
public:
    FrontEndModel(ControllerModel controllerAtFirst, const Abilities &abilities);

    /// Opens the list.
    QStringList open(const Facts &facts);
    QStringList clickRow(int row);
    QStringList pressUpOrDown(int step);
    QStringList apply(Way way, const Facts &facts);
    QStringList deleteCurrent(bool isConfirmed, const Facts &facts);
    QStringList createNew(bool isClone, const Attempts &attempts, const Facts &facts);
    QStringList edit(Way way, const Attempts &attempts, const Facts &facts);
    QStringList lock(const Attempts &attempts, const Facts &facts);
    QStringList unlock(const Attempts &attempts, const Facts &facts);
    QStringList save(const FileChoice &choice, const Facts &facts);
    /// Into a new file.
    QStringList backUp();
    QStringList load(const FileChoice &choice, const Facts &facts);

    /// @name What a user can see before an action
    /// @{
    bool isEnabled(const char *button) const { return m_list.enabledButtons.contains(button); }
    bool opensUnlock() const { return m_list.lockButton == "Unl&ock"; }
    int rowCount() const { return m_list.rows.size(); }
    int entryCount() const { return m_entries.size(); }
    int currentRow() const { return m_list.currentRow; }
    RowPicture row(int row) const { return m_list.rows.at(row); }
    const ListPicture &list() const { return m_list; }
    /// @}

    ControllerModel controller;
    QMap<QString, FileModel> files;

private:
    struct Entry
    {
        QByteArray identifier;
        QString description;
        QString owner;
        bool isLocked = false;
    };

    /// Reads the list again; the row of that number is current, or that of the active one.
    void refreshAt(int row, const Facts &facts);
    void refreshAtActive(const Facts &facts);
    void refresh(const Facts &facts);
    void showFreeSpace();
    void fillRows(const QStringList &shownOrder);
    void select(int row);
    void selectActive();
    void showActiveText();
    void enable(const QString &button, bool isEnabled);
    QByteArray currentIdentifier() const;
    QStringList activateCurrent(const Facts &facts);
    QStringList editCurrent(const Attempts &attempts);
    QVector<StoredModel> copy(const QVector<int> &rows, const Facts &facts, QStringList *lines);
    QStringList storeFile(const QString &path, const QVector<StoredModel> &items);
    QStringList openFile(const QString &path) const;
    QStringList importItems(const QVector<StoredModel> &items);
    bool isShownLocked(const QByteArray &identifier) const;

    const Abilities m_abilities;
    ListPicture m_list;
    QVector<Entry> m_entries; // as they were read, by slot
    QByteArray m_activeIdentifier;
};

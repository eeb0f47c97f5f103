#pragma once

#include <QList>
#include <QString>

/// One configuration of the controller, as the list dialog last read it.
struct ConfigEntry
{
    QString identifier;  ///< a word, unique on the controller
    QString description; ///< without double quotes
    QString owner;       ///< without double quotes
    bool locked =
        false; ///< protected by a password; always false when the controller knows no locks
};

/// In the order of the controller's slots.
using ConfigEntryList = QList<ConfigEntry>;

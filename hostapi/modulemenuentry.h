#pragma once

#include <QString>

class QAction;
class QWidget;

/// One action that a module wants to see in the host's menu bar.
struct ModuleMenuEntry
{
    QAction *action = nullptr; ///< owned by the module
    int actionPosition = 0;    ///< place of the action within its menu; lower comes first
    QString menuTitle; ///< title of the menu, mnemonic included; created by the host when missing
    int menuPosition = 0;      ///< place of the menu in the menu bar; lower comes first
    QWidget *widget = nullptr; ///< the dialog behind the action, owned by the module; may be null
    int reserved = 0;          ///< always 0
};

#pragma once

#include <QString>

class QMenu;
class QMenuBar;
struct ModuleMenuEntry;

/// Places menus and actions by the positions that modules ask for: lower comes first, equal ones
/// keep the order in which they came.
namespace ModuleMenus {

/// The menu of @p bar with this title, mnemonic included. A missing one is created at @p position.
QMenu *menu(QMenuBar *bar, const QString &title, int position);

/// Puts the entry's action where it asks to be.
void place(QMenuBar *bar, const ModuleMenuEntry &entry);

} // namespace ModuleMenus

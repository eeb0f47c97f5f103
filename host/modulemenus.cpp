#include "host/modulemenus.h"

#include "hostapi/modulemenuentry.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace {

const char *const positionProperty = "position";

// The action before which one with this position belongs; null for the end.
QAction *successor(const QWidget *container, int position)
{
    const QList<QAction *> actions = container->actions();
    const auto next = std::find_if(actions.begin(), actions.end(), [position](QAction *action) {
        return action->property(positionProperty).toInt() > position;
    });
    return next == actions.end() ? nullptr : *next;
}

} // namespace

QMenu *ModuleMenus::menu(QMenuBar *bar, const QString &title, int position)
{
    const QList<QAction *> actions = bar->actions();
    for (QAction *action : actions) {
        if (action->menu() != nullptr && action->menu()->title() == title) {
            return action->menu();
        }
    }
    auto *menu = new QMenu(title, bar);
    menu->menuAction()->setProperty(positionProperty, position);
    bar->insertMenu(successor(bar, position), menu);
    return menu;
}

void ModuleMenus::place(QMenuBar *bar, const ModuleMenuEntry &entry)
{
    if (!entry.action) {
        return;
    }
    QMenu *target = menu(bar, entry.menuTitle, entry.menuPosition);
    entry.action->setProperty(positionProperty, entry.actionPosition);
    target->insertAction(successor(target, entry.actionPosition), entry.action);
}

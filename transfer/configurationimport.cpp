#include "transfer/configurationimport.h"

#include "channel/controller.h"
#include "transfer/configloaddlg.h"
#include "widgets/messagebox.h"
#include "widgets/waitcursor.h"

namespace {

constexpr int importTimeoutMs = 20000;

// Leaves out what must not be replaced.
QStringList withRoomMadeFor(const QStringList &identifiers, const LockStates &existing,
                            const Controller &controller)
{
    QStringList wanted;
    for (const QString &identifier : identifiers) {
        if (existing.value(identifier)) {
            continue; // it is locked
        }
        if (existing.contains(identifier)) {
            controller.deleteConfiguration(identifier); // that it failed shows in the import
        }
        wanted << identifier;
    }
    return wanted;
}

bool areImported(const QStringList &identifiers, const Controller &controller)
{
    for (const QString &identifier : identifiers) {
        controller.setTimeout(importTimeoutMs, 0);
        if (!controller.importConfiguration(identifier)) {
            return false;
        }
    }
    return true;
}

} // namespace

void importConfigurations(const Controller &controller, const QStringList &identifiers,
                          const LockStates &existing, QWidget *dialog)
{
    WaitCursor cursor;
    QString outcome = ConfigLoadDlg::tr("No configuration is loaded.");
    const QStringList wanted = withRoomMadeFor(identifiers, existing, controller);
    if (!wanted.isEmpty()) {
        outcome = areImported(wanted, controller)
            ? ConfigLoadDlg::tr("Loading configuration successfully.")
            : ConfigLoadDlg::tr("Loading configuration unsuccessfully.");
        controller.announceActiveConfigurationChanged();
    }
    cursor.restore();
    MessageBox::information(dialog, dialog, ConfigLoadDlg::tr("Load Configurations"), outcome);
}

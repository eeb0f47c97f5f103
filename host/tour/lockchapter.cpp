#include "host/tour/chapters.h"

#include "host/simulatedlink.h"
#include "host/tour/dialogdriver.h"
#include "host/tour/listvisit.h"

namespace {

const char *const lockDialog = "LockConfigurationDialog";
const char *const unlockDialog = "UnlockConfigurationDialog";
const char *const warningTitle = "Warning";

void enterPasswords(DialogDriver &dialog, const QString &password, const QString &repeated)
{
    dialog.enter("lineEdit_new_password", password);
    dialog.enter("lineEdit_new_password_repeat", repeated);
}

void expectLock(Tour &tour, DialogDriver &list, const QString &state)
{
    const QString active = ListVisit::active(tour);
    tour.expectEqual(list.cell("tableWidget", active, 3), state, "lock state in the list");
    tour.expectEqual(list.text("pushButton_lock"),
                     state == QLatin1String("yes") ? QStringLiteral("Unl&ock")
                                                   : QStringLiteral("L&ock"),
                     "text of the lock button");
}

void lock(Tour &tour)
{
    tour.step(QStringLiteral("Lock the active configuration, after two mistakes"));
    const auto enter = [&](DialogDriver &dialog) {
        dialog.picture(QStringLiteral("lock"));
        dialog.click("pushButton_ok",
                     {tour.box(warningTitle, "Password must not be empty.", QMessageBox::Ok)});
        enterPasswords(dialog, "night shift", "day");
        tour.expectEqual(dialog.text("lineEdit_new_password"), QStringLiteral("nightshift"),
                         "a password typed with a blank");
        dialog.click(
            "pushButton_ok",
            {tour.box(warningTitle, "The entered passwords do not match.", QMessageBox::Ok)});
        enterPasswords(dialog, "nightshift", "nightshift");
        dialog.click("pushButton_ok");
    };
    ListVisit::open(tour, [&](DialogDriver &list) {
        expectLock(tour, list, QStringLiteral("no"));
        list.click("pushButton_lock", {tour.dialog(lockDialog, enter)});
        expectLock(tour, list, QStringLiteral("yes"));
        tour.expect(!list.isEnabled("pushButton_edit"), "Edit is enabled");
        list.picture(QStringLiteral("list-locked"));
        ListVisit::exit(list);
    });
}

void unlock(Tour &tour)
{
    tour.step(QStringLiteral("Unlock it with a wrong password, then with the right one"));
    const auto enter = [&](DialogDriver &dialog) {
        dialog.picture(QStringLiteral("unlock"));
        dialog.click("pushButton_ok",
                     {tour.box(warningTitle, "Please enter the password for this configuration.",
                               QMessageBox::Ok)});
        dialog.enter("lineEdit_password", "guess");
        dialog.click("pushButton_ok",
                     {tour.box(warningTitle, "The password is invalid.", QMessageBox::Ok)});
        tour.expectEqual(dialog.text("lineEdit_password"), QString(), "the refused password");
        dialog.enter("lineEdit_password", "nightshift");
        dialog.click("pushButton_ok");
    };
    ListVisit::open(tour, [&](DialogDriver &list) {
        list.click("pushButton_lock", {tour.dialog(unlockDialog, enter)});
        expectLock(tour, list, QStringLiteral("no"));
        ListVisit::exit(list);
    });
}

void unlockWithSuperPassword(Tour &tour)
{
    tour.step(QStringLiteral("Unlock a configuration with the super password"));
    ControllerState state = ControllerState::sample();
    state.activeIdentifier = ListVisit::locked(tour).toLatin1();
    tour.link().controller().setState(state);
    const auto enter = [&](DialogDriver &dialog) {
        dialog.click("checkBox_use_super_password");
        dialog.enter("lineEdit_password", "guess");
        dialog.click("pushButton_ok",
                     {tour.box(warningTitle, "The super password is invalid.", QMessageBox::Ok)});
        dialog.enter("lineEdit_password", "super");
        dialog.picture(QStringLiteral("unlock-super"));
        dialog.click("pushButton_ok");
    };
    ListVisit::open(tour, [&](DialogDriver &list) {
        expectLock(tour, list, QStringLiteral("yes"));
        list.click("pushButton_lock", {tour.dialog(unlockDialog, enter)});
        expectLock(tour, list, QStringLiteral("no"));
        ListVisit::exit(list);
    });
}

} // namespace

void Chapters::lock(Tour &tour)
{
    ListVisit::startOver(tour);
    ::lock(tour);
    unlock(tour);
    unlockWithSuperPassword(tour);
}

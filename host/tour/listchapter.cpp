#include "host/tour/chapters.h"

#include "host/simulatedlink.h"
#include "host/tour/dialogdriver.h"
#include "host/tour/listvisit.h"
#include "host/tour/tour.h"

namespace {

const char *const table = "tableWidget";

void show(Tour &tour)
{
    tour.step(QStringLiteral("The list shows the controller's configurations"));
    const auto look = [&](DialogDriver &list) {
        list.pictureOverWindow(QStringLiteral("list-over-host"));
        list.picture(QStringLiteral("list"));
        const QString active = ListVisit::active(tour);
        tour.expectEqual(list.title(), QStringLiteral("Configurations"), "title");
        tour.expectEqual(list.rowCount(table), tour.controllerState().configurations.size(),
                         "number of rows");
        tour.expectEqual(list.currentIdentifier(table), active, "current row");
        tour.expectEqual(list.text("lineEdit_activeConfig"), ListVisit::description(tour, active),
                         "active configuration");
        tour.expectEqual(list.cell(table, ListVisit::locked(tour), 3), QStringLiteral("yes"),
                         "lock state of the locked configuration");
        ListVisit::exit(list);
    };
    ListVisit::open(tour, look, QStringLiteral("menu"));
}

void selectLocked(Tour &tour)
{
    tour.step(QStringLiteral("A locked configuration can only be activated"));
    ListVisit::open(tour, [&](DialogDriver &list) {
        list.select(table, ListVisit::locked(tour));
        tour.expect(list.isEnabled("pushButton_apply"), "Apply is disabled");
        tour.expect(!list.isEnabled("pushButton_edit"), "Edit is enabled");
        tour.expect(!list.isEnabled("pushButton_delete"), "Delete is enabled");
        list.picture(QStringLiteral("list-locked-selected"));
        ListVisit::exit(list);
    });
}

void activate(Tour &tour)
{
    tour.step(QStringLiteral("Activate the standard configuration"));
    ListVisit::open(tour, [&](DialogDriver &list) {
        list.select(table, "standard");
        list.click("pushButton_apply");
        tour.expectEqual(ListVisit::active(tour), QStringLiteral("standard"),
                         "the controller's active configuration");
        tour.expectEqual(list.currentIdentifier(table), QStringLiteral("standard"), "current row");
        tour.expect(!list.isEnabled("pushButton_apply"), "Apply is enabled for the active one");
        list.picture(QStringLiteral("list-activated"));
        ListVisit::exit(list);
    });
    tour.waitUntil(QStringLiteral("the host shows the new active configuration"), [&] {
        return tour.windowText("label_activeConfiguration") == QLatin1String("standard");
    });
}

void remove(Tour &tour)
{
    tour.step(QStringLiteral("Delete a configuration, first with a change of mind"));
    const QString doomed = ListVisit::spare(tour);
    const QString question =
        QStringLiteral("You are about to delete the configuration '%1' owned by '%2'.")
            .arg(ListVisit::description(tour, doomed), ListVisit::owner(tour, doomed));
    ListVisit::open(tour, [&](DialogDriver &list) {
        list.select(table, doomed);
        list.click("pushButton_delete",
                   {tour.box("Warning", question, QMessageBox::Cancel,
                             QStringLiteral("delete-question"))});
        tour.expect(ListVisit::contains(tour, doomed), "deleted in spite of Cancel");
        list.click("pushButton_delete", {tour.box("Warning", question, QMessageBox::Ok)});
        tour.expect(!ListVisit::contains(tour, doomed), "not deleted in spite of Ok");
        tour.expectEqual(list.rowCount(table), tour.controllerState().configurations.size(),
                         "number of rows");
        ListVisit::exit(list);
    });
}

void warnOfFullStore(Tour &tour)
{
    tour.step(QStringLiteral("A nearly full store is announced"));
    ControllerState crowded = ControllerState::sample();
    crowded.storeCapacity = crowded.usedBytes() * 101 / 100;
    tour.link().controller().setState(crowded);
    ListVisit::open(tour, [&](DialogDriver &list) {
        tour.expect(list.isVisible("label_error"), "no warning is shown");
        tour.expect(!list.isEnabled("pushButton_new"), "New is enabled");
        list.picture(QStringLiteral("list-store-full"));
        ListVisit::exit(list);
    });
}

void loseContact(Tour &tour)
{
    tour.step(QStringLiteral("A controller that does not answer is reported"));
    tour.link().faults().addMatching(
        QRegularExpression(QStringLiteral("^config number_of_configs$")), {}, 1, false);
    tour.chooseInMenu(QStringLiteral("&VELTRA4"), QStringLiteral("&Configurations"),
                      {tour.box("Command Error", "no contact to Controller", QMessageBox::Ok,
                                QStringLiteral("no-contact"))});
    tour.pictureWindow(QStringLiteral("host-after-changes"));
}

} // namespace

void Chapters::list(Tour &tour)
{
    ListVisit::startOver(tour);
    show(tour);
    selectLocked(tour);
    activate(tour);
    remove(tour);
    warnOfFullStore(tour);
    loseContact(tour);
}

#include "host/tour/chapters.h"

#include "host/simulatedlink.h"
#include "host/tour/dialogdriver.h"
#include "host/tour/listvisit.h"

namespace {

const char *const newDialog = "NewConfigurationDialog";

void cancel(Tour &tour)
{
    tour.step(QStringLiteral("Create a configuration, but think better of it"));
    const int count = tour.controllerState().configurations.size();
    ListVisit::open(tour, [&](DialogDriver &list) {
        const auto giveUp = [](DialogDriver &dialog) { dialog.click("pushButton_2"); };
        list.click("pushButton_new", {tour.dialog(newDialog, giveUp)});
        tour.expectEqual(tour.controllerState().configurations.size(), count,
                         "number of configurations");
        ListVisit::exit(list);
    });
}

void clone(Tour &tour)
{
    tour.step(QStringLiteral("Clone the active configuration, with a description at last"));
    const QByteArray data = ListVisit::data(tour, ListVisit::active(tour));
    const auto fill = [&](DialogDriver &dialog) {
        dialog.picture(QStringLiteral("new"));
        const ModalStep warning =
            tour.box("Warning", "Please enter a configuration description.", QMessageBox::Ok);
        dialog.click("pushButton_create", {warning});
        dialog.enter("lineEdit_desc", "Robot cell 3, \"commissioning\"");
        tour.expectEqual(dialog.text("lineEdit_desc"),
                         QStringLiteral("Robot cell 3, commissioning"),
                         "a description typed with double quotes");
        dialog.enter("lineEdit_owner", "R. Okafor");
        dialog.picture(QStringLiteral("new-filled"));
        dialog.click("pushButton_create");
    };
    ListVisit::open(tour, [&](DialogDriver &list) {
        list.click("pushButton_new", {tour.dialog(newDialog, fill)});
        const QString created = ListVisit::active(tour);
        tour.expectEqual(ListVisit::description(tour, created),
                         QStringLiteral("Robot cell 3, commissioning"), "description");
        tour.expectEqual(ListVisit::owner(tour, created), QStringLiteral("R. Okafor"), "owner");
        tour.expect(ListVisit::data(tour, created) == data, "the clone's data differ");
        tour.expectEqual(list.currentIdentifier("tableWidget"), created, "current row");
        list.picture(QStringLiteral("list-created"));
        ListVisit::exit(list);
    });
}

void createWithDefaults(Tour &tour)
{
    tour.step(QStringLiteral("Create a configuration with default values"));
    const int count = tour.controllerState().configurations.size();
    const auto fill = [&](DialogDriver &dialog) {
        dialog.click("radioButton_new");
        dialog.enter("lineEdit_desc", "From scratch");
        dialog.click("pushButton_create");
    };
    ListVisit::open(tour, [&](DialogDriver &list) {
        list.click("pushButton_new", {tour.dialog(newDialog, fill)});
        tour.expectEqual(tour.controllerState().configurations.size(), count + 1,
                         "number of configurations");
        tour.expectEqual(ListVisit::description(tour, ListVisit::active(tour)),
                         QStringLiteral("From scratch"), "description");
        ListVisit::exit(list);
    });
}

} // namespace

void Chapters::create(Tour &tour)
{
    ListVisit::startOver(tour);
    cancel(tour);
    clone(tour);
    createWithDefaults(tour);
}

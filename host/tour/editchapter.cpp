#include "host/tour/chapters.h"

#include "host/simulatedlink.h"
#include "host/tour/dialogdriver.h"
#include "host/tour/listvisit.h"

namespace {

const char *const editDialog = "EditConfigDialog";

// A description as it can come from another program: the dialogs let nobody type double quotes.
QString storeQuotedDescription(Tour &tour)
{
    QString edited = ListVisit::spare(tour);
    ControllerState state = tour.controllerState();
    for (Configuration &configuration : state.configurations) {
        if (configuration.identifier == edited.toLatin1()) {
            configuration.description = "Hall \"B\", six cameras";
        }
    }
    tour.link().controller().setState(state);
    return edited;
}

void edit(Tour &tour)
{
    tour.step(QStringLiteral("Edit owner and description"));
    const QString edited = storeQuotedDescription(tour);
    const auto change = [&](DialogDriver &dialog) {
        tour.expectEqual(dialog.text("lineEdit_desc"), QStringLiteral("Hall B, six cameras"),
                         "the description to be edited");
        tour.expectEqual(dialog.text("lineEdit_configId"), edited, "identifier");
        dialog.picture(QStringLiteral("edit"));
        dialog.enter("lineEdit_desc", {});
        const ModalStep warning =
            tour.box("Warning", "Configuration description must not be empty.", QMessageBox::Ok);
        dialog.click("pushButton_ok", {warning});
        dialog.enter("lineEdit_desc", "Hall B, eight cameras");
        dialog.enter("lineEdit_owner", "B. Moreau");
        dialog.click("pushButton_ok");
    };
    ListVisit::open(tour, [&](DialogDriver &list) {
        list.select("tableWidget", edited);
        list.click("pushButton_edit", {tour.dialog(editDialog, change)});
        tour.expectEqual(ListVisit::description(tour, edited),
                         QStringLiteral("Hall B, eight cameras"), "description");
        tour.expectEqual(ListVisit::owner(tour, edited), QStringLiteral("B. Moreau"), "owner");
        tour.expectEqual(ListVisit::active(tour), edited, "the controller's active configuration");
        tour.expectEqual(list.cell("tableWidget", edited, 0),
                         QStringLiteral("Hall B, eight cameras"), "description in the list");
        list.picture(QStringLiteral("list-edited"));
        ListVisit::exit(list);
    });
}

void editByDoubleClick(Tour &tour)
{
    tour.step(QStringLiteral("A double click opens the edit dialog, too; Escape leaves it"));
    const QString edited = ListVisit::spare(tour);
    const QString before = ListVisit::description(tour, edited);
    ListVisit::open(tour, [&](DialogDriver &list) {
        const auto giveUp = [](DialogDriver &dialog) {
            dialog.enter("lineEdit_desc", "never stored");
            dialog.press(Qt::Key_Escape);
        };
        list.doubleClick("tableWidget", edited, {tour.dialog(editDialog, giveUp)});
        tour.expectEqual(ListVisit::description(tour, edited), before, "description");
        ListVisit::exit(list);
    });
}

} // namespace

void Chapters::edit(Tour &tour)
{
    ListVisit::startOver(tour);
    ::edit(tour);
    editByDoubleClick(tour);
}

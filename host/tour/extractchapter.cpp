#include "host/tour/chapters.h"

#include "host/simulatedlink.h"
#include "host/tour/dialogdriver.h"
#include "host/tour/listvisit.h"
#include "simulator/archive.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace {

// What "veltra4-backup extract" takes out of a backup of that controller.
bool writeExtract(const ControllerState &state, const QString &path)
{
    QVector<Archive::Item> items{{"__base", {}, "base configuration", state.baseData}};
    for (const Configuration &one : state.configurations) {
        items.append({one.identifier, one.owner, one.description, one.data});
    }
    QFile file(path);
    const QByteArray archive = Archive::pack(items);
    return file.open(QIODevice::WriteOnly) && file.write(archive) == archive.size();
}

void removeOne(ControllerState *state, const QString &identifier)
{
    QVector<Configuration> &all = state->configurations;
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&identifier](const Configuration &one) {
                                 return one.identifier == identifier.toLatin1();
                             }),
              all.end());
}

} // namespace

void Chapters::extract(Tour &tour)
{
    tour.step(QStringLiteral("Load one configuration out of a backup"));
    ListVisit::startOver(tour);
    const ControllerState before = tour.controllerState();
    const QString path = QDir::home().filePath(QStringLiteral("found.dat"));
    tour.expect(writeExtract(before, path), QStringLiteral("%1 cannot be written").arg(path));
    const QString lost = ListVisit::spare(tour);
    const QByteArray data = ListVisit::data(tour, lost);
    ControllerState without = before;
    removeOne(&without, lost);
    tour.link().controller().setState(without);

    const auto load = [&](DialogDriver &dialog) {
        tour.expectEqual(dialog.rowCount("tableWidget"), before.configurations.size(),
                         "number of rows");
        dialog.click("pushButton_clearSelection");
        dialog.select("tableWidget", lost);
        dialog.picture(QStringLiteral("load-one"));
        dialog.click("pushButton_load",
                     {tour.box("Load Configurations", "Loading configuration successfully.",
                               QMessageBox::Ok)});
    };
    ListVisit::open(tour, [&](DialogDriver &list) {
        list.click("pushButton_load",
                   {tour.fileDialog("Load Configurations", path),
                    tour.dialog(QStringLiteral("ConfigLoadDlgClass"), load)});
        ListVisit::exit(list);
    });
    tour.expectEqual(ListVisit::data(tour, lost), data, "what came back");
    ControllerState after = tour.controllerState();
    removeOne(&after, lost);
    tour.expect(after == without, QStringLiteral("more than one configuration came back"));
}

#include "host/tour/chapters.h"

#include "host/tour/listvisit.h"
#include "host/tour/tour.h"

void Chapters::host(Tour &tour)
{
    tour.step(QStringLiteral("The host at its start"));
    tour.waitUntil(QStringLiteral("the host shows the active configuration"), [&] {
        return tour.windowText("label_activeConfiguration") == ListVisit::active(tour);
    });
    tour.pictureWindow(QStringLiteral("host"));
}

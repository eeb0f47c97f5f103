#include "host/tour/listvisit.h"

#include "host/simulatedlink.h"
#include "host/tour/dialogdriver.h"
#include "host/tour/stepfailed.h"

#include <algorithm>

namespace {

template <typename Predicate>
const Configuration *find(const Tour &tour, Predicate fits)
{
    const QVector<Configuration> &all = tour.controllerState().configurations;
    const auto found = std::find_if(all.begin(), all.end(), fits);
    return found == all.end() ? nullptr : &*found;
}

const Configuration *withIdentifier(const Tour &tour, const QString &identifier)
{
    return find(tour, [&](const Configuration &configuration) {
        return configuration.identifier == identifier.toLatin1();
    });
}

const Configuration &existing(const Configuration *configuration)
{
    if (!configuration) {
        throw StepFailed(QStringLiteral("the controller lacks the configuration looked for"));
    }
    return *configuration;
}

} // namespace

void ListVisit::open(Tour &tour, const Tour::Visit &visit, const QString &menuPictureName)
{
    tour.chooseInMenu(QStringLiteral("&VELTRA4"), QStringLiteral("&Configurations"),
                      {tour.dialog(QStringLiteral("ConfigurationDialog"), visit)}, menuPictureName);
}

void ListVisit::exit(DialogDriver &list)
{
    list.click(QStringLiteral("pushButton_exit"));
}

void ListVisit::startOver(Tour &tour)
{
    tour.link().controller().setState(ControllerState::sample());
}

QString ListVisit::active(const Tour &tour)
{
    return QString::fromLatin1(tour.controllerState().activeIdentifier);
}

QString ListVisit::locked(const Tour &tour)
{
    const Configuration *found =
        find(tour, [](const Configuration &configuration) { return configuration.isLocked(); });
    return QString::fromLatin1(existing(found).identifier);
}

QString ListVisit::spare(const Tour &tour)
{
    const QByteArray active = tour.controllerState().activeIdentifier;
    const Configuration *found = find(tour, [&](const Configuration &configuration) {
        return configuration.identifier != active && configuration.identifier != "standard"
            && !configuration.isLocked();
    });
    return QString::fromLatin1(existing(found).identifier);
}

bool ListVisit::contains(const Tour &tour, const QString &identifier)
{
    return withIdentifier(tour, identifier) != nullptr;
}

QString ListVisit::description(const Tour &tour, const QString &identifier)
{
    return QString::fromLatin1(existing(withIdentifier(tour, identifier)).description);
}

QString ListVisit::owner(const Tour &tour, const QString &identifier)
{
    return QString::fromLatin1(existing(withIdentifier(tour, identifier)).owner);
}

QByteArray ListVisit::data(const Tour &tour, const QString &identifier)
{
    return existing(withIdentifier(tour, identifier)).data;
}

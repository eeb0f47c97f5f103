#include "tests/model/controllermodel.h"

#include "simulator/controllerstate.h"
#include "simulator/factorydata.h"

#include <QCryptographicHash>

#include <algorithm>
#include <tuple>

namespace {

constexpr int longestText = 100;
constexpr int recordBytes = 512; // of the store, for each configuration besides its data

qint64 sizeOf(const StoredModel &configuration)
{
    return recordBytes + configuration.data.size();
}

auto tied(const StoredModel &c)
{
    return std::tie(c.identifier, c.owner, c.description, c.password, c.data);
}

std::optional<QByteArray> passwordOf(const Configuration &configuration)
{
    if (!configuration.isLocked()) {
        return {};
    }
    const auto found =
        std::find_if(ControllerModel::passwords.cbegin(), ControllerModel::passwords.cend(),
                     [&configuration](const QByteArray &password) {
                         return configuration.password.matches(password);
                     });
    return found == ControllerModel::passwords.cend() ? QByteArray("(unknown)") : *found;
}

} // namespace

bool operator==(const StoredModel &left, const StoredModel &right)
{
    return tied(left) == tied(right);
}

const QVector<QByteArray> ControllerModel::passwords{"lock", "a/b+c", "x-1_2.3"};
const QByteArray ControllerModel::superPassword = "super";

ControllerModel ControllerModel::of(const ControllerState &state)
{
    ControllerModel model;
    for (const Configuration &configuration : state.configurations) {
        model.stored << StoredModel{configuration.identifier, configuration.owner,
                                    configuration.description, passwordOf(configuration),
                                    configuration.data};
    }
    model.active = state.activeIdentifier;
    model.capacity = state.storeCapacity;
    return model;
}

bool ControllerModel::activate(const QByteArray &identifier)
{
    if (!find(identifier)) {
        return false;
    }
    // A password holds as long as the configuration that it was presented for stays active.
    m_isPresented = m_isPresented && identifier == active;
    active = identifier;
    return true;
}

bool ControllerModel::remove(const QByteArray &identifier)
{
    const StoredModel *configuration = find(identifier);
    if (!configuration || identifier == "standard" || !isChangeable(*configuration)) {
        return false;
    }
    stored.removeOne(*configuration);
    return find(active) != nullptr || activate("standard");
}

bool ControllerModel::create(const QByteArray &identifier)
{
    return addAndActivate({identifier, {}, "new configuration", {}, FactoryData::defaults()});
}

bool ControllerModel::clone(const QByteArray &identifier, const QByteArray &source)
{
    const StoredModel *original = find(source);
    return original != nullptr
        && addAndActivate({identifier,
                           original->owner,
                           ("copy of " + original->description).left(longestText),
                           {},
                           original->data});
}

bool ControllerModel::import(StoredModel imported)
{
    StoredModel *replaced = find(imported.identifier);
    if ((replaced && !isChangeable(*replaced)) || !hasRoomFor(imported)) {
        return false;
    }
    imported.password.reset();
    if (replaced) {
        *replaced = imported;
    } else {
        stored << imported;
    }
    return true;
}

bool ControllerModel::setOwner(const QByteArray &text)
{
    const bool isGranted = isChangeable();
    if (isGranted) {
        find(active)->owner = text.left(longestText);
    }
    return isGranted;
}

bool ControllerModel::setDescription(const QByteArray &text)
{
    const bool isGranted = isChangeable();
    if (isGranted) {
        find(active)->description = text.left(longestText);
    }
    return isGranted;
}

bool ControllerModel::setPassword(const std::optional<QByteArray> &password)
{
    const bool isGranted = isChangeable();
    if (isGranted) {
        find(active)->password = password;
        m_isPresented = false;
    }
    return isGranted;
}

void ControllerModel::present(const QByteArray &password)
{
    m_isPresented = find(active)->password == password;
}

void ControllerModel::presentSuper(const QByteArray &password)
{
    m_isPresented = password == superPassword;
}

const StoredModel *ControllerModel::find(const QByteArray &identifier) const
{
    const auto found = std::find_if(stored.cbegin(), stored.cend(),
                                    [&identifier](const StoredModel &configuration) {
                                        return configuration.identifier == identifier;
                                    });
    return found == stored.cend() ? nullptr : &*found;
}

StoredModel *ControllerModel::find(const QByteArray &identifier)
{
    const StoredModel *found = qAsConst(*this).find(identifier);
    return found ? &stored[int(found - stored.constData())] : nullptr;
}

double ControllerModel::freeFraction() const
{
    return std::max(0.0, 1.0 - double(used()) / double(capacity));
}

QStringList ControllerModel::lines() const
{
    QStringList lines;
    for (const StoredModel &configuration : stored) {
        const QByteArray sum =
            QCryptographicHash::hash(configuration.data, QCryptographicHash::Md5).toHex();
        lines << QStringLiteral("%1 '%2' '%3' %4 %5 bytes %6")
                     .arg(QString::fromLatin1(configuration.identifier),
                          QString::fromLatin1(configuration.owner),
                          QString::fromLatin1(configuration.description),
                          configuration.password ? QStringLiteral("locked with ")
                                  + QString::fromLatin1(*configuration.password)
                                                 : "unlocked",
                          QString::number(configuration.data.size()), QString::fromLatin1(sum));
    }
    return lines << QStringLiteral("active: ") + QString::fromLatin1(active);
}

bool ControllerModel::isChangeable(const StoredModel &configuration) const
{
    return !configuration.password || (configuration.identifier == active && m_isPresented);
}

bool ControllerModel::addAndActivate(const StoredModel &configuration)
{
    if (!hasRoomFor(configuration)) {
        return false;
    }
    stored << configuration;
    return activate(configuration.identifier);
}

bool ControllerModel::hasRoomFor(const StoredModel &configuration) const
{
    const StoredModel *replaced = find(configuration.identifier);
    return used() - (replaced ? sizeOf(*replaced) : 0) + sizeOf(configuration) <= capacity;
}

qint64 ControllerModel::used() const
{
    qint64 bytes = 0;
    for (const StoredModel &configuration : stored) {
        bytes += sizeOf(configuration);
    }
    return bytes;
}

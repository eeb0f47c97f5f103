#include "simulator/controllerstate.h"

#include "channel/identifiers.h"
#include "simulator/limits.h"

#include <QSet>

#include <algorithm>
#include <tuple>

namespace {

constexpr qint64 recordBytes = 512;

auto tied(const Configuration &c)
{
    return std::tie(c.identifier, c.owner, c.description, c.password, c.data);
}

auto tied(const CascadeSlave &s)
{
    return std::tie(s.name, s.isConnected, s.isAvailable, s.isScanned);
}

auto tied(const ControllerState &s)
{
    return std::tie(s.hostName, s.serial, s.model, s.modelDescription, s.isEmbedded, s.net,
                    s.domainName, s.nameServer, s.ntpServer, s.activity, s.storeCapacity,
                    s.configurations, s.activeIdentifier, s.baseData, s.superPassword, s.slaves);
}

QString inQuotes(const QByteArray &text)
{
    return '"' + QString::fromLatin1(text) + '"';
}

QString problemOf(const Configuration &configuration)
{
    if (!Limits::isIdentifier(configuration.identifier)
        || configuration.identifier == Identifiers::base) {
        return inQuotes(configuration.identifier) + " is not an identifier";
    }
    if (!Limits::isText(configuration.owner) || !Limits::isText(configuration.description)) {
        return "owner or description of " + inQuotes(configuration.identifier) + " is too long";
    }
    return {};
}

} // namespace

qint64 Configuration::storedBytes() const
{
    return recordBytes + data.size();
}

qint64 ControllerState::usedBytes() const
{
    qint64 bytes = 0;
    for (const Configuration &configuration : configurations) {
        bytes += configuration.storedBytes();
    }
    return bytes;
}

double ControllerState::freeFraction() const
{
    if (storeCapacity <= 0) {
        return 0;
    }
    const double used = static_cast<double>(usedBytes()) / static_cast<double>(storeCapacity);
    return std::max(0.0, 1.0 - used);
}

QString ControllerState::problem() const
{
    QSet<QByteArray> identifiers;
    for (const Configuration &configuration : configurations) {
        QString problem = problemOf(configuration);
        if (!problem.isEmpty()) {
            return problem;
        }
        if (identifiers.contains(configuration.identifier)) {
            return inQuotes(configuration.identifier) + " is stored twice";
        }
        identifiers.insert(configuration.identifier);
    }
    for (const QByteArray &needed : {QByteArray(Identifiers::standard), activeIdentifier}) {
        if (!identifiers.contains(needed)) {
            return inQuotes(needed) + " is not stored";
        }
    }
    return {};
}

bool operator==(const Configuration &left, const Configuration &right)
{
    return tied(left) == tied(right);
}

bool operator!=(const Configuration &left, const Configuration &right)
{
    return !(left == right);
}

bool operator==(const CascadeSlave &left, const CascadeSlave &right)
{
    return tied(left) == tied(right);
}

bool operator!=(const CascadeSlave &left, const CascadeSlave &right)
{
    return !(left == right);
}

bool operator==(const ControllerState &left, const ControllerState &right)
{
    return tied(left) == tied(right);
}

bool operator!=(const ControllerState &left, const ControllerState &right)
{
    return !(left == right);
}

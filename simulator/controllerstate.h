#pragma once

#include "simulator/saltedhash.h"

#include <QByteArray>
#include <QString>
#include <QVector>

/// One stored configuration. Texts are bytes as they came through the channel, Latin-1.
struct Configuration
{
    QByteArray identifier;
    QByteArray owner;
    QByteArray description;
    SaltedHash password; ///< set exactly when the configuration is locked
    QByteArray data;

    bool isLocked() const { return password.isSet(); }
    /// What the configuration takes of the store, in bytes: its data and a fixed part for the rest.
    qint64 storedBytes() const;
};

/// A controller that can be attached to the cascade.
struct CascadeSlave
{
    QByteArray name;
    bool isConnected = false; ///< it is part of the cascade
    bool isAvailable = true;  ///< it answers; one that does not can still be part of the cascade
    bool isScanned = true;    ///< only a scanned slave can be connected
};

/// Everything a controller keeps over a restart. A plain value: compare, copy, save and load it
/// (simulator/statefile.h) as a whole.
struct ControllerState
{
    QByteArray hostName;
    QByteArray serial;
    QByteArray model;
    QByteArray modelDescription;
    bool isEmbedded = true;

    QByteArray net;
    QByteArray domainName;
    QByteArray nameServer;
    QByteArray ntpServer;

    /// What the controller is doing just now; "none" when it is idle.
    QByteArray activity = "none";

    qint64 storeCapacity = 0; ///< bytes
    /// Slot k holds the element k - 1. "standard" is always among them, normally in slot 1.
    QVector<Configuration> configurations;
    QByteArray activeIdentifier;
    QByteArray baseData; ///< the base configuration, "__base" in transfers
    SaltedHash superPassword;

    /// Connected ones count in this order as d01, d02, ...
    QVector<CascadeSlave> slaves;

    qint64 usedBytes() const;
    /// The free part of the store, 0 to 1.
    double freeFraction() const;

    /// What makes this no state of a controller, for people; empty if all is well: identifiers
    /// valid and unique, texts within their limits, "standard" and the active configuration stored.
    QString problem() const;

    /// A controller as it is found in a laboratory: a dozen configurations with some hundred
    /// kilobytes of data in all, one of them locked with the password "lock"; the super password is
    /// "super". The same at each call.
    static ControllerState sample();
};

bool operator==(const Configuration &left, const Configuration &right);
bool operator!=(const Configuration &left, const Configuration &right);
bool operator==(const CascadeSlave &left, const CascadeSlave &right);
bool operator!=(const CascadeSlave &left, const CascadeSlave &right);
bool operator==(const ControllerState &left, const ControllerState &right);
bool operator!=(const ControllerState &left, const ControllerState &right);

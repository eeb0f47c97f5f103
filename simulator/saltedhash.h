#pragma once

#include <QByteArray>

/// A password as the controller keeps it: a random salt and the SHA-256 of salt and password.
/// The password itself is stored nowhere.
struct SaltedHash
{
    QByteArray salt;
    QByteArray hash; ///< 32 bytes; empty where no password is set

    /// The hash of @p password under a new random salt.
    static SaltedHash of(const QByteArray &password);
    /// The hash of @p password under @p salt.
    static SaltedHash of(const QByteArray &password, const QByteArray &salt);

    bool isSet() const { return !hash.isEmpty(); }
    /// Whether @p password is the one that was set; false where none is set.
    bool matches(const QByteArray &password) const;
};

bool operator==(const SaltedHash &left, const SaltedHash &right);
bool operator!=(const SaltedHash &left, const SaltedHash &right);

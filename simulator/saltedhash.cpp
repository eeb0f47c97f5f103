#include "simulator/saltedhash.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

namespace {

constexpr int saltBytes = 16;

QByteArray randomSalt()
{
    QByteArray salt(saltBytes, Qt::Uninitialized);
    for (char &byte : salt) {
        byte = static_cast<char>(QRandomGenerator::system()->bounded(256));
    }
    return salt;
}

} // namespace

SaltedHash SaltedHash::of(const QByteArray &password)
{
    return of(password, randomSalt());
}

SaltedHash SaltedHash::of(const QByteArray &password, const QByteArray &salt)
{
    return {salt, QCryptographicHash::hash(salt + password, QCryptographicHash::Sha256)};
}

bool SaltedHash::matches(const QByteArray &password) const
{
    return of(password, salt).hash == hash;
}

bool operator==(const SaltedHash &left, const SaltedHash &right)
{
    return left.salt == right.salt && left.hash == right.hash;
}

bool operator!=(const SaltedHash &left, const SaltedHash &right)
{
    return !(left == right);
}

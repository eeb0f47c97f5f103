#include "simulator/refusals.h"

Reply Refusals::noActiveConfiguration()
{
    return Reply::refused(QStringLiteral("no configuration is active"));
}

Reply Refusals::unknownConfiguration(const QByteArray &identifier)
{
    return Reply::refused(
        QStringLiteral("unknown configuration '%1'").arg(QString::fromLatin1(identifier)));
}

Reply Refusals::lockedConfiguration(const QByteArray &identifier)
{
    return Reply::refused(
        QStringLiteral("configuration '%1' is locked").arg(QString::fromLatin1(identifier)));
}

Reply Refusals::fullStore()
{
    return Reply::refused(QStringLiteral("the configuration store is full"));
}

Reply Refusals::wrongArgument()
{
    return Reply::refused(QStringLiteral("wrong argument"));
}

#include "network/hostport.h"

#include <QHostAddress>
#include <QRegularExpression>

namespace {

constexpr int longestName = 253; // of a host in the domain name system

bool isAddress6(const QString &text)
{
    return QHostAddress(text).protocol() == QAbstractSocket::IPv6Protocol;
}

} // namespace

std::optional<HostPort> HostPort::fromText(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("\\A(?:([0-9A-Za-z._-]+)|\\[([^][]+)\\]):([0-9]{1,5})\\z"));
    const QRegularExpressionMatch match = form.match(text);
    const QString name = match.captured(1);
    const QString address = match.captured(2);
    const int port = match.captured(3).toInt();
    const bool isHost = address.isEmpty() ? name.size() <= longestName : isAddress6(address);
    if (!match.hasMatch() || !isHost || port < 1 || port > 0xffff) {
        return {};
    }
    return HostPort{address.isEmpty() ? name : address, static_cast<quint16>(port)};
}

QString HostPort::toText() const
{
    const bool isBracketed = host.contains(QLatin1Char(':'));
    return (isBracketed ? QStringLiteral("[%1]:%2") : QStringLiteral("%1:%2")).arg(host).arg(port);
}

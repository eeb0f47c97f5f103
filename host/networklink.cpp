#include "host/networklink.h"

#include <QCoreApplication>

namespace {

// The host's questions are answered at once or not at all.
constexpr int hostTimeoutMs = 1000;

QString translated(const char *text)
{
    return QCoreApplication::translate("NetworkLink", text);
}

} // namespace

NetworkLink::NetworkLink(const HostPort &controller)
    : m_controller(controller)
    , m_moduleChannel(controller)
    , m_hostChannel(controller)
{
    m_hostChannel.setTimeout(0, hostTimeoutMs, 0);
    m_moduleChannel.setContactCallback([this] { follow(m_moduleChannel.contact()); });
    m_hostChannel.setContactCallback([this] { follow(m_hostChannel.contact()); });
}

void NetworkLink::deliverMessage(int id, const QString &source, const QString &text)
{
    m_moduleChannel.deliverMessage(id, source.toLatin1().constData(), text.toLatin1().constData());
}

QString NetworkLink::description() const
{
    switch (m_contact) {
    case NetworkChannel::Contact::Lost:
        return translated("%1 (no contact)").arg(m_controller.toText());
    case NetworkChannel::Contact::Silent:
        return translated("%1 (no answer)").arg(m_controller.toText());
    case NetworkChannel::Contact::Unknown:
    case NetworkChannel::Contact::Connected:
        break;
    }
    return m_controller.toText();
}

void NetworkLink::setContactCallback(const std::function<void()> &changed)
{
    m_contactChanged = changed;
}

void NetworkLink::follow(NetworkChannel::Contact contact)
{
    m_contact = contact;
    if (m_contactChanged) {
        m_contactChanged();
    }
}

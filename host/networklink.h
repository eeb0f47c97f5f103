#pragma once

#include "host/controllerlink.h"
#include "network/networkchannel.h"

/// A connection to a controller in the network.
class NetworkLink final : public ControllerLink
{
public:
    /// Connects when there is something to ask.
    explicit NetworkLink(const HostPort &controller);
    Q_DISABLE_COPY_MOVE(NetworkLink)

    LineChannel &moduleChannel() override { return m_moduleChannel; }
    IOManager &hostChannel() override { return m_hostChannel; }
    void deliverMessage(int id, const QString &source, const QString &text) override;
    /// The address, and what is wrong with the contact if there is none.
    QString description() const override;
    bool hasContact() const override { return m_contact == NetworkChannel::Contact::Connected; }
    void setContactCallback(const std::function<void()> &changed) override;

private:
    void follow(NetworkChannel::Contact contact);

    const HostPort m_controller;
    NetworkChannel::Contact m_contact = NetworkChannel::Contact::Unknown; // the latest of either
    std::function<void()> m_contactChanged;
    NetworkChannel m_moduleChannel;
    NetworkChannel m_hostChannel;
};

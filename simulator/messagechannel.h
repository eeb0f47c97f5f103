#pragma once

#include "simulator/linechannel.h"

#include <QVector>

class MessageReceiver;

/// A LineChannel with the message system of a host: what is posted goes to the observer, and
/// receivers get what the host delivers.
class MessageChannel : public LineChannel
{
public:
    /// Forwards a message to all receivers. A receiver may remove itself or others meanwhile.
    void deliverMessage(int id, const char *source, const char *text);
    int receiverCount() const { return m_receivers.size(); }

    /// Hands the message to the observer.
    int postMessage(const char *category, const char *source, int level, const char *text) override;
    int addMessageReceiver(const char *name, MessageReceiver *receiver) override;
    /// Goes by @p receiver alone.
    int removeMessageReceiver(const char *name, MessageReceiver *receiver) override;

protected:
    MessageChannel() = default;
    ~MessageChannel() = default;

private:
    QVector<MessageReceiver *> m_receivers;
};

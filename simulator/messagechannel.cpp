#include "simulator/messagechannel.h"

#include "hostapi/messagereceiver.h"
#include "simulator/channelobserver.h"

namespace {

constexpr int refused = 1;

} // namespace

void MessageChannel::deliverMessage(int id, const char *source, const char *text)
{
    const QVector<MessageReceiver *> receivers = m_receivers;
    for (MessageReceiver *receiver : receivers) {
        if (m_receivers.contains(receiver)) { // an earlier one may have removed it
            receiver->receiveMessage(id, source, text);
        }
    }
}

int MessageChannel::postMessage(const char *category, const char *source, int level,
                                const char *text)
{
    if (observer() != nullptr) {
        observer()->messagePosted(category, source, level, text);
    }
    return success;
}

int MessageChannel::addMessageReceiver(const char * /*name*/, MessageReceiver *receiver)
{
    if (receiver == nullptr) {
        return refused;
    }
    m_receivers.append(receiver);
    return success;
}

int MessageChannel::removeMessageReceiver(const char * /*name*/, MessageReceiver *receiver)
{
    return m_receivers.removeAll(receiver) > 0 ? success : refused;
}

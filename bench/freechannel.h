#pragma once

#include "hostapi/iomanager.h"

#include <QByteArray>

#include <array>
#include <functional>

/// A command channel that costs next to nothing, so that what its caller costs shows.
///
/// It formats every command, which no channel can do without, answers from what it has at hand, and
/// forgets it. It never fails.
class FreeChannel : public IOManager
{
public:
    virtual ~FreeChannel() = default;

    /// How many configurations there are, to be listed and to be imported: at most 10,000, their
    /// descriptions in no order.
    void setConfigurations(int count) { m_configurations = count; }
    /// How many bytes there are to be downloaded.
    void setDownload(int bytes);
    /// Called when the last item of an import has been told, once each time.
    void whenItemsAreTold(const std::function<void()> &action) { m_itemsAreTold = action; }

    int setTimeout(int channel, int milliseconds, int flag) override;
    int sendCommandReply(char *reply, const char *format, ...) override;
    int queryString(char *reply, const char *format, ...) override;
    int queryInt(int *value, const char *format, ...) override;
    int queryDouble(double *value, const char *format, ...) override;
    int queryBool(bool *value, const char *format, ...) override;
    int sendCommand(const char *format, ...) override;
    int postMessage(const char *category, const char *source, int level, const char *text) override;
    int addMessageReceiver(const char *name, MessageReceiver *receiver) override;
    int removeMessageReceiver(const char *name, MessageReceiver *receiver) override;

protected:
    /// What happens to each command before it is answered: nothing.
    virtual void carry(const char * /*line*/) { }

private:
    const char *behind(const char *beginning) const;
    void answer(char *reply);
    void tellItem(const char *number, char *reply);

    std::array<char, 512> m_line{};
    QByteArray m_chunk; ///< the answer to every question for a chunk
    int m_configurations = 0;
    std::function<void()> m_itemsAreTold;
};

#include "transfer/configurationimport.h"

#include "channel/hostmessages.h"
#include "channel/messagebox.h"
#include "channel/replybuffer.h"
#include "channel/waitcursor.h"
#include "hostapi/iomanager.h"

#include <algorithm>
#include <utility>

namespace {
constexpr int importTimeoutMs = 20000;
} // namespace

ConfigurationImport::ConfigurationImport(IOManager *channel, LockStates existing, QWidget *dialog)
    : m_channel(channel)
    , m_existing(std::move(existing))
    , m_dialog(dialog)
{
}

void ConfigurationImport::run(const QStringList &identifiers)
{
    WaitCursor cursor;
    const QStringList wanted = withRoomMadeFor(identifiers);
    if (wanted.isEmpty()) {
        cursor.restore();
        show(tr("No configuration is loaded."));
        return;
    }
    const bool isComplete = import(wanted);
    HostMessages::announceActiveConfigurationChanged(m_channel);
    cursor.restore();
    show(isComplete ? tr("Loading configuration successfully.")
                    : tr("Loading configuration unsuccessfully."));
}

QStringList ConfigurationImport::withRoomMadeFor(const QStringList &identifiers)
{
    QStringList wanted;
    for (const QString &identifier : identifiers) {
        const auto existing = m_existing.constFind(identifier);
        const bool exists = existing != m_existing.constEnd();
        if (exists && *existing) {
            continue;
        }
        if (exists) {
            deleteConfiguration(identifier);
        }
        wanted << identifier;
    }
    return wanted;
}

void ConfigurationImport::deleteConfiguration(const QString &identifier)
{
    // Whether it worked shows in the import that follows.
    ReplyBuffer reply;
    m_channel->sendCommandReply(reply.data(), "veltra2 config delete_config %s",
                                identifier.toLatin1().constData());
}

bool ConfigurationImport::import(const QStringList &identifiers)
{
    return std::all_of(identifiers.cbegin(), identifiers.cend(), [this](const QString &identifier) {
        m_channel->setTimeout(0, importTimeoutMs, 0);
        return m_channel->sendCommand("system import 'config' '%s'",
                                      identifier.toLatin1().constData())
            == 0;
    });
}

void ConfigurationImport::show(const QString &outcome)
{
    MessageBox::information(m_dialog, m_dialog, tr("Load Configurations"), outcome);
}

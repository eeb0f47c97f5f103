#include "bench/bareloops.h"

#include "channel/replybuffer.h"
#include "channel/transferencoding.h"
#include "hostapi/iomanager.h"

void BareLoops::refresh(IOManager *channel)
{
    double free = 0;
    channel->queryDouble(&free, "config free_space");
    int count = 0;
    channel->queryInt(&count, "config number_of_configs");
    ReplyBuffer identifier;
    ReplyBuffer reply;
    channel->queryString(reply.data(), "config active_config");
    for (int slot = 1; slot <= count; ++slot) {
        channel->queryString(identifier.data(), "config config t%02d", slot);
        channel->queryString(reply.data(), "config owner_of_config %s", identifier.data());
        channel->queryString(reply.data(), "config desc_of_config %s", identifier.data());
        channel->queryString(reply.data(), "config config_has_password %s", identifier.data());
    }
}

void BareLoops::collect(IOManager *channel, int chunks)
{
    ReplyBuffer reply;
    channel->queryString(reply.data(), "system hostname");
    channel->queryString(reply.data(), "system controller_serial");
    int slaves = 0;
    channel->queryInt(&slaves, "cascade number_of_connected_slaves");
    channel->queryString(reply.data(), "system net");
    bool isEmbedded = false;
    channel->setTimeout(0, 3000, 1);
    channel->queryBool(&isEmbedded, "system controller_embedded");
    channel->queryString(reply.data(), "system domainname");
    channel->queryString(reply.data(), "system nameserver");
    channel->queryString(reply.data(), "system ntp_server");
    channel->queryString(reply.data(), "config active_config");
    channel->sendCommand("system download cancel");
    int count = 0;
    channel->queryInt(&count, "config number_of_configs");
    channel->setTimeout(0, 7000, 1);
    channel->sendCommand("system download prepare 'config' '__base'");
    for (int slot = 1; slot <= count; ++slot) {
        channel->queryString(reply.data(), "config config t%02d", slot);
        channel->setTimeout(0, 7000, 1);
        channel->sendCommand("system download prepare 'config' '%s'", reply.data());
    }
    download(channel, chunks);
}

void BareLoops::download(IOManager *channel, int chunks)
{
    ReplyBuffer reply;
    for (int chunk = 1; chunk <= chunks; ++chunk) {
        channel->queryString(reply.data(), "system download %d", chunk);
    }
}

void BareLoops::upload(IOManager *channel, int chunks)
{
    const QByteArray text =
        TransferEncoding::encode(QByteArray(TransferEncoding::chunkSize, '\x55'));
    channel->sendCommand("system upload cancel");
    for (int chunk = 1; chunk <= chunks; ++chunk) {
        channel->sendCommand("system upload %d %d %s", chunks, chunk, text.constData());
    }
}

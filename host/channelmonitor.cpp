#include "host/channelmonitor.h"

#include "host/withoutpassword.h"

void ChannelMonitor::exchanged(const Exchange &exchange)
{
    Exchange shown = exchange;
    shown.command = withoutPassword(exchange.command);
    emit commandSent(shown);
}

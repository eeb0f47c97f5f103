#include "channel/configurationsmessagereceiver.h"

int ConfigurationsMessagereceiver::receiveMessage(int /*id*/, const char *source, const char *text)
{
    const QString from = QString::fromUtf8(source);
    if (from == QLatin1String("Veltra2")) {
        emit sendModuleParentVersion(QString::fromUtf8(text));
    } else if (from == QLatin1String("LAST_FRONTEND_UPDATE")) {
        emit receiveLastFeUpdateDate(QString::fromUtf8(text));
    }
    return 0;
}

#include "host/withoutpassword.h"

QByteArray withoutPassword(const QByteArray &command)
{
    for (const char *const beginning :
         {"config new_password '", "config password '", "config super_password '"}) {
        if (command.startsWith(beginning)) {
            return QByteArray(beginning) + "***'";
        }
    }
    return command;
}

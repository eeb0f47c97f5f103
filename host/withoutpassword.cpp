#include "host/withoutpassword.h"

QByteArray withoutPassword(const QByteArray &command)
{
    for (const char *const beginning :
         {"config new_password '", "config password '", "config super_password '"}) {
        // The full stop withdraws a password, and is none itself.
        if (command.startsWith(beginning) && !command.endsWith(" '.'")) {
            return QByteArray(beginning) + "***'";
        }
    }
    return command;
}

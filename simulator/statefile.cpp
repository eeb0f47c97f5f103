#include "simulator/statefile.h"

#include "simulator/controllerstate.h"

#include <QString>

bool StateFile::load(const QString &path, ControllerState * /*state*/, QString *error)
{
    *error = QStringLiteral("%1: cannot be read yet").arg(path);
    return false;
}

bool StateFile::save(const QString &path, const ControllerState & /*state*/, QString *error)
{
    *error = QStringLiteral("%1: cannot be written yet").arg(path);
    return false;
}

#include "resources/resources.h"

#include <QDir>

void initializeResources()
{
    Q_INIT_RESOURCE(configurations);
}

#include "fuzz/target.h"

#include <QtGlobal>

void Fuzz::demand(bool holds, const char *claim)
{
    if (!holds) {
        qFatal("Does not hold: %s", claim);
    }
}

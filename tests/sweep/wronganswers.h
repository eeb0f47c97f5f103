#pragma once

#include "simulator/channelobserver.h"

#include <QByteArrayList>

/// What a controller out of its mind may answer to what @p exchange asked; nothing if it did not
/// ask.
QByteArrayList wrongAnswersTo(const Exchange &exchange);

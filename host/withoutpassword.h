#pragma once

#include <QByteArray>

/// The command as it may be shown and written down: a password in it is replaced by "***".
QByteArray withoutPassword(const QByteArray &command);

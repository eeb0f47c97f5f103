#pragma once

#include <QByteArray>

#include <cstdarg>

/// The line that a printf-like command and its arguments stand for. Bytes pass as they are; empty
/// if the format is broken.
QByteArray commandLine(const char *format, va_list arguments);

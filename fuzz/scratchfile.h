#pragma once

#include <QString>

class QByteArray;

/// Files for what reads from files only, in a folder that goes with the program.
namespace ScratchFile {

/// The path of the file @p name, which may be there from an earlier input.
QString path(const char *name);

/// The path of the file @p name, which holds @p content now.
QString make(const char *name, const QByteArray &content);

} // namespace ScratchFile

#pragma once

#include <QJsonObject>
#include <QString>

class BackupFile;
struct Refusal;

/// What a command has to say.
struct Outcome
{
    int exitCode = 0;  ///< one of those below
    QString output;    ///< for people; lines, each with its end
    QString complaint; ///< for people, about what is wrong; likewise
    QJsonObject json;  ///< the same for programs
};

/// The exit codes of all commands.
namespace ExitCode {
inline constexpr int good = 0;    ///< a good backup, or two that are the same
inline constexpr int notGood = 1; ///< a restore would refuse it, or the two differ
inline constexpr int trouble = 2; ///< there is no telling
} // namespace ExitCode

/// A line about the @p file.
QString lineAbout(const BackupFile &file, const QString &text);

/// Why the @p file is refused, as a line.
QString refusalLine(const BackupFile &file);

/// The same for programs.
QJsonObject refusalJson(const BackupFile &file);

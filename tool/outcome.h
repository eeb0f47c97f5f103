#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>

struct Judgement;

/// What a command has to say.
struct Outcome
{
    int exitCode = 0;   ///< one of those below
    QString output;     ///< for people; lines, each with its end
    QString complaint;  ///< for people, about what is wrong with files; likewise
    QJsonDocument json; ///< for programs, instead of both
    QString problem; ///< for both: what is wrong with no file; one line without its end, or empty
};

/// The exit codes of all commands, from good to bad.
namespace ExitCode {
inline constexpr int good = 0;    ///< a good backup, or two that are the same
inline constexpr int notGood = 1; ///< a restore would refuse it, or the two differ
inline constexpr int trouble = 2; ///< there is no telling
} // namespace ExitCode

/// A line about the file at @p path.
QString lineAbout(const QString &path, const QString &text);

/// Why the file is refused, and of what somebody should know, as lines; empty if it is a good one.
QString complaintAbout(const Judgement &judgement);

/// What programs are told of each file: its path, whether it is accepted, and all complaints.
QJsonObject toJson(const Judgement &judgement, const QString &command);

/// Why the file is refused, for programs.
QJsonObject refusalJson(const Judgement &judgement);

/// One object about a single file, if that was asked for, or else an array.
QJsonDocument toDocument(const QJsonArray &objects, const QStringList &paths);

#pragma once

#include "tool/fields.h"
#include "tool/refusal.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// What is known of a file once it has been judged: little, however large the file is.
struct Judgement
{
    QString path; ///< as it was given
    std::optional<Refusal>
        refusal;           ///< why a restore would refuse the file; nothing if it would not
    QStringList warnings;  ///< what a restore would accept and somebody should know all the same
    QVector<Field> fields; ///< what the backup says; empty if it is refused
};

/// Judges one file, in any thread.
Judgement judge(const QString &path);

/// Judges many, several at a time, and shows on a terminal how far it is. In their order.
QVector<Judgement> judgeAll(const QStringList &paths);

/// Which of the exit codes stands for the judgement.
int exitCodeOf(const Judgement &judgement);

/// The controller's host name.
QString controllerOf(const Judgement &judgement);

/// When the backup was made; invalid if the document does not tell a time that Qt knows.
QDateTime timeOf(const Judgement &judgement);
/// The same for people: "2024-03-05 14:07:09".
QString timeTextOf(const Judgement &judgement);

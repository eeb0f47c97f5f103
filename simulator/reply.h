#pragma once

#include <QByteArray>
#include <QString>

/// What the controller makes of one command line.
struct Reply
{
    /// The longest text that fits a caller's buffer together with the terminating NUL.
    static constexpr int maxLength = 199;

    bool ok = false;
    QByteArray text; ///< the answer; empty for a command that yields none
    QString reason;  ///< why the command was refused, for people; empty when it was not

    static Reply answer(const QByteArray &text) { return {true, text.left(maxLength), {}}; }
    static Reply done() { return {true, {}, {}}; }
    /// The success of a command that begins with "veltra2 ".
    static Reply structuralOk() { return answer("veltra2 ok"); }
    static Reply refused(const QString &reason) { return {false, {}, reason}; }
};

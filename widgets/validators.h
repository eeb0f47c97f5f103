#pragma once

#include <QRegExpValidator>

/// What may be typed into the dialogs; each validator belongs to @p parent.
namespace Validators {

/// Owners and descriptions: they are sent inside double quotes, so none can be typed. May be empty.
inline QRegExpValidator *forText(QObject *parent)
{
    return new QRegExpValidator(QRegExp(QStringLiteral(R"([0-9a-zA-Z_\-\+=.,;:/ ]*)")), parent);
}

/// Passwords: they are sent inside single quotes, so neither quotes nor blanks can be typed. Never
/// empty.
inline QRegExpValidator *forPassword(QObject *parent)
{
    return new QRegExpValidator(QRegExp(QStringLiteral(R"([0-9a-zA-Z_\-\+./]+)")), parent);
}

} // namespace Validators

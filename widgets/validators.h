#pragma once

class QObject;
class QRegExpValidator;

/// What may be typed into the dialogs; each validator belongs to @p parent.
namespace Validators {

/// Owners and descriptions: they are sent inside double quotes, so none can be typed. May be empty.
QRegExpValidator *forText(QObject *parent);

/// Passwords: they are sent inside single quotes, so neither quotes nor blanks can be typed. Never
/// empty.
QRegExpValidator *forPassword(QObject *parent);

} // namespace Validators

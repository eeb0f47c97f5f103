#pragma once

#include <QString>

/// The date at the end of a saved configuration's description, "Lab 05-03-2024" for example, which
/// tells when it was saved. Saving it again replaces the date.
namespace DateStamp {

/// @p description, as the controller answers it for a fresh copy, without double quotes, without
/// the words "copy of " in front and without the date of an earlier save.
///
/// Only a date after a blank goes away; one that is glued to the text becomes "00-00-0000".
QString removedFrom(const QString &description);

/// Today as "dd-MM-yyyy", in plain digits whatever the user's language.
QString today();

} // namespace DateStamp

#pragma once

#include <QByteArray>
#include <QByteArrayList>

class Rehearsal;

/// How @p data is uploaded in chunks; a rule that says Then::Ends for them ends it at the first
/// failure.
void rehearseUpload(Rehearsal &rehearsal, const QByteArray &data);

/// What the controller makes of an upload.
enum class Offer {
    None,    ///< the question for it failed
    Unknown, ///< these are no configurations
    Items    ///< there are some, or none
};

/// How the controller is asked what was uploaded; @p identifiers of what it offers, in order.
Offer rehearseOffer(Rehearsal &rehearsal, QByteArrayList *identifiers);

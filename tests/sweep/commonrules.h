#pragma once

#include <QByteArrayList>

class Rehearsal;

/// How the list of configurations is read, which ends most operations. Whether it was read.
bool rehearseRefresh(Rehearsal &rehearsal);
/// How operations end that have changed something: the host is told, and the list read again.
void rehearseChange(Rehearsal &rehearsal);

/// How what was prepared is downloaded in chunks. Whether all of it came, by the rule for the
/// chunks; @p data is what has come, null if nothing has.
/// @param isReported whether it is told what was wrong with a chunk
bool rehearseDownload(Rehearsal &rehearsal, QByteArray *data, bool isReported);

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

#pragma once

#include <QString>

/// Why a document is refused, for whoever wants to mend it.
struct DocumentProblem
{
    QString text;      ///< one sentence; may quote the document and be as long as it
    qint64 line = 0;   ///< from 1, or 0 if it is about the whole document
    qint64 column = 0; ///< of the end of the tag or text that was refused
};

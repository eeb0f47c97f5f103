#pragma once

#include <QString>

/// Why a file is not accepted as a backup.
struct Refusal
{
    /// The step of a restore that refuses it, in their order.
    enum class Stage {
        File,   ///< it cannot be read at all, so nothing is known about it
        Guard,  ///< it costs more than any backup would to be read
        Schema, ///< it is not well-formed, or not what the schema wants
        Reader, ///< it fits the schema, but a value is missing or wrong
        Content ///< it says nothing
    };

    Stage stage = Stage::File; ///< that refuses it
    QString text;              ///< for people; may quote the document
    QString field;     ///< the element's path, "ZORBackupInfo/creationDate"; empty for the document
    qint64 line = 0;   ///< from 1; 0 if it is about the whole file
    qint64 column = 0; ///< of the end of the tag or text that is refused
};

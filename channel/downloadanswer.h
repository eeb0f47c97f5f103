#pragma once

#include <QByteArray>

#include <optional>

/// One answer to "system download N": how many chunks there are, and the text of chunk N.
struct DownloadAnswer
{
    /// The longest text that is taken; what lies beyond is ignored.
    static constexpr int maxTextSize = 511;

    int total = 0;   ///< may be anything, 0 and negative numbers included
    QByteArray text; ///< in the transfer encoding, see TransferEncoding::decode(); may be empty
};

/// Reads a line as the C library's scan format " %d '%[^']' " would, up to its first NUL:
///
///     12 'QUJD'            12, "QUJD"
///      -1'QUJD              -1, "QUJD"     blanks are optional, and so is the closing quote
///     12 'QU'JD'           12, "QU"       what follows the text is not looked at
///     12 ''                12, ""         the one exception: the format would refuse it
///     12 '                 refused        the text has not even begun
///     12 QUJD, x 'QUJD'    refused
///
/// Line breaks count as blanks outside the quotes and as text inside. A number beyond the range of
/// int becomes the nearest one in range.
/// @return nothing if the line is not of this form
std::optional<DownloadAnswer> parseDownloadAnswer(const char *line);

#pragma once

#include <QByteArray>

#include <optional>

/// One chunk of a transfer between a module and the controller: "system download N" answered
/// "TOTAL 'TEXT'", or "system upload TOTAL N TEXT".
struct TransferChunk
{
    enum class Direction { Download, Upload };

    static constexpr int unknown = -1;

    Direction direction = Direction::Download;
    int number = 0; ///< counted from 1
    int total =
        unknown; ///< how many there are; unknown where a download's answer is of another form

    /// The chunk that a command asks for or sends; nothing if it does neither.
    static std::optional<TransferChunk> of(const QByteArray &command, const QByteArray &answer);
};

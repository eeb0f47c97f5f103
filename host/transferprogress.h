#pragma once

#include "host/transferchunk.h"

#include <QCoreApplication>
#include <QString>

/// Follows the chunked transfers between a module and the controller by the commands that pass
/// through the channel.
class TransferProgress
{
    Q_DECLARE_TR_FUNCTIONS(TransferProgress)

public:
    enum class State {
        Idle,      ///< no transfer so far
        Running,   ///< some chunks are still missing
        Complete,  ///< the last chunk has passed
        BrokenOff, ///< a chunk was refused
        Cancelled  ///< the module gave up
    };

    /// Takes one command with its answer and result into account; others than those of a transfer
    /// change nothing.
    /// @return whether the command belongs to a transfer
    bool follow(const QByteArray &command, const QByteArray &answer, int result);

    State state() const { return m_state; }
    int chunk() const { return m_chunk; }
    int total() const { return m_total; }
    /// How much has passed, 0 to 100.
    int percent() const;
    /// The state in words.
    /// @param occasion  what the transfer is for, if that is known; it is all that is told while
    /// idle
    QString text(const QString &occasion = {}) const;

private:
    bool cancel(TransferChunk::Direction direction);
    void pass(const TransferChunk &chunk, int result);

    State m_state = State::Idle;
    TransferChunk::Direction m_direction = TransferChunk::Direction::Download;
    int m_chunk = 0;
    int m_total = 0;
};

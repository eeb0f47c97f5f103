#pragma once

#include <QByteArray>
#include <QString>

/// Follows the chunked transfers between a module and the controller by the commands that pass
/// through the channel: "system download N" answered "TOTAL 'TEXT'", and "system upload TOTAL N
/// TEXT".
class TransferProgress
{
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
    /// The state in words, empty while idle.
    QString text() const;

private:
    enum class Direction { Download, Upload };

    bool followDownload(const QByteArray &argument, const QByteArray &answer, int result);
    bool followUpload(const QByteArray &arguments, int result);
    bool cancel(Direction direction);
    void pass(Direction direction, int chunk, int total, bool isPassed);

    State m_state = State::Idle;
    Direction m_direction = Direction::Download;
    int m_chunk = 0;
    int m_total = 0;
};

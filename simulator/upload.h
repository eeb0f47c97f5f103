#pragma once

#include "simulator/archive.h"

#include <QByteArray>
#include <QString>
#include <QVector>

/// An archive on its way in: collected chunk by chunk, unpacked and checked with the last one.
class Upload
{
public:
    enum class State {
        Incomplete, ///< nothing yet, or chunks are missing
        Unknown,    ///< complete, but not an archive at all
        Damaged,    ///< complete, begins as an archive, but see problem()
        Usable
    };

    /// Takes the next chunk. Chunks come in order, all with the same @p total; all but the last
    /// have 100 bytes.
    /// @return whether it was taken; if not, @p error says why and nothing has changed
    bool take(int total, int number, const QByteArray &text, QString *error);

    State state() const { return m_state; }
    /// Why a complete upload is not usable.
    QString problem() const { return m_problem; }

    /// What a usable upload holds; empty otherwise.
    const QVector<Archive::Item> &items() const { return m_items; }
    /// Null if it holds no item of that identifier.
    const Archive::Item *find(const QByteArray &identifier) const;

    void cancel();

private:
    QString objectionTo(int total, int number) const;
    void finish();

    State m_state = State::Incomplete;
    int m_total = 0;
    int m_received = 0;
    QByteArray m_bytes;
    QVector<Archive::Item> m_items;
    QString m_problem;
};

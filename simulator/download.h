#pragma once

#include "simulator/archive.h"

#include <QByteArray>
#include <QSet>
#include <QVector>

#include <optional>

class QString;

/// Configurations on their way out: prepared one by one, packed into an archive as they were when
/// they were prepared, handed out in chunks.
class Download
{
public:
    /// @return whether the item was taken; if not, @p error says why
    bool prepare(const Archive::Item &item, QString *error);

    bool isAvailable() const { return !m_items.isEmpty(); }
    int chunkCount();
    /// The n-th chunk, counted from 1, in the transfer encoding; nothing if there is none.
    std::optional<QByteArray> chunk(int n);

    void cancel();

private:
    const QByteArray &archive();

    QVector<Archive::Item> m_items;
    QSet<QByteArray> m_identifiers;
    QByteArray m_archive; // packed when the first chunk is asked for
    qint64 m_size = 0;
};

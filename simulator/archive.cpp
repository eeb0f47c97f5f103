#include "simulator/archive.h"

#include "simulator/limits.h"

#include <QCryptographicHash>
#include <QSet>
#include <QString>
#include <QtEndian>

namespace {

constexpr char magic[] = "V4CONF\r\n";
constexpr int magicSize = sizeof magic - 1;
constexpr int checksumSize = 32;

QByteArray checksumOf(const char *bytes, int size)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(bytes, size);
    return hash.result();
}

template <typename Number>
void appendNumber(Number number, QByteArray *bytes)
{
    const Number bigEndian = qToBigEndian(number);
    bytes->append(reinterpret_cast<const char *>(&bigEndian), sizeof bigEndian);
}

template <typename Length>
void appendField(const QByteArray &field, QByteArray *bytes)
{
    appendNumber(static_cast<Length>(field.size()), bytes);
    bytes->append(field);
}

void appendItem(const Archive::Item &item, QByteArray *bytes)
{
    const int start = bytes->size();
    appendField<quint16>(item.identifier, bytes);
    appendField<quint16>(item.owner, bytes);
    appendField<quint16>(item.description, bytes);
    appendField<quint32>(item.data, bytes);
    bytes->append(checksumOf(bytes->constData() + start, bytes->size() - start));
}

// Walks through the bytes; every read first makes sure that they are there.
class Unpacker
{
public:
    explicit Unpacker(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    bool unpack(QVector<Archive::Item> *items);
    QString problem() const { return m_problem; }

private:
    bool readItem(Archive::Item *item);
    bool checkItem(const Archive::Item &item);
    template <typename Number>
    bool readNumber(Number *number);
    template <typename Length>
    bool readField(QByteArray *field);
    bool readBytes(qint64 size, QByteArray *bytes);
    bool fail(const QString &problem);

    const QByteArray &m_bytes;
    int m_position = magicSize;
    QSet<QByteArray> m_identifiers;
    QString m_problem;
};

bool Unpacker::unpack(QVector<Archive::Item> *items)
{
    quint32 count = 0;
    if (!readNumber(&count)) {
        return false;
    }
    // No reserve(): the count may be anything, only the items that are there take memory.
    for (quint32 i = 0; i < count; ++i) {
        Archive::Item item;
        if (!readItem(&item) || !checkItem(item)) {
            m_problem.prepend(QStringLiteral("item %1: ").arg(i + 1));
            return false;
        }
        items->append(item);
    }
    return m_position == m_bytes.size() || fail(QStringLiteral("bytes after the last item"));
}

bool Unpacker::readItem(Archive::Item *item)
{
    const int start = m_position;
    if (!readField<quint16>(&item->identifier) || !readField<quint16>(&item->owner)
        || !readField<quint16>(&item->description) || !readField<quint32>(&item->data)) {
        return false;
    }
    const QByteArray expected = checksumOf(m_bytes.constData() + start, m_position - start);
    QByteArray checksum;
    return readBytes(checksumSize, &checksum)
        && (checksum == expected || fail(QStringLiteral("the checksum does not fit")));
}

bool Unpacker::checkItem(const Archive::Item &item)
{
    if (!Limits::isIdentifier(item.identifier)) {
        return fail(QStringLiteral("no valid identifier"));
    }
    if (!Limits::isText(item.owner) || !Limits::isText(item.description)) {
        return fail(QStringLiteral("no valid owner or description"));
    }
    if (m_identifiers.contains(item.identifier)) {
        return fail(QStringLiteral("the identifier is there twice"));
    }
    m_identifiers.insert(item.identifier);
    return true;
}

template <typename Number>
bool Unpacker::readNumber(Number *number)
{
    QByteArray bytes;
    if (!readBytes(sizeof *number, &bytes)) {
        return false;
    }
    *number = qFromBigEndian<Number>(bytes.constData());
    return true;
}

template <typename Length>
bool Unpacker::readField(QByteArray *field)
{
    Length length = 0;
    return readNumber(&length) && readBytes(length, field);
}

bool Unpacker::readBytes(qint64 size, QByteArray *bytes)
{
    if (size > m_bytes.size() - m_position) {
        return fail(QStringLiteral("the archive ends too early"));
    }
    *bytes = m_bytes.mid(m_position, static_cast<int>(size));
    m_position += static_cast<int>(size);
    return true;
}

bool Unpacker::fail(const QString &problem)
{
    m_problem = problem;
    return false;
}

} // namespace

qint64 Archive::sizeOf(const Item &item)
{
    constexpr qint64 lengthsAndChecksum = 2 + 2 + 2 + 4 + checksumSize;
    return lengthsAndChecksum + item.identifier.size() + item.owner.size() + item.description.size()
        + item.data.size();
}

QByteArray Archive::pack(const QVector<Item> &items)
{
    QByteArray bytes(magic);
    appendNumber(static_cast<quint32>(items.size()), &bytes);
    for (const Item &item : items) {
        appendItem(item, &bytes);
    }
    return bytes;
}

bool Archive::isArchive(const QByteArray &bytes)
{
    return bytes.startsWith(magic);
}

bool Archive::unpack(const QByteArray &bytes, QVector<Item> *items, QString *error)
{
    if (!isArchive(bytes)) {
        *error = QStringLiteral("not an archive of configurations");
        return false;
    }
    Unpacker unpacker(bytes);
    QVector<Item> unpacked;
    if (!unpacker.unpack(&unpacked)) {
        *error = unpacker.problem();
        return false;
    }
    *items = unpacked;
    return true;
}

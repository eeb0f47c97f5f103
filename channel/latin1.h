#pragma once

#include <QByteArray>
#include <QString>

/// A text on its way to the controller, which takes Latin-1: what lies beyond becomes "?".
class Latin1
{
public:
    /// Takes the place of @p text in every call to the controller.
    Latin1(const QString &text)
        : m_bytes(text.toLatin1())
    {
    }

    /// The bytes, as a "%s" wants them.
    const char *operator*() const { return m_bytes.constData(); }

private:
    QByteArray m_bytes;
};

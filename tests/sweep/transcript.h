#pragma once

#include "simulator/channelobserver.h"
#include "tests/sweep/rules.h"

#include <QByteArrayList>
#include <QStringList>
#include <QVector>

/// All that happened between the plug-in, the controller, the host and the user, one line each.
class Transcript final : public ChannelObserver
{
public:
    void clear();
    QStringList lines() const { return m_lines; }
    QVector<Exchange> exchanges() const { return m_exchanges; }
    /// The identifiers under which configurations were to be created, in order.
    QByteArrayList newIdentifiers() const;

    /// A message box; @p detail stands in its text for "%1".
    void boxShown(const Box &box, const QString &detail);
    /// A message box as it is on the screen, together with a wait cursor that should be gone.
    void boxShown(const QMessageBox &box);
    /// Another window, by its name for programs or for people.
    void windowShown(const QString &name);

private:
    void exchanged(const Exchange &exchange) override;
    void messagePosted(const QByteArray &category, const QByteArray &source, int level,
                       const QByteArray &text) override;

    QStringList m_lines;
    QVector<Exchange> m_exchanges;
};

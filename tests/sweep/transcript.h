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
    /// @name The lines of what a user and the host notice
    /// @{
    static QString boxLine(QMessageBox::Icon icon, const QString &title, const QString &text);
    /// A window by its name for programs or for people, and what it says.
    static QString windowLine(const QString &name, const QStringList &contents = {});
    static QString eventLine(); ///< the host is told that the configurations have changed
    static QString reportLine(const QString &text); ///< an error is posted
    /// @}

    void clear();
    QStringList lines() const { return m_lines; }
    /// The same without the commands.
    QStringList told() const { return m_told; }
    QVector<Exchange> exchanges() const { return m_exchanges; }
    /// The identifiers under which configurations were to be created, in order.
    QByteArrayList newIdentifiers() const;

    void tell(const QString &line);
    /// A message box; @p detail stands in its text for "%1".
    void boxShown(const Box &box, const QString &detail);
    /// A message box as it is on the screen, together with a wait cursor that should be gone.
    void boxShown(const QMessageBox &box);
    void windowShown(const QString &name) { tell(windowLine(name)); }

private:
    void exchanged(const Exchange &exchange) override;
    void messagePosted(const QByteArray &category, const QByteArray &source, int level,
                       const QByteArray &text) override;

    QStringList m_lines;
    QStringList m_told;
    QVector<Exchange> m_exchanges;
};

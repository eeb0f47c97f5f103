#pragma once

#include "simulator/channelobserver.h"

#include <QByteArrayList>
#include <QMessageBox>
#include <QStringList>

/// What a user and the host notice of an action, one line each, in the order in which it happens:
/// what a window says when it opens, message boxes, and what is posted.
class Transcript final : public ChannelObserver
{
public:
    static QString boxLine(QMessageBox::Icon icon, const QString &title, const QString &text);
    static QString windowLine(const QString &title, const QStringList &contents);
    static QString eventLine();
    static QString reportLine(const QString &text);

    void add(const QString &line) { m_lines << line; }
    void clear();

    QStringList lines() const { return m_lines; }
    /// How many of them tell of something that went wrong.
    int errorCount() const;
    /// The identifiers that were given to new configurations, also where creating them failed.
    QByteArrayList newIdentifiers() const { return m_newIdentifiers; }
    QByteArrayList failedCommands() const { return m_failedCommands; }

private:
    void exchanged(const Exchange &exchange) override;
    void messagePosted(const QByteArray &category, const QByteArray &source, int level,
                       const QByteArray &text) override;

    QStringList m_lines;
    QByteArrayList m_newIdentifiers;
    QByteArrayList m_failedCommands;
};

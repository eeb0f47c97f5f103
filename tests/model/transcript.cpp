#include "tests/model/transcript.h"

#include <algorithm>

namespace {

QString postLine(const QString &category, const QString &source, int level, const QString &text)
{
    return QStringLiteral("posted: %1 %2 %3 %4")
        .arg(category, source, QString::number(level), text);
}

bool tellsOfAnError(const QString &line)
{
    return line.startsWith(Transcript::reportLine(QString()))
        || line.startsWith(QStringLiteral("box %1 ").arg(QMessageBox::Critical))
        || line.contains(QLatin1String("unsuccessfully"));
}

} // namespace

QString Transcript::boxLine(QMessageBox::Icon icon, const QString &title, const QString &text)
{
    return QStringLiteral("box %1 '%2': %3").arg(QString::number(icon), title, text);
}

QString Transcript::windowLine(const QString &title, const QStringList &contents)
{
    return QStringLiteral("window '%1': %2").arg(title, contents.join(QStringLiteral(" | ")));
}

QString Transcript::eventLine()
{
    return postLine(QStringLiteral("GlobalEvent"), QStringLiteral("ConfigurationModule"), 1,
                    QStringLiteral("ActiveConfigurationChanged"));
}

QString Transcript::reportLine(const QString &text)
{
    return postLine(QStringLiteral("standard"), QStringLiteral("VELTRA4"), 1, text);
}

void Transcript::clear()
{
    m_lines.clear();
    m_newIdentifiers.clear();
    m_failedCommands.clear();
}

int Transcript::errorCount() const
{
    return int(std::count_if(m_lines.cbegin(), m_lines.cend(), tellsOfAnError));
}

void Transcript::exchanged(const Exchange &exchange)
{
    if (exchange.result != 0) {
        m_failedCommands << exchange.command;
    }
    const QByteArrayList words = exchange.command.split(' ');
    if (words.value(2) == "new_config" || words.value(2) == "clone_config") {
        m_newIdentifiers << words.value(3);
    }
}

void Transcript::messagePosted(const QByteArray &category, const QByteArray &source, int level,
                               const QByteArray &text)
{
    m_lines << postLine(QString::fromLatin1(category), QString::fromLatin1(source), level,
                        QString::fromLatin1(text));
}

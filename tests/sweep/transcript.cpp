#include "tests/sweep/transcript.h"

#include <QGuiApplication>
#include <QMetaEnum>

namespace {

QString postLine(const char *category, const char *source, int level, const QString &text)
{
    return QStringLiteral("post %1 %2 %3: ")
               .arg(QLatin1String(category), QLatin1String(source), QString::number(level))
        + text;
}

} // namespace

QString Transcript::boxLine(QMessageBox::Icon icon, const QString &title, const QString &text)
{
    const char *kind = QMetaEnum::fromType<QMessageBox::Icon>().valueToKey(icon);
    return QStringLiteral("box %1 '%2': %3").arg(QLatin1String(kind), title, text);
}

QString Transcript::windowLine(const QString &name, const QStringList &contents)
{
    return (QStringList("window " + name) + contents).join(" | ");
}

QString Transcript::eventLine()
{
    return postLine("GlobalEvent", "ConfigurationModule", 1, "ActiveConfigurationChanged");
}

QString Transcript::reportLine(const QString &text)
{
    return postLine("standard", "VELTRA4", 1, text);
}

void Transcript::clear()
{
    m_lines.clear();
    m_told.clear();
    m_exchanges.clear();
}

QByteArrayList Transcript::newIdentifiers() const
{
    QByteArrayList identifiers;
    for (const Exchange &exchange : m_exchanges) {
        const QList<QByteArray> words = exchange.command.split(' ');
        if (words.value(2) == "clone_config" || words.value(2) == "new_config") {
            identifiers << words.value(3);
        }
    }
    return identifiers;
}

void Transcript::tell(const QString &line)
{
    m_lines << line;
    m_told << line;
}

void Transcript::boxShown(const Box &box, const QString &detail)
{
    tell(boxLine(box.icon, QString::fromLatin1(box.title),
                 QString::fromLatin1(box.text).replace(QLatin1String("%1"), detail)));
}

void Transcript::boxShown(const QMessageBox &box)
{
    tell(boxLine(box.icon(), box.windowTitle(), box.text()));
    if (QGuiApplication::overrideCursor()) {
        tell("a box under the wait cursor");
    }
}

void Transcript::exchanged(const Exchange &exchange)
{
    m_exchanges << exchange;
    m_lines << QStringLiteral("%1 %2%3").arg(
        QString::fromLatin1(LineChannel::nameOf(exchange.operation)),
        QString::fromLatin1(exchange.command), exchange.result == 0 ? QString() : " (failed)");
}

void Transcript::messagePosted(const QByteArray &category, const QByteArray &source, int level,
                               const QByteArray &text)
{
    tell(postLine(category.constData(), source.constData(), level, QString::fromLatin1(text)));
}

#include "tests/sweep/transcript.h"

#include <QGuiApplication>
#include <QMetaEnum>

namespace {

QString boxLine(QMessageBox::Icon icon, const QString &title, const QString &text)
{
    const char *kind = QMetaEnum::fromType<QMessageBox::Icon>().valueToKey(icon);
    return QStringLiteral("box %1 '%2': %3").arg(QLatin1String(kind), title, text);
}

} // namespace

void Transcript::clear()
{
    m_lines.clear();
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

void Transcript::boxShown(const Box &box, const QString &detail)
{
    m_lines << boxLine(box.icon, QString::fromLatin1(box.title),
                       QString::fromLatin1(box.text).replace(QLatin1String("%1"), detail));
}

void Transcript::boxShown(const QMessageBox &box)
{
    m_lines << boxLine(box.icon(), box.windowTitle(), box.text());
    if (QGuiApplication::overrideCursor()) {
        m_lines << QStringLiteral("a box under the wait cursor");
    }
}

void Transcript::windowShown(const QString &name)
{
    m_lines << QStringLiteral("window %1").arg(name);
}

void Transcript::exchanged(const Exchange &exchange)
{
    m_exchanges << exchange;
    m_lines << QStringLiteral("%1 %2%3").arg(
        QString::fromLatin1(LineChannel::nameOf(exchange.operation)),
        QString::fromLatin1(exchange.command),
        exchange.result == 0 ? QString() : QStringLiteral(" (failed)"));
}

void Transcript::messagePosted(const QByteArray &category, const QByteArray &source, int level,
                               const QByteArray &text)
{
    m_lines << QStringLiteral("post %1 %2 %3: %4")
                   .arg(QString::fromLatin1(category), QString::fromLatin1(source))
                   .arg(level)
                   .arg(QString::fromLatin1(text));
}

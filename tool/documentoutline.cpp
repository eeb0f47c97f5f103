#include "tool/documentoutline.h"

#include <QSet>
#include <QStringList>
#include <QXmlStreamReader>

#include <algorithm>
#include <utility>

namespace {

constexpr int depthOfFields = 4; // root, section, field, and the slaves among the fields
constexpr int longestName = 100; // characters; no name of a backup comes near

const QLatin1String rootName("ZOR");

QStringList elementsOfABackup()
{
    return {QStringLiteral("ZORFileInfo"),
            QStringLiteral("ZORFileInfo/filetype"),
            QStringLiteral("ZORFileInfo/version"),
            QStringLiteral("ZORControllerInfo"),
            QStringLiteral("ZORControllerInfo/name"),
            QStringLiteral("ZORControllerInfo/serial"),
            QStringLiteral("ZORControllerInfo/ptVersion"),
            QStringLiteral("ZORControllerInfo/ctVersion"),
            QStringLiteral("ZORControllerInfo/systemModel"),
            QStringLiteral("ZORBackupInfo"),
            QStringLiteral("ZORBackupInfo/type"),
            QStringLiteral("ZORBackupInfo/version"),
            QStringLiteral("ZORBackupInfo/creationDate"),
            QStringLiteral("ZORBackupData"),
            QStringLiteral("ZORBackupData/net"),
            QStringLiteral("ZORBackupData/domain"),
            QStringLiteral("ZORBackupData/nameServer"),
            QStringLiteral("ZORBackupData/ntpServer"),
            QStringLiteral("ZORBackupData/slaves"),
            QStringLiteral("ZORBackupData/activeConfig"),
            QStringLiteral("ZORBackupData/configData")};
}

/// Steps through the tags of a document and knows which elements are open.
class Walk
{
public:
    explicit Walk(const QByteArray &document)
        : m_xml(document)
    {
    }

    bool advance()
    {
        if (m_xml.isEndElement()) {
            leave();
        }
        m_xml.readNext();
        if (m_xml.isStartElement()) {
            enter();
        }
        return !m_xml.atEnd();
    }

    bool isAtStartTag() const { return m_xml.isStartElement(); }
    bool isWellFormed() const { return !m_xml.hasError(); }
    QString root() const { return m_names.value(0); }
    QString path() const { return m_names.mid(1).join(QLatin1Char('/')); }
    std::pair<qint64, qint64> position() const
    {
        return {m_xml.lineNumber(), m_xml.columnNumber()};
    }

private:
    void enter()
    {
        if (++m_depth <= depthOfFields) {
            m_names.append(m_xml.name().left(longestName).toString());
        }
    }

    void leave()
    {
        if (--m_depth < depthOfFields) {
            m_names.removeLast();
        }
    }

    QXmlStreamReader m_xml;
    int m_depth = 0;
    QStringList m_names; // of the open elements, from the root as far down as fields are
};

} // namespace

QString DocumentOutline::elementAt(const QByteArray &document, qint64 line, qint64 column)
{
    const std::pair<qint64, qint64> wanted(line, column);
    Walk walk(document);
    while (walk.advance() && walk.position() < wanted) { }
    return walk.path();
}

QString DocumentOutline::missingElement(const QByteArray &document)
{
    const QStringList expected = elementsOfABackup();
    QSet<QString> missing(expected.begin(), expected.end());
    Walk walk(document);
    while (walk.advance()) {
        if (walk.isAtStartTag()) {
            if (walk.root() != rootName) {
                return {};
            }
            missing.remove(walk.path());
        }
    }
    if (!walk.isWellFormed() || missing.isEmpty()) {
        return {};
    }
    return *std::find_if(expected.begin(), expected.end(),
                         [&missing](const QString &path) { return missing.contains(path); });
}

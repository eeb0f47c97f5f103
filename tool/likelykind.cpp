#include "tool/likelykind.h"

#include <QByteArray>
#include <QString>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

QString kindOfDocument(QXmlStreamReader &xml)
{
    const QString root = xml.name().toString();
    if (root != QLatin1String("ZOR")) {
        return QStringLiteral("This is another kind of document, whose outermost element is %1.")
            .arg(root);
    }
    while (!xml.atEnd()) {
        xml.readNext();
    }
    return xml.error() == QXmlStreamReader::PrematureEndOfDocumentError
        ? QStringLiteral("This looks like a backup that was cut short.")
        : QString();
}

bool isText(const QByteArray &bytes)
{
    return std::none_of(bytes.begin(), bytes.end(), [](char byte) {
        return byte >= '\0' && byte < ' ' && !QByteArray("\t\n\f\r").contains(byte);
    });
}

// Their format is the controller's own, so they are known by what they are not, and by their name.
QString kindOfOtherFile(const QByteArray &beginning, const QString &name)
{
    if (isText(beginning)) {
        return QStringLiteral("This is some other text.");
    }
    return name.contains(QLatin1String(".dat"), Qt::CaseInsensitive)
        ? QStringLiteral("These are saved configurations, probably.")
        : QStringLiteral("This is no text: saved configurations perhaps, or something else.");
}

} // namespace

QString likelyKind(const QByteArray &document, const QByteArray &beginning, const QString &name)
{
    if (beginning.isEmpty()) {
        return QStringLiteral("The file is empty.");
    }
    QXmlStreamReader xml(document);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement) {
            return kindOfDocument(xml);
        }
    }
    return kindOfOtherFile(beginning, name);
}

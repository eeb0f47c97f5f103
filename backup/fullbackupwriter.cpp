#include "backup/fullbackup.h"

#include "backup/version.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QXmlStreamWriter>

#include <algorithm>

namespace {

constexpr int oneTabPerLevel = -1;

// Whether all characters are what XML 1.0 calls one; half a surrogate pair is none.
bool isXmlText(const QString &text)
{
    static const QRegularExpression characters(QStringLiteral(
        "\\A[\\t\\n\\r\\x{20}-\\x{d7ff}\\x{e000}-\\x{fffd}\\x{10000}-\\x{10ffff}]*\\z"));
    return characters.match(text).hasMatch();
}

void writeText(QXmlStreamWriter &xml, const QString &element, const QString &text)
{
    xml.writeStartElement(element);
    const QStringList parts = text.split(QLatin1Char('\r'));
    xml.writeCharacters(parts.first());
    for (int part = 1; part < parts.size(); ++part) {
        // Written as it is, a carriage return would be read back as a line feed.
        xml.writeEntityReference(QStringLiteral("#13"));
        xml.writeCharacters(parts.at(part));
    }
    xml.writeEndElement();
}

// One CDATA section, piece by piece, past the XML writer: it would need the whole text at once, in
// several copies many times the size of the data.
bool writeBase64Section(QXmlStreamWriter &xml, const QByteArray &bytes)
{
    constexpr int pieceSize = 48 * 1024; // a multiple of three: padding comes at the end only
    QIODevice *const device = xml.device();
    xml.writeCharacters(QString()); // ends the start tag
    bool isWritten = device->write("<![CDATA[") > 0;
    for (int begin = 0; begin < bytes.size() && isWritten; begin += pieceSize) {
        const QByteArray text = bytes.mid(begin, pieceSize).toBase64();
        isWritten = device->write(text) == text.size();
    }
    return isWritten && device->write("]]>") > 0;
}

} // namespace

bool FullBackup::writeToFile(const QString &path) const
{
    return isRepresentableInXml() && (replaceFile(path) || writeInPlace(path));
}

bool FullBackup::replaceFile(const QString &path) const
{
    const QFileInfo target(path);
    if (target.exists() && !target.isFile()) {
        return false; // replacing a device would take it away from the whole system
    }
    QSaveFile file(path);
    // commit() does not tell of a failure to flush.
    return file.open(QIODevice::WriteOnly) && writeDocument(&file) && file.flush() && file.commit();
}

bool FullBackup::writeInPlace(const QString &path) const
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    const bool isWritten = writeDocument(&file) && file.flush();
    file.close();
    if (isWritten && file.error() == QFileDevice::NoError) {
        return true;
    }
    // Whatever has this name now would pass for the backup that was asked for. What cannot be
    // removed is at least no half backup.
    const QFileInfo target(path);
    if ((target.isFile() || target.isSymLink()) && !file.remove()) {
        file.resize(0);
    }
    return false;
}

bool FullBackup::isRepresentableInXml() const
{
    const QStringList texts =
        QStringList{name, serial, systemModel, net, domain, nameServer, ntpServer, activeConfig}
        + slaves;
    return std::all_of(texts.begin(), texts.end(), isXmlText);
}

bool FullBackup::writeDocument(QIODevice *device) const
{
    QXmlStreamWriter xml(device);
    xml.setCodec("UTF-8");
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(oneTabPerLevel);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("ZOR"));

    xml.writeStartElement(QStringLiteral("ZORFileInfo"));
    writeText(xml, QStringLiteral("filetype"), QStringLiteral("ZORBackup"));
    writeText(xml, QStringLiteral("version"), QStringLiteral("v1.0.0"));
    xml.writeEndElement();

    bool isWritten = write_ZORControllerInfo_toFile(xml);
    isWritten = write_ZORBackupInfo_toFile(xml) && isWritten;
    isWritten = write_ZORBackupData_toFile(xml) && isWritten;

    xml.writeEndElement();
    xml.writeEndDocument();
    return isWritten && !xml.hasError();
}

bool FullBackup::write_ZORControllerInfo_toFile(QXmlStreamWriter &xml) const
{
    xml.writeStartElement(QStringLiteral("ZORControllerInfo"));
    writeText(xml, QStringLiteral("name"), name);
    writeText(xml, QStringLiteral("serial"), serial);
    writeText(xml, QStringLiteral("ptVersion"), versionToString(ptVersion));
    writeText(xml, QStringLiteral("ctVersion"), versionToString(ctVersion));
    writeText(xml, QStringLiteral("systemModel"), systemModel);
    xml.writeEndElement();
    return !xml.hasError();
}

bool FullBackup::write_ZORBackupInfo_toFile(QXmlStreamWriter &xml)
{
    const QString now = QDateTime::currentDateTime().toString(Qt::ISODate);
    xml.writeStartElement(QStringLiteral("ZORBackupInfo"));
    writeText(xml, QStringLiteral("type"), QStringLiteral("XQUFull"));
    writeText(xml, QStringLiteral("version"), QStringLiteral("v1.0.0"));
    writeText(xml, QStringLiteral("creationDate"), now);
    xml.writeEndElement();
    return !xml.hasError();
}

bool FullBackup::write_ZORBackupData_toFile(QXmlStreamWriter &xml) const
{
    xml.writeStartElement(QStringLiteral("ZORBackupData"));
    writeText(xml, QStringLiteral("net"), net);
    writeText(xml, QStringLiteral("domain"), domain);
    writeText(xml, QStringLiteral("nameServer"), nameServer);
    writeText(xml, QStringLiteral("ntpServer"), ntpServer);
    xml.writeStartElement(QStringLiteral("slaves"));
    for (const QString &slave : slaves) {
        writeText(xml, QStringLiteral("slave"), slave);
    }
    xml.writeEndElement();
    writeText(xml, QStringLiteral("activeConfig"), activeConfig);
    xml.writeStartElement(QStringLiteral("configData"));
    const bool isWritten = writeBase64Section(xml, configData);
    xml.writeEndElement();
    xml.writeEndElement();
    return isWritten && !xml.hasError();
}

#include "backup/fullbackup.h"

#include "backup/documentguard.h"
#include "backup/documentproblem.h"
#include "backup/version.h"

#include <QBuffer>
#include <QDebug>
#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <optional>

namespace {

struct Child
{
    const char *name;
    std::function<bool()> read; // called at the child's start tag
};

// The document may end or break off anywhere.
bool advance(QXmlStreamReader &xml)
{
    xml.readNext();
    return !xml.atEnd();
}

// The reason and the place stay with the XML reader, which stops here.
bool refuse(QXmlStreamReader &xml, const QString &reason)
{
    if (!xml.hasError()) {
        xml.raiseError(reason);
    }
    return false;
}

bool readChild(QXmlStreamReader &xml, const char *element, std::initializer_list<Child> children)
{
    const auto *const child =
        std::find_if(children.begin(), children.end(), [&xml](const Child &candidate) {
            return xml.name() == QLatin1String(candidate.name);
        });
    if (child == children.end()) {
        qDebug().nospace().noquote() << "Invalid " << element << " token " << xml.name();
        return refuse(xml, QStringLiteral("This element is unknown here."));
    }
    return child->read();
}

bool readElement(QXmlStreamReader &xml, const char *element, std::initializer_list<Child> children)
{
    const QLatin1String name(element);
    if (!xml.isStartElement() || xml.name() != name) {
        return false;
    }
    while (!xml.isEndElement() || xml.name() != name) {
        if (!advance(xml)) {
            return false;
        }
        if (xml.isStartElement() && !readChild(xml, element, children)) {
            return false;
        }
    }
    return true;
}

// An element without content fails, although the writer makes such elements of empty texts: a
// backup with anything missing is not restored.
bool readText(QXmlStreamReader &xml, QString *text)
{
    if (!advance(xml) || !xml.isCharacters()) {
        return refuse(xml, QStringLiteral("The field is empty or does not begin with text."));
    }
    *text = xml.text().toString();
    return true;
}

bool readFixedText(QXmlStreamReader &xml, const char *expected)
{
    QString text;
    return readText(xml, &text)
        && (text == QLatin1String(expected)
            || refuse(xml, QStringLiteral("The field does not hold \"%1\".").arg(expected)));
}

bool readVersion(QXmlStreamReader &xml, Version *version)
{
    QString text;
    bool isVersion = false;
    if (readText(xml, &text)) {
        *version = parseVersion(text, &isVersion);
    }
    return isVersion || refuse(xml, QStringLiteral("The field holds no version."));
}

bool readFormatVersion(QXmlStreamReader &xml)
{
    QString text;
    return readText(xml, &text)
        && (parseVersion(text) == Version{1, 0, 0}
            || refuse(xml, QStringLiteral("The field does not hold the version 1.0.0.")));
}

bool readConfigData(QXmlStreamReader &xml, QByteArray *configData)
{
    if (!advance(xml) || !xml.isCDATA()) {
        return refuse(xml, QStringLiteral("The field does not begin with a CDATA section."));
    }
    *configData = QByteArray::fromBase64Encoding(xml.text().toLatin1()).decoded;
    return true;
}

} // namespace

bool FullBackup::readFromFile(const QString &path, DocumentProblem *problem)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    slaves.clear();
    std::optional<QByteArray> document = DocumentGuard::read(&file);
    if (!document) {
        return false;
    }
    // From a device the reader takes piece by piece; bytes it would turn into one text as a whole.
    QBuffer device(&*document);
    device.open(QIODevice::ReadOnly);
    QXmlStreamReader xml(&device);
    while (advance(xml)) {
        if (xml.isStartElement() && xml.name() == QLatin1String("ZOR") && !read_ZOR_fromFile(xml)) {
            if (problem) {
                *problem = {xml.errorString(), xml.lineNumber(), xml.columnNumber()};
            }
            return false;
        }
    }
    return true;
}

bool FullBackup::read_ZOR_fromFile(QXmlStreamReader &xml)
{
    const auto section = [this, &xml](const char *element, auto read) {
        return Child{element, [=, &xml] {
                         const bool isRead = (this->*read)(xml);
                         if (!isRead) {
                             qDebug().nospace() << "read_" << element << "_fromFile() failed";
                         }
                         return isRead;
                     }};
    };
    return readElement(xml, "ZOR",
                       {section("ZORFileInfo", &FullBackup::read_ZORFileInfo_fromFile),
                        section("ZORControllerInfo", &FullBackup::read_ZORControllerInfo_fromFile),
                        section("ZORBackupInfo", &FullBackup::read_ZORBackupInfo_fromFile),
                        section("ZORBackupData", &FullBackup::read_ZORBackupData_fromFile)});
}

bool FullBackup::read_ZORFileInfo_fromFile(QXmlStreamReader &xml)
{
    return readElement(xml, "ZORFileInfo",
                       {{"filetype", [&] { return readFixedText(xml, "ZORBackup"); }},
                        {"version", [&] { return readFormatVersion(xml); }}});
}

bool FullBackup::read_ZORControllerInfo_fromFile(QXmlStreamReader &xml)
{
    return readElement(xml, "ZORControllerInfo",
                       {{"name", [&] { return readText(xml, &name); }},
                        {"serial", [&] { return readText(xml, &serial); }},
                        {"ptVersion", [&] { return readVersion(xml, &ptVersion); }},
                        {"ctVersion", [&] { return readVersion(xml, &ctVersion); }},
                        {"systemModel", [&] { return readText(xml, &systemModel); }}});
}

bool FullBackup::read_ZORBackupInfo_fromFile(QXmlStreamReader &xml)
{
    return readElement(xml, "ZORBackupInfo",
                       {{"type", [&] { return readFixedText(xml, "XQUFull"); }},
                        {"version", [&] { return readFormatVersion(xml); }},
                        {"creationDate", [] { return true; }}});
}

bool FullBackup::read_ZORBackupData_fromFile(QXmlStreamReader &xml)
{
    return readElement(xml, "ZORBackupData",
                       {{"net", [&] { return readText(xml, &net); }},
                        {"domain", [&] { return readText(xml, &domain); }},
                        {"nameServer", [&] { return readText(xml, &nameServer); }},
                        {"ntpServer", [&] { return readText(xml, &ntpServer); }},
                        {"slaves", [&] { return read_ZORXQUSlaves_fromFile(xml); }},
                        {"activeConfig", [&] { return readText(xml, &activeConfig); }},
                        {"configData", [&] { return readConfigData(xml, &configData); }}});
}

bool FullBackup::read_ZORXQUSlaves_fromFile(QXmlStreamReader &xml)
{
    return readElement(xml, "slaves", {{"slave", [&] {
                                            QString slave;
                                            if (!readText(xml, &slave)) {
                                                return false;
                                            }
                                            slaves.append(slave);
                                            return true;
                                        }}});
}

#include "backup/documentguard.h"

#include "backup/markupmeter.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextCodec>
#include <QXmlStreamReader>

#include <algorithm>
#include <memory>

namespace {

constexpr int pieceSize = 64 * 1024; // bytes
constexpr int signSize = 2;          // characters, one of them NUL, that tell UTF-16 and UTF-32

// The encoding of a document that does not name one: its first character can only be "<" or a byte
// order mark.
QTextCodec *codecOfFirstCharacter(const QByteArray &document)
{
    static const std::initializer_list<std::pair<QByteArray, const char *>> patterns{
        {QByteArray("<\0\0\0", 4), "UTF-32LE"},
        {QByteArray("\0\0\0<", 4), "UTF-32BE"},
        {QByteArray("<\0", 2), "UTF-16LE"},
        {QByteArray("\0<", 2), "UTF-16BE"}};
    for (const auto &[beginning, name] : patterns) {
        if (document.startsWith(beginning)) {
            return QTextCodec::codecForName(name);
        }
    }
    return QTextCodec::codecForUtfText(document, QTextCodec::codecForName("UTF-8"));
}

bool hasDeclaration(const QString &text)
{
    static const QRegularExpression declaration(QStringLiteral("\\A<\\?xml[ \\t\\r\\n]"));
    return text.contains(declaration);
}

// Null if the declaration is not one, or names an encoding that nobody knows.
QTextCodec *codecOf(const QByteArray &document)
{
    const QByteArray beginning = document.left(pieceSize);
    QTextCodec *const codec = codecOfFirstCharacter(beginning);
    if (!hasDeclaration(codec->toUnicode(beginning))) {
        return codec;
    }
    QXmlStreamReader xml(beginning);
    if (xml.readNext() != QXmlStreamReader::StartDocument) {
        return nullptr;
    }
    const QByteArray encoding = xml.documentEncoding().toLatin1();
    return encoding.isEmpty() ? codec : QTextCodec::codecForName(encoding);
}

// What is admitted is UTF-8, whatever the declaration says.
QString withoutDeclaration(const QString &text)
{
    const QString end = QStringLiteral("?>");
    return hasDeclaration(text) ? text.mid(text.indexOf(end) + end.size()) : text;
}

// With the first mark and declaration gone, a parser would take the second ones for them. It takes
// a NUL for a sign of UTF-16. The document was not well-formed with any of them.
bool beginsAgain(const QString &text)
{
    return text.startsWith(QChar(QChar::ByteOrderMark)) || hasDeclaration(text)
        || text.leftRef(signSize).contains(QChar(QChar::Null));
}

} // namespace

std::optional<QByteArray> DocumentGuard::admit(const QByteArray &document)
{
    MarkupMeter meter;
    return admit(document, &meter);
}

std::optional<QByteArray> DocumentGuard::admit(const QByteArray &document, MarkupMeter *meter)
{
    QTextCodec *const codec = codecOf(document);
    if (!codec) {
        return QByteArray();
    }
    const std::unique_ptr<QTextDecoder> decoder(codec->makeDecoder());
    const std::unique_ptr<QTextEncoder> encoder(
        QTextCodec::codecForName("UTF-8")->makeEncoder(QTextCodec::IgnoreHeader));
    QByteArray admitted;
    admitted.reserve(document.size());
    for (int begin = 0; begin < document.size(); begin += pieceSize) {
        const int size = std::min(pieceSize, document.size() - begin);
        QString text = decoder->toUnicode(document.constData() + begin, size);
        if (decoder->hasFailure()) {
            break;
        }
        if (begin == 0) {
            text = withoutDeclaration(text);
            if (beginsAgain(text)) {
                break;
            }
        }
        if (!meter->feed(text)) {
            return std::nullopt;
        }
        admitted += encoder->fromUnicode(text);
    }
    return admitted;
}

std::optional<QByteArray> DocumentGuard::read(QFile *file)
{
    MarkupMeter meter;
    return read(file, &meter);
}

std::optional<QByteArray> DocumentGuard::read(QFile *file, MarkupMeter *meter)
{
    const qint64 size = file->size();
    if (!QFileInfo(*file).isFile() || size > maxSize) {
        return std::nullopt;
    }
    return admit(file->read(size),
                 meter); // told less exactly, it would allocate all that it may read
}

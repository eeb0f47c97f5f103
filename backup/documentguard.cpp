#include "backup/documentguard.h"

#include "backup/markupmeter.h"

#include <QFile>
#include <QFileInfo>
#include <QTextCodec>
#include <QXmlStreamReader>

#include <algorithm>
#include <memory>

namespace {

constexpr int pieceSize = 64 * 1024; // bytes

struct Prologue
{
    QTextCodec *codec = nullptr; // null if the document is not even decodable
    bool hasDeclaration = false;
};

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

Prologue prologueOf(const QByteArray &document)
{
    QXmlStreamReader xml(document.left(pieceSize));
    if (xml.readNext() != QXmlStreamReader::StartDocument) {
        return {};
    }
    const QByteArray encoding = xml.documentEncoding().toLatin1();
    return {encoding.isEmpty() ? codecOfFirstCharacter(document)
                               : QTextCodec::codecForName(encoding),
            !xml.documentVersion().isEmpty()};
}

QString withoutDeclaration(const QString &text)
{
    const QString end = QStringLiteral("?>");
    return text.mid(text.indexOf(end) + end.size());
}

} // namespace

std::optional<QByteArray> DocumentGuard::admit(const QByteArray &document)
{
    const Prologue prologue = prologueOf(document);
    if (!prologue.codec) {
        return QByteArray();
    }
    const std::unique_ptr<QTextDecoder> decoder(prologue.codec->makeDecoder());
    const std::unique_ptr<QTextEncoder> encoder(
        QTextCodec::codecForName("UTF-8")->makeEncoder(QTextCodec::IgnoreHeader));
    MarkupMeter meter;
    QByteArray admitted;
    for (int begin = 0; begin < document.size(); begin += pieceSize) {
        const int size = std::min(pieceSize, document.size() - begin);
        QString text = decoder->toUnicode(document.constData() + begin, size);
        if (decoder->hasFailure()) {
            break;
        }
        if (begin == 0 && prologue.hasDeclaration) {
            text = withoutDeclaration(text);
        }
        if (!meter.feed(text)) {
            return std::nullopt;
        }
        admitted += encoder->fromUnicode(text);
    }
    return admitted;
}

std::optional<QByteArray> DocumentGuard::read(QFile *file)
{
    if (!QFileInfo(*file).isFile() || file->size() > maxSize) {
        return std::nullopt;
    }
    return admit(file->read(maxSize));
}

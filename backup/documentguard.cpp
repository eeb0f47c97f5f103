#include "backup/documentguard.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextCodec>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

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

struct Decoded
{
    QString text;
    bool isValid; // nothing in the document was outside the encoding
};

Decoded decoded(const QByteArray &document, const QTextCodec *codec)
{
    QTextCodec::ConverterState state;
    const QString text = codec->toUnicode(document.constData(), document.size(), &state);
    return {text, state.invalidChars == 0};
}

// How many characters of the text are its XML declaration.
int declarationSize(const QString &text)
{
    static const QRegularExpression begin(QStringLiteral("\\A<\\?xml[ \\t\\r\\n]"));
    return text.left(6).contains(begin) ? text.indexOf(QLatin1String("?>")) + 2 : 0;
}

// The encoding that a declaration names, or else the one it was read in; null if it is broken or
// names one that nobody knows.
const QTextCodec *declaredCodec(const QString &declaration, const QTextCodec *codec)
{
    QXmlStreamReader xml(declaration);
    if (xml.readNext() != QXmlStreamReader::StartDocument) {
        return nullptr;
    }
    const QByteArray encoding = xml.documentEncoding().toLatin1();
    return encoding.isEmpty() ? codec : QTextCodec::codecForName(encoding);
}

// With the first mark and declaration gone, a parser would take the second ones for them. It takes
// a NUL for a sign of UTF-16. The document was not well-formed with any of them.
bool beginsAgain(const QString &text)
{
    return text.startsWith(QChar(QChar::ByteOrderMark)) || declarationSize(text) > 0
        || text.leftRef(2).contains(QChar(QChar::Null));
}

// The text without its declaration, which has nothing to say any more; empty if it cannot be
// decoded.
QString textOf(const QByteArray &document)
{
    const QTextCodec *const guess = codecOfFirstCharacter(document);
    Decoded result = decoded(document, guess); // up to the declaration's end, whatever it declares
    if (const int size = declarationSize(result.text)) {
        const QTextCodec *const codec = declaredCodec(result.text.left(size), guess);
        if (!codec) {
            return {};
        }
        if (codec != guess) {
            result = decoded(document, codec);
        }
        result.text.remove(0, declarationSize(result.text));
    }
    return result.isValid && !beginsAgain(result.text) ? result.text : QString();
}

// Walks along the markup of a text, without parsing it. Of a text that is not well-formed it meets
// at least as much as a parser would before giving up.
class MarkupWalk
{
public:
    explicit MarkupWalk(const QString &text)
        : m_text(text)
    {
    }

    /// False once the document has more of something than is admitted.
    bool isBearable();

private:
    bool passMarkup();
    bool passTag();
    bool hasHere(QLatin1String words) const { return m_text.midRef(m_here).startsWith(words); }

    const QString &m_text;
    int m_here = 0;
    int m_depth = 0;
    qint64 m_pieces = 0;
    int m_longestTag = DocumentGuard::leastLength;
};

bool MarkupWalk::isBearable()
{
    while ((m_here = m_text.indexOf(QLatin1Char('<'), m_here)) >= 0) {
        if (!passMarkup() || m_pieces * m_longestTag > DocumentGuard::maxCost) {
            return false;
        }
    }
    return true;
}

bool MarkupWalk::passMarkup()
{
    static const struct
    {
        QLatin1String begin;
        QLatin1String end;
    } opaque[] = {{QLatin1String("<!--"), QLatin1String("-->")},
                  {QLatin1String("<![CDATA["), QLatin1String("]]>")},
                  {QLatin1String("<?"), QLatin1String("?>")}};
    ++m_pieces;
    for (const auto &[begin, end] : opaque) {
        if (hasHere(begin)) {
            const int place = m_text.indexOf(end, m_here + begin.size());
            m_here = place < 0 ? m_text.size() : place + end.size();
            return true;
        }
    }
    return !hasHere(QLatin1String("<!")) && passTag(); // it would be a document type, or nothing
}

// In a well-formed tag each attribute has exactly one "=" outside its quotes.
bool MarkupWalk::passTag()
{
    const int begin = m_here;
    int attributes = 0;
    QChar quote; // that ends the value being passed; null outside of values
    for (; m_here < m_text.size(); ++m_here) {
        const QChar character = m_text.at(m_here);
        if (!quote.isNull()) {
            quote = character == quote ? QChar() : quote;
        } else if (character == QLatin1Char('"') || character == QLatin1Char('\'')) {
            quote = character;
        } else if (character == QLatin1Char('=')) {
            ++attributes;
        } else if (character == QLatin1Char('>')) {
            break;
        }
    }
    const QStringRef tag = m_text.midRef(begin, m_here - begin);
    if (tag.startsWith(QLatin1String("</"))) {
        --m_depth;
    } else if (!tag.endsWith(QLatin1Char('/'))) {
        ++m_depth;
    }
    m_pieces += attributes;
    m_longestTag = std::max(m_longestTag, tag.size());
    return attributes <= DocumentGuard::maxAttributes && m_depth <= DocumentGuard::maxDepth;
}

} // namespace

std::optional<QByteArray> DocumentGuard::admit(const QByteArray &document)
{
    const QString text = textOf(document);
    return MarkupWalk(text).isBearable() ? std::optional(text.toUtf8()) : std::nullopt;
}

std::optional<QByteArray> DocumentGuard::read(QFile *file)
{
    const qint64 size = file->size();
    if (!QFileInfo(*file).isFile() || size > maxSize) {
        return std::nullopt;
    }
    return admit(file->read(size)); // told less exactly, it would allocate all that it may read
}

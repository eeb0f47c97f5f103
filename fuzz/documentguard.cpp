// What is decided about an XML document before a parser sees it.

#include "backup/documentguard.h"

#include "fuzz/target.h"

#include <QXmlStreamReader>

namespace {

// What a parser finds in a document, up to its first error.
struct Parsed
{
    bool isWellFormed = false;
    bool hasDeclaredType = false;
    int mostAttributes = 0;
    int depth = 0;
    int greatestDepth = 0;
    QStringList content;
};

Parsed parsed(const QByteArray &document)
{
    Parsed result;
    QXmlStreamReader xml(document);
    while (!xml.atEnd()) {
        xml.readNext();
        result.hasDeclaredType = result.hasDeclaredType || xml.isDTD();
        result.depth += xml.isStartElement() ? 1 : xml.isEndElement() ? -1 : 0;
        result.greatestDepth = qMax(result.greatestDepth, result.depth);
        result.mostAttributes = qMax(result.mostAttributes, xml.attributes().size());
        if (!xml.isStartDocument() && !xml.hasError()) {
            result.content << xml.tokenString() << xml.qualifiedName().toString()
                           << xml.namespaceUri().toString() << xml.text().toString();
        }
    }
    result.isWellFormed = !xml.hasError();
    return result;
}

} // namespace

void fuzz(const QByteArray &input)
{
    const Parsed original = parsed(input);
    const std::optional<QByteArray> admitted = DocumentGuard::admit(input);
    if (!admitted) {
        Fuzz::demand(!original.isWellFormed || original.hasDeclaredType
                         || original.mostAttributes >= DocumentGuard::maxAttributes
                         || original.greatestDepth >= DocumentGuard::maxDepth,
                     "only what costs too much is refused");
        return;
    }
    Fuzz::demand(!original.hasDeclaredType, "no document type declaration is admitted");
    const Parsed result = parsed(*admitted);
    Fuzz::demand(result.isWellFormed == original.isWellFormed,
                 "what is admitted is as well-formed as it was");
    Fuzz::demand(!result.isWellFormed || result.content == original.content,
                 "what is admitted says the same");
    Fuzz::demand(DocumentGuard::admit(*admitted) == admitted, "what was admitted once is again");
}

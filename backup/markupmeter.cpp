#include "backup/markupmeter.h"

#include <algorithm>

bool MarkupMeter::feed(const QString &text)
{
    int i = 0;
    while (i < text.size()) {
        const int next = nextThatMatters(text, i);
        // The two before it belong to a terminator, perhaps; all others are passed over.
        for (i = std::max(i, next - 2); i <= next && i < text.size(); ++i) {
            std::rotate(m_recent.begin(), m_recent.begin() + 1, m_recent.end());
            m_recent.back() = text.at(i).unicode();
            m_here = m_fed + i;
            if (!take()) {
                return false;
            }
        }
    }
    m_fed += text.size();
    return true;
}

// The first place from @p begin on at which the state may change; the size of the text if there is
// none.
int MarkupMeter::nextThatMatters(const QString &text, int begin) const
{
    const ushort awaited = awaitedCharacter();
    if (awaited == 0) {
        return m_state == State::Broken ? text.size() : begin;
    }
    const int place = text.indexOf(QChar(awaited), begin);
    return place < 0 ? text.size() : place;
}

// The one without which the state does not change; 0 where it depends on more than one.
ushort MarkupMeter::awaitedCharacter() const
{
    switch (m_state) {
    case State::Text:
        return '<';
    case State::QuotedValue:
        return m_quote;
    case State::EndTag:
    case State::Comment:
    case State::CharacterData:
    case State::Instruction:
        return '>';
    case State::MarkupBegins:
    case State::DeclarationBegins:
    case State::StartTag:
    case State::Broken:
        break;
    }
    return 0;
}

bool MarkupMeter::take()
{
    switch (m_state) {
    case State::Text:
        if (is('<')) {
            m_markupBegin = m_here;
            enter(State::MarkupBegins);
            return countPiece();
        }
        break;
    case State::MarkupBegins:
        return beginMarkup();
    case State::DeclarationBegins:
        return beginDeclaration();
    case State::StartTag:
        return takeInStartTag();
    case State::QuotedValue:
        if (m_recent.back() == m_quote) {
            enter(State::StartTag);
        }
        break;
    case State::EndTag:
        if (is('>')) {
            endEndTag();
        }
        break;
    case State::Comment:
        if (endsWith("-->")) {
            enter(State::Text);
        }
        break;
    case State::CharacterData:
        if (endsWith("]]>")) {
            enter(State::Text);
        }
        break;
    case State::Instruction:
        if (endsWith("?>")) {
            countMarkup();
            enter(State::Text);
        }
        break;
    case State::Broken:
        break;
    }
    return true;
}

bool MarkupMeter::beginMarkup()
{
    if (is('/')) {
        enter(State::EndTag);
    } else if (is('?')) {
        enter(State::Instruction);
    } else if (is('!')) {
        m_declaration.clear();
        enter(State::DeclarationBegins);
    } else {
        m_attributesOfTag = 0;
        enter(State::StartTag);
    }
    return true;
}

bool MarkupMeter::beginDeclaration()
{
    static const QString comment = QStringLiteral("--");
    static const QString characterData = QStringLiteral("[CDATA[");
    m_declaration += QChar(m_recent.back());
    if (m_declaration == comment) {
        enter(State::Comment);
    } else if (m_declaration == characterData) {
        enter(State::CharacterData);
    } else if (is('D') && m_declaration.size() == 1) {
        return false; // a document type declaration
    } else if (!comment.startsWith(m_declaration) && !characterData.startsWith(m_declaration)) {
        enter(State::Broken);
    }
    return true;
}

// In a well-formed tag each attribute has exactly one "=" outside its quotes.
bool MarkupMeter::takeInStartTag()
{
    if (is('=')) {
        ++m_attributesOfTag;
        return m_attributesOfTag <= maxAttributesOfTag
            && m_attributesOfTag + m_attributesOfOpenElements <= maxAttributesInScope
            && countPiece();
    }
    if (is('"') || is('\'')) {
        m_quote = m_recent.back();
        enter(State::QuotedValue);
    } else if (is('>')) {
        endStartTag();
    }
    return true;
}

void MarkupMeter::endStartTag()
{
    if (!endsWith("/>")) {
        m_openElements.append(m_attributesOfTag);
        m_attributesOfOpenElements += m_attributesOfTag;
    }
    countMarkup();
    enter(State::Text);
}

void MarkupMeter::endEndTag()
{
    if (!m_openElements.isEmpty()) {
        m_attributesOfOpenElements -= m_openElements.takeLast();
    }
    countMarkup();
    enter(State::Text);
}

void MarkupMeter::countMarkup()
{
    const qint64 length = m_here - m_markupBegin + 1;
    m_markup += length;
    m_longestMarkup = std::max(m_longestMarkup, length);
}

void MarkupMeter::enter(State state)
{
    m_state = state;
    m_recent = {};
}

bool MarkupMeter::endsWith(const char *terminator) const
{
    const QLatin1String expected(terminator);
    return std::equal(expected.begin(), expected.end(), m_recent.end() - expected.size());
}

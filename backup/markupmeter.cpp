#include "backup/markupmeter.h"

#include <algorithm>

bool MarkupMeter::feed(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [this](QChar character) {
        std::rotate(m_recent.begin(), m_recent.begin() + 1, m_recent.end());
        m_recent.back() = character.unicode();
        return take();
    });
}

bool MarkupMeter::take()
{
    switch (m_state) {
    case State::Text:
        if (is('<')) {
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
    enter(State::Text);
}

void MarkupMeter::endEndTag()
{
    if (!m_openElements.isEmpty()) {
        m_attributesOfOpenElements -= m_openElements.takeLast();
    }
    enter(State::Text);
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

#pragma once

#include <QString>
#include <QVector>

#include <array>

/// Measures how much markup an XML text has, without parsing it.
///
/// It tells tags, comments, CDATA sections and processing instructions apart as a parser does. Of a
/// text that is not well-formed it measures at least as much as a parser would see before giving
/// up.
class MarkupMeter
{
public:
    /// Attributes in one tag.
    static constexpr int maxAttributesOfTag = 1000;
    /// Attributes of an element and of all those around it. A backup is four levels deep.
    static constexpr int maxAttributesInScope = 4 * maxAttributesOfTag;
    /// Tags, comments, sections, instructions and attributes together.
    static constexpr int maxPieces = 1000 * 1000;

    /// Continues with the next part of the text.
    /// @return false once a limit is exceeded or a document type declaration begins; the rest need
    /// not be fed then
    bool feed(const QString &text);

    /// How many characters of tags and instructions there were: what may be names.
    qint64 markup() const { return m_markup; }
    /// At least as much as a parser has to go through that looks at the namespace of each element
    /// and attribute anew, in characters.
    qint64 costOfNames() const { return m_longestMarkup * m_pieces; }

private:
    enum class State {
        Text,
        MarkupBegins,      // after "<"
        DeclarationBegins, // after "<!"
        StartTag,
        QuotedValue,
        EndTag,
        Comment,
        CharacterData,
        Instruction,
        Broken // no parser gets any further
    };

    int nextThatMatters(const QString &text, int begin) const;
    ushort awaitedCharacter() const;
    bool take();
    bool beginMarkup();
    bool beginDeclaration();
    bool takeInStartTag();
    void endStartTag();
    void endEndTag();
    void countMarkup();
    void enter(State state);
    bool is(char character) const { return m_recent.back() == character; }
    bool endsWith(const char *terminator) const;
    bool countPiece() { return ++m_pieces <= maxPieces; }

    State m_state = State::Text;
    std::array<ushort, 3> m_recent{}; // the last characters since the state was entered
    ushort m_quote = 0;               // what ends the quoted value
    QString m_declaration;            // how it begins

    qint64 m_fed = 0;         // characters
    qint64 m_here = 0;        // the place of the character being taken
    qint64 m_markupBegin = 0; // where the last piece begins
    qint64 m_markup = 0;
    qint64 m_longestMarkup = 0;
    int m_pieces = 0;
    int m_attributesOfTag = 0;
    int m_attributesOfOpenElements = 0;
    QVector<int> m_openElements; // the number of attributes of each
};

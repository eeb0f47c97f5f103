#include "backup/documentguard.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

using Admitted = std::optional<QByteArray>;

QByteArray attributes(int number, const QByteArray &prefix = "a")
{
    QByteArray text;
    for (int i = 0; i < number; ++i) {
        text += ' ' + prefix + QByteArray::number(i) + "=''";
    }
    return text;
}

const QByteArray tooManyAttributes = "<big" + attributes(DocumentGuard::maxAttributes + 1) + "/>";

QByteArray encoded(const QString &text, const char *codec, bool withMark)
{
    const auto flags = withMark ? QTextCodec::DefaultConversion : QTextCodec::IgnoreHeader;
    QTextCodec::ConverterState state(flags);
    return QTextCodec::codecForName(codec)->fromUnicode(text.constData(), text.size(), &state);
}

// What a parser meets on its way through the document.
struct Parsed
{
    bool isWellFormed = false;
    bool hasTooMuch = false;
};

Parsed parsed(const QByteArray &document)
{
    Parsed result;
    QXmlStreamReader xml(document);
    while (!xml.atEnd()) {
        xml.readNext();
        result.hasTooMuch = result.hasTooMuch || xml.isDTD()
            || (xml.isStartElement() && xml.name() == QLatin1String("big"));
    }
    result.isWellFormed = !xml.hasError();
    return result;
}

} // namespace

class TestDocumentGuard : public QObject
{
    Q_OBJECT

private slots:
    void admitsAnOrdinaryDocumentUnchanged()
    {
        const QByteArray document = "<a b='c'>\r\n\td &amp; e<!-- f --><![CDATA[g]]><?h i?></a>\n";
        QCOMPARE(DocumentGuard::admit(document), Admitted(document));
    }

    void takesTheDeclarationAway_data()
    {
        QTest::addColumn<QByteArray>("declaration");
        QTest::newRow("short") << QByteArray("<?xml version='1.0'?>");
        QTest::newRow("with encoding") << QByteArray(R"(<?xml version="1.0" encoding="UTF-8"?>)");
        QTest::newRow("standalone") << QByteArray("<?xml version='1.0' standalone='no'?>");
        QTest::newRow("spread out") << QByteArray("<?xml\n version = '1.0'\n?>");
    }

    void takesTheDeclarationAway()
    {
        QFETCH(const QByteArray, declaration);
        QCOMPARE(DocumentGuard::admit(declaration + "\n<a/>"), Admitted("\n<a/>"));
    }

    void keepsWhatOnlyLooksLikeADeclaration()
    {
        for (const QByteArray document :
             {"<?xml-stylesheet href='a'?><a/>", "<?xml\v version='1.0'?><a/>"}) {
            QCOMPARE(DocumentGuard::admit(document), Admitted(document));
        }
    }

    void makesEveryEncodingUtf8_data()
    {
        QTest::addColumn<QByteArray>("document");
        const QString content = QStringLiteral(u"<a>\u00e4\u00df</a>");
        const auto declared = [&content](const char *encoding) -> QString {
            return QStringLiteral("<?xml version='1.0' encoding='%1'?>")
                       .arg(QLatin1String(encoding))
                + content;
        };
        QTest::newRow("UTF-8") << content.toUtf8();
        QTest::newRow("UTF-8 with a mark") << "\xef\xbb\xbf" + content.toUtf8();
        for (const char *codec : {"UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"}) {
            QTest::addRow("%s", codec) << encoded(content, codec, false);
            QTest::addRow("%s with a mark", codec) << encoded(content, codec, true);
        }
        QTest::newRow("declared UTF-8") << declared("UTF-8").toUtf8();
        QTest::newRow("declared utf-8 with a mark") << "\xef\xbb\xbf" + declared("utf-8").toUtf8();
        QTest::newRow("declared Latin-1") << declared("ISO-8859-1").toLatin1();
        QTest::newRow("declared UTF-32") << encoded(declared("UTF-32"), "UTF-32", true);
        QTest::newRow("declared UTF-16") << encoded(declared("UTF-16"), "UTF-16", true);
        QTest::newRow("declared code page")
            << encoded(declared("windows-1252"), "windows-1252", false);
    }

    void makesEveryEncodingUtf8()
    {
        QFETCH(const QByteArray, document);
        QCOMPARE(DocumentGuard::admit(document), Admitted("<a>\xc3\xa4\xc3\x9f</a>"));
    }

    void charactersMayLieAcrossTwoPieces_data()
    {
        QTest::addColumn<QByteArray>("codec");
        QTest::newRow("UTF-8") << QByteArray("UTF-8");
        QTest::newRow("UTF-16") << QByteArray("UTF-16LE");
    }

    void charactersMayLieAcrossTwoPieces()
    {
        QFETCH(const QByteArray, codec);
        const QString clef = QString::fromUcs4(U"\U0001d11e", 1);
        for (int shift = 0; shift < 5; ++shift) {
            const QString text = QLatin1String("<a>") + QString(shift, QLatin1Char('b'))
                + clef.repeated(50000) + QLatin1String("</a>");
            QCOMPARE(DocumentGuard::admit(encoded(text, codec, false)), Admitted(text.toUtf8()));
        }
    }

    void refusesToBeginTwice_data()
    {
        QTest::addColumn<QByteArray>("document");
        const QByteArray mark = "\xef\xbb\xbf";
        const QByteArray declaration = "<?xml version='1.0'?>";
        QTest::newRow("two declarations") << declaration + declaration + "<a/>";
        QTest::newRow("two marks") << mark + mark + "<a/>";
        QTest::newRow("a mark after the declaration") << declaration + mark + "<a/>";
        QTest::newRow("a mark and two declarations") << mark + declaration + declaration + "<a/>";
        QTest::newRow("UTF-16 in UTF-32")
            << encoded(QString::fromLatin1("<\0!\0D\0O\0C\0T\0Y\0P\0E\0 \0a\0>\0<\0a\0/\0>\0", 32),
                       "UTF-32LE", false);
        QTest::newRow("UTF-16 after a mark") << mark + QByteArray("<\0a\0/\0>\0", 8);
        QTest::newRow("two marks in UTF-16")
            << encoded(QStringLiteral(u"\ufeff<a/>"), "UTF-16", true);
    }

    // What is left when the first is taken away must not pass for a document.
    void refusesToBeginTwice()
    {
        QFETCH(const QByteArray, document);
        QVERIFY(!parsed(document).isWellFormed);
        const Admitted admitted = DocumentGuard::admit(document);
        QVERIFY(admitted);
        QVERIFY(!parsed(*admitted).isWellFormed);
    }

    void whatCannotBeDecodedEndsTheDocument_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::newRow("not UTF-8") << QByteArray("<a>\xe4</a>");
        QTest::newRow("an encoding nobody knows")
            << QByteArray("<?xml version='1.0' encoding='foo'?><a/>");
        QTest::newRow("a version nobody knows") << QByteArray("<?xml version='1.1'?><a/>");
        QTest::newRow("half a declaration") << QByteArray("<?xml version='1.0'");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("half a mark") << QByteArray("\xef\xbb");
    }

    void whatCannotBeDecodedEndsTheDocument()
    {
        QFETCH(const QByteArray, document);
        QCOMPARE(DocumentGuard::admit(document), Admitted(QByteArray()));
    }

    void aWrongDeclarationIsFoundByTheParser_data()
    {
        QTest::addColumn<QByteArray>("encoding");
        for (const char *encoding : {"UTF-16", "UTF-16BE", "UTF-32", "IBM037"}) {
            QTest::newRow(encoding) << QByteArray(encoding);
        }
    }

    void aWrongDeclarationIsFoundByTheParser()
    {
        QFETCH(const QByteArray, encoding);
        const QByteArray declaration = "<?xml version='1.0' encoding='" + encoding + "'?>";
        const QString content = QStringLiteral("?><a/>");
        const Admitted plain = DocumentGuard::admit(declaration + "<a/>");
        QVERIFY(plain);
        QVERIFY(!parsed(*plain).isWellFormed);
        const Admitted mixed =
            DocumentGuard::admit(declaration + encoded(content, encoding, false));
        QVERIFY(mixed);
        QVERIFY(!parsed(*mixed).isWellFormed);
    }

    void refusesADocumentTypeDeclaration_data()
    {
        QTest::addColumn<QByteArray>("document");
        const QByteArray declaration = "<!DOCTYPE a>";
        QTest::newRow("alone") << declaration + "<a/>";
        QTest::newRow("after the XML declaration")
            << "<?xml version='1.0'?>" + declaration + "<a/>";
        QTest::newRow("after a comment") << "<!-- b -->" + declaration + "<a/>";
        QTest::newRow("after an instruction") << "<?b?>" + declaration + "<a/>";
        QTest::newRow("with entities")
            << QByteArray("<!DOCTYPE a [<!ENTITY b 'c'><!ENTITY d '&b;&b;'>]><a>&d;</a>");
        QTest::newRow("with an external entity")
            << QByteArray("<!DOCTYPE a [<!ENTITY b SYSTEM 'file:///etc/hostname'>]><a>&b;</a>");
        QTest::newRow("in UTF-16") << encoded(QStringLiteral("<!DOCTYPE a><a/>"), "UTF-16", true);
    }

    void refusesADocumentTypeDeclaration()
    {
        QFETCH(const QByteArray, document);
        QCOMPARE(DocumentGuard::admit(document), Admitted());
    }

    void limitsTheAttributesOfATag_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<bool>("isAdmitted");
        QTest::newRow("999") << 999 << true;
        QTest::newRow("1000") << 1000 << true;
        QTest::newRow("1001") << 1001 << false;
    }

    void limitsTheAttributesOfATag()
    {
        QFETCH(const int, number);
        QFETCH(const bool, isAdmitted);
        const QByteArray open = "<a" + attributes(number) + "></a>";
        const QByteArray closed = "<r><a" + attributes(number) + "/></r>";
        QCOMPARE(DocumentGuard::admit(open).has_value(), isAdmitted);
        QCOMPARE(DocumentGuard::admit(closed).has_value(), isAdmitted);
    }

    // However much it takes until the first tag ends.
    void admitsLongAttributes()
    {
        QByteArray document = "<a" + attributes(200) + "/>";
        document.replace("''", '\'' + QByteArray(1000, 'b') + '\'');
        QCOMPARE(DocumentGuard::admit(document), Admitted(document));
    }

    void countsAttributesInEveryEncoding()
    {
        for (const char *codec : {"UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE"}) {
            const QString text = QString::fromLatin1(tooManyAttributes);
            QCOMPARE(DocumentGuard::admit(encoded(text, codec, true)), Admitted());
            QCOMPARE(DocumentGuard::admit(encoded(text, codec, false)), Admitted());
        }
    }

    void limitsTheDepth()
    {
        const QByteArray full = attributes(DocumentGuard::maxAttributes, "xmlns:a");
        const int most = DocumentGuard::maxDepth;
        const QByteArray begins = ("<a" + full + '>').repeated(most);
        const QByteArray ends = QByteArray("</a>").repeated(most);
        QVERIFY(DocumentGuard::admit(begins + ends));
        QVERIFY(DocumentGuard::admit(begins + "<b/>" + ends));
        QVERIFY(!DocumentGuard::admit(begins + "<b></b>" + ends));
        QVERIFY(DocumentGuard::admit(begins + "</a><b></b><c></c>" + ends.mid(4)));
    }

    void limitsTheMarkup()
    {
        constexpr int most = int(DocumentGuard::maxCost / DocumentGuard::leastLength);
        const QByteArray elements = QByteArray("<a/>").repeated(most);
        QVERIFY(DocumentGuard::admit(elements));
        QVERIFY(!DocumentGuard::admit(elements + "<a/>"));
        QVERIFY(!DocumentGuard::admit(QByteArray("<a b=''/>").repeated(most / 2 + 1)));
        QVERIFY(!DocumentGuard::admit(elements.left(elements.size() - 4) + "<a b=''/>"));
        QVERIFY(!DocumentGuard::admit(QByteArray("<!---->").repeated(most + 1)));
    }

    void aLongTagCountsForAllMarkup()
    {
        constexpr int pieces = 1000;
        constexpr int longest = int(DocumentGuard::maxCost / pieces);
        const QByteArray others = QByteArray("<?b?>").repeated(pieces - 2) + "</a>";
        const QByteArray tag = "<a" + QByteArray(longest - 2, ' ');
        QVERIFY(DocumentGuard::admit(tag + '>' + others));
        QVERIFY(!DocumentGuard::admit(tag + " >" + others));
        const QByteArray text = "<a>" + QByteArray(longest, ' ') + others;
        QVERIFY(DocumentGuard::admit(text));
    }

    void theDeclarationMayBeOfAnyLength()
    {
        const QByteArray declaration = "<?xml version='1.0'" + QByteArray(100000, ' ') + "?>";
        QCOMPARE(DocumentGuard::admit(declaration + "<a/>"), Admitted("<a/>"));
    }

    void looksIntoTagsOnly_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("text") << QByteArray("<a>") << QByteArray("</a>");
        QTest::newRow("double quotes") << QByteArray("<a b=\"'>") << QByteArray("\"/>");
        QTest::newRow("single quotes") << QByteArray("<a b='\"/>") << QByteArray("'/>");
        QTest::newRow("comment") << QByteArray("<!--") << QByteArray("--><a/>");
        QTest::newRow("CDATA") << QByteArray("<a><![CDATA[") << QByteArray("]]></a>");
        QTest::newRow("instruction") << QByteArray("<?a ") << QByteArray("?><a/>");
    }

    void looksIntoTagsOnly()
    {
        QFETCH(const QByteArray, before);
        QFETCH(const QByteArray, after);
        const bool isText = before == "<a>";
        QByteArray content = tooManyAttributes + "<!DOCTYPE a>";
        if (isText || before.startsWith("<a b=")) {
            content.replace('<', "&lt;").replace("'", "&apos;");
        }
        const QByteArray document = before + content + after;
        QCOMPARE(DocumentGuard::admit(document), Admitted(document));
        QVERIFY(parsed(document).isWellFormed);
    }

    void isNotMisledAboutWhereATagBegins_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::newRow("a comment's end within CDATA") << QByteArray("<![CDATA[-->]]>");
        QTest::newRow("a CDATA's end within a comment") << QByteArray("<!--]]>-->");
        QTest::newRow("a comment's begin within CDATA") << QByteArray("<![CDATA[<!--]]>");
        QTest::newRow("a CDATA's begin within a comment") << QByteArray("<!--<![CDATA[-->");
        QTest::newRow("a comment that begins with an end") << QByteArray("<!--><![CDATA[-->");
        QTest::newRow("a comment that begins with a dash") << QByteArray("<!---><![CDATA[-->");
        QTest::newRow("an empty comment") << QByteArray("<!---->");
        QTest::newRow("an empty CDATA") << QByteArray("<![CDATA[]]>");
        QTest::newRow("brackets at a CDATA's end") << QByteArray("<![CDATA[]]]]>");
        QTest::newRow("a comment's begin within an instruction") << QByteArray("<?b <!-- ?>");
        QTest::newRow("an end within an instruction") << QByteArray("<?b > <![CDATA[ ?>");
        QTest::newRow("question marks at an instruction's end") << QByteArray("<?b <!-- ?\?>");
        QTest::newRow("a tag's end within quotes") << QByteArray("<b c='>'/>");
        QTest::newRow("quotes within quotes") << QByteArray(R"(<b c='"' d="'"/>)");
        QTest::newRow("quotes within text") << QByteArray("'");
        QTest::newRow("quotes within an end tag") << QByteArray("<b></b  >");
    }

    void isNotMisledAboutWhereATagBegins()
    {
        QFETCH(const QByteArray, before);
        QVERIFY(DocumentGuard::admit("<a>" + before + "</a>"));
        QVERIFY(!DocumentGuard::admit("<a>" + before + tooManyAttributes + "</a>"));
        QVERIFY(parsed("<a>" + before + tooManyAttributes + "</a>").hasTooMuch);
    }

    void agreesWithTheParserOnRandomMarkup()
    {
        const QList<QByteArray> fragments{"<!--", "-->",     "<![CDATA[",
                                          "]]>",  "<b c='",  "<b c=\"",
                                          "'",    "\"",      "/>",
                                          ">",    "<b>",     "</b>",
                                          "<?b",  " ?>",     "-",
                                          "]",    "text",    "<",
                                          "!",    "?",       "<!",
                                          "=",    "[CDATA[", "<b/>",
                                          "</b",  " ",       tooManyAttributes};
        const QByteArray declaration = "<!DOCTYPE r>";
        QRandomGenerator generator(20240305);
        int wellFormed = 0;
        int tooMuch = 0;
        for (int i = 0; i < 8000; ++i) {
            QByteArray document = generator.bounded(20) == 0 ? declaration + "<r>" : "<r>";
            for (int size = generator.bounded(9); size > 0; --size) {
                document += fragments.at(generator.bounded(fragments.size()));
            }
            document += "</r>";
            const bool isAdmitted = DocumentGuard::admit(document).has_value();
            const Parsed reference = parsed(document);
            if (reference.hasTooMuch) {
                ++tooMuch;
                QVERIFY2(!isAdmitted, document.left(200));
            } else if (reference.isWellFormed) {
                ++wellFormed;
                QVERIFY2(isAdmitted, document.left(200));
            }
        }
        QVERIFY(wellFormed > 300);
        QVERIFY(tooMuch > 300);
    }

    void admitsWhatIsNotWellFormed_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::newRow("no XML") << QByteArray("\x01\x02\x03\x04", 4);
        QTest::newRow("half a tag") << QByteArray("<a");
        QTest::newRow("half a comment") << QByteArray("<a/><!--");
        QTest::newRow("ends without begins") << QByteArray("<a/></a></a></a>");
        QTest::newRow("NUL") << QByteArray("<a>\0</a>", 8);
    }

    void admitsWhatIsNotWellFormed()
    {
        QFETCH(const QByteArray, document);
        QVERIFY(!parsed(document).isWellFormed);
        QCOMPARE(DocumentGuard::admit(document), Admitted(document));
    }

    // Without the guard this takes the parser half an hour.
    void endsSoonOnAMillionAttributes()
    {
        QCOMPARE(DocumentGuard::admit("<a" + attributes(1000 * 1000) + "/>"), Admitted());
    }

    void readsARegularFile()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("a.xml")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<?xml version='1.0'?><a/>");
        file.close();
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(DocumentGuard::read(&file), Admitted("<a/>"));
    }

    void refusesWhatIsNoRegularFile()
    {
        QFile endless(QStringLiteral("/dev/zero"));
        QVERIFY(endless.open(QIODevice::ReadOnly));
        QCOMPARE(DocumentGuard::read(&endless), Admitted());
    }

    void refusesAFileThatIsTooLarge()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("a.xml")));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.resize(qint64(DocumentGuard::maxSize) + 1)); // takes no space on the disk
        QCOMPARE(DocumentGuard::read(&file), Admitted());
    }
};

VELTRA4_TEST(TestDocumentGuard)
#include "tst_documentguard.moc"

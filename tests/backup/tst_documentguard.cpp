#include "backup/documentguard.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryFile>
#include <QTextCodec>
#include <QXmlStreamReader>
#include <QTest>

namespace {

using Admitted = std::optional<QByteArray>;

QByteArray attributes(int number)
{
    QByteArray text;
    for (int i = 0; i < number; ++i) {
        text += " a" + QByteArray::number(i) + "=''";
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

    void takesTheDeclarationAway()
    {
        for (const QByteArray &declaration :
             {QByteArray("<?xml version='1.0'?>"),
              QByteArray(R"(<?xml version="1.0" encoding="UTF-8"?>)"),
              QByteArray("<?xml version='1.0' standalone='no'?>"),
              QByteArray("<?xml\n version = '1.0'\n?>"),
              "<?xml version='1.0'" + QByteArray(100000, ' ') + "?>"}) {
            QVERIFY2(DocumentGuard::admit(declaration + "\n<a/>") == Admitted("\n<a/>"),
                     declaration);
        }
    }

    void keepsWhatOnlyLooksLikeADeclaration()
    {
        for (const QByteArray document :
             {"<?xml-stylesheet href='a'?><a/>", "<?xml\v version='1.0'?><a/>"}) {
            QVERIFY2(DocumentGuard::admit(document) == Admitted(document), document);
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

    // What is left when the first is taken away must not pass for a document.
    void refusesToBeginTwice()
    {
        const QByteArray mark = "\xef\xbb\xbf";
        const QByteArray declaration = "<?xml version='1.0'?>";
        const QString twoBytesEach =
            QString::fromLatin1("<\0!\0D\0O\0C\0T\0Y\0P\0E\0 \0a\0>\0<\0a\0/\0>\0", 32);
        for (const QByteArray &document :
             {declaration + declaration + "<a/>", mark + mark + "<a/>", declaration + mark + "<a/>",
              mark + declaration + declaration + "<a/>", encoded(twoBytesEach, "UTF-32LE", false),
              mark + QByteArray("<\0a\0/\0>\0", 8),
              encoded(QStringLiteral(u"\ufeff<a/>"), "UTF-16", true)}) {
            QVERIFY2(!parsed(document).isWellFormed, document);
            const Admitted admitted = DocumentGuard::admit(document);
            QVERIFY2(admitted && !parsed(*admitted).isWellFormed, document);
        }
    }

    void whatCannotBeDecodedEndsTheDocument()
    {
        for (const QByteArray document :
             {"<a>\xe4</a>", "<?xml version='1.0' encoding='foo'?><a/>",
              "<?xml version='1.1'?><a/>", "<?xml version='1.0'", "", "\xef\xbb"}) {
            QVERIFY2(DocumentGuard::admit(document) == QByteArray(), document);
        }
    }

    void aWrongDeclarationIsFoundByTheParser()
    {
        for (const char *encoding : {"UTF-16", "UTF-16BE", "UTF-32", "IBM037"}) {
            const QByteArray declaration =
                QByteArray("<?xml version='1.0' encoding='") + encoding + "'?>";
            for (const QByteArray &content :
                 {QByteArray("<a/>"), encoded(QStringLiteral("?><a/>"), encoding, false)}) {
                const Admitted admitted = DocumentGuard::admit(declaration + content);
                QVERIFY2(admitted && !parsed(*admitted).isWellFormed, encoding);
            }
        }
    }

    void refusesADocumentTypeDeclaration()
    {
        for (const QByteArray &document :
             {QByteArray("<!DOCTYPE a><a/>"), QByteArray("<?xml version='1.0'?><!DOCTYPE a><a/>"),
              QByteArray("<!-- b --><!DOCTYPE a><a/>"), QByteArray("<?b?><!DOCTYPE a><a/>"),
              QByteArray("<!DOCTYPE a [<!ENTITY b 'c'><!ENTITY d '&b;&b;'>]><a>&d;</a>"),
              encoded(QStringLiteral("<!DOCTYPE a><a/>"), "UTF-16", true)}) {
            QVERIFY2(!DocumentGuard::admit(document), document);
        }
    }

    void limitsTheAttributesOfATag()
    {
        for (const int number : {999, 1000, 1001}) {
            const QByteArray open = "<a" + attributes(number) + "></a>";
            const QByteArray closed = "<r><a" + attributes(number) + "/></r>";
            for (const QByteArray &document : {open, closed}) {
                const bool isAdmitted = DocumentGuard::admit(document).has_value();
                QVERIFY2(isAdmitted == (number <= 1000), QByteArray::number(number));
            }
        }
    }

    void limitsTheDepth()
    {
        const QByteArray begins =
            ("<a" + attributes(DocumentGuard::maxAttributes) + '>').repeated(16);
        const QByteArray ends = QByteArray("</a>").repeated(16);
        QVERIFY(DocumentGuard::admit(begins + ends));
        QVERIFY(DocumentGuard::admit(begins + "<b/>" + ends));
        QVERIFY(!DocumentGuard::admit(begins + "<b></b>" + ends));
        QVERIFY(DocumentGuard::admit(begins + "</a><b></b><c></c>" + ends.mid(4)));
    }

    void limitsTheMarkup()
    {
        constexpr int most = 1 << 20; // of 256 characters each
        const QByteArray elements = QByteArray("<a/>").repeated(most);
        QVERIFY(DocumentGuard::admit(elements));
        QVERIFY(!DocumentGuard::admit(elements + "<a/>"));
    }

    void aLongTagCountsForAllMarkup()
    {
        constexpr int longest = 1 << 18;
        constexpr int pieces = 1 << 10;
        const QByteArray tag = "<a" + QByteArray(longest - 2, ' ');
        for (const QByteArray piece : {"<?b?>", "<!---->", "<b/>", "<![CDATA[]]>"}) {
            const QByteArray others = piece.repeated(pieces - 2) + "</a>";
            QVERIFY2(DocumentGuard::admit(tag + '>' + others), piece);
            QVERIFY2(!DocumentGuard::admit(tag + " >" + others), piece);
            QVERIFY2(!DocumentGuard::admit(tag + '>' + piece + others), piece);
            QVERIFY2(DocumentGuard::admit("<a>" + QByteArray(longest, ' ') + others), piece);
        }
        const QByteArray withAttributes = QByteArray("<b c='' d=''/>").repeated((pieces - 2) / 3);
        QVERIFY(DocumentGuard::admit(tag + '>' + withAttributes + "<b/><b/></a>"));
        QVERIFY(!DocumentGuard::admit(tag + '>' + withAttributes + "<b c='' d=''/></a>"));
    }

    void looksIntoTagsOnly_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char *name, const QByteArray &before, const QByteArray &after) {
            QTest::newRow(name) << before << after;
        };
        row("text", "<a>", "</a>");
        row("double quotes", "<a b=\"c'>", "\"/>");
        row("single quotes", "<a b='c\"/>", "'/>");
        row("comment", "<!--", "--><a/>");
        row("CDATA", "<a><![CDATA[", "]]></a>");
        row("instruction", "<?a ", "?><a/>");
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

    void isNotMisledAboutWhereATagBegins()
    {
        for (const QByteArray before :
             {"<![CDATA[-->]]>", "<!--]]>-->", "<![CDATA[<!--]]>", "<!--<![CDATA[-->",
              "<!--><![CDATA[-->", "<!---><![CDATA[-->", "<!---->", "<![CDATA[]]>",
              "<![CDATA[]]]]>", "<?b <!-- ?>", "<?b > <![CDATA[ ?>", "<?b <!-- ?\?>", "<b c='>'/>",
              R"(<b c='"' d="'"/>)", "'", "<b></b  >"}) {
            QVERIFY2(DocumentGuard::admit("<a>" + before + "</a>"), before);
            const QByteArray document = "<a>" + before + tooManyAttributes + "</a>";
            QVERIFY2(!DocumentGuard::admit(document), before);
            QVERIFY2(parsed(document).hasTooMuch, before);
        }
    }

    void agreesWithTheParserOnRandomMarkup()
    {
        const QByteArray tooDeep =
            QByteArray("<d>").repeated(15) + "<big></big>" + QByteArray("</d>").repeated(15);
        const QList<QByteArray> fragments{
            "<!--", "-->", "<![CDATA[", "]]>", "<b c='",  "<b c=\"", "'",   "\"",   "/>",
            ">",    "<b>", "</b>",      "<?b", " ?>",     "-",       "]",   "text", "<",
            "!",    "?",   "<!",        "=",   "[CDATA[", "<b/>",    "</b", " ",    tooDeep};
        QRandomGenerator generator(20240305);
        int wellFormed = 0;
        int tooMuch = 0;
        for (int i = 0; i < 8000; ++i) {
            QByteArray document = generator.bounded(20) == 0 ? "<!DOCTYPE r><r>" : "<r>";
            for (int size = generator.bounded(9); size > 0; --size) {
                document += fragments.at(generator.bounded(fragments.size()));
            }
            document += "</r>";
            const bool isAdmitted = DocumentGuard::admit(document).has_value();
            const Parsed reference = parsed(document);
            if (reference.hasTooMuch) {
                ++tooMuch;
                QVERIFY2(!isAdmitted, document);
            } else if (reference.isWellFormed) {
                ++wellFormed;
                QVERIFY2(isAdmitted, document);
            }
        }
        QVERIFY(wellFormed > 300);
        QVERIFY(tooMuch > 300);
    }

    void admitsWhatIsNotWellFormed()
    {
        for (const QByteArray &document :
             {QByteArray("\x01\x02\x03\x04"), QByteArray("<a"), QByteArray("<a/><!--"),
              QByteArray("<a/></a></a></a>"), QByteArray("<a>\0</a>", 8)}) {
            QVERIFY2(!parsed(document).isWellFormed, document);
            QVERIFY2(DocumentGuard::admit(document) == Admitted(document), document);
        }
    }

    void readsARegularFile()
    {
        QTemporaryFile file;
        QVERIFY(file.open());
        file.write("<?xml version='1.0'?><a/>");
        QVERIFY(file.seek(0));
        QCOMPARE(DocumentGuard::read(&file), Admitted("<a/>"));
    }

    void refusesWhatIsNoRegularFile()
    {
        QFile endless("/dev/zero");
        QVERIFY(endless.open(QIODevice::ReadOnly));
        QCOMPARE(DocumentGuard::read(&endless), Admitted());
    }

    void refusesAFileThatIsTooLarge()
    {
        QTemporaryFile file;
        QVERIFY(file.open());
        QVERIFY(file.resize(512LL * 1024 * 1024 + 1)); // takes no space on the disk
        QCOMPARE(DocumentGuard::read(&file), Admitted());
    }
};

VELTRA4_TEST(TestDocumentGuard)
#include "tst_documentguard.moc"

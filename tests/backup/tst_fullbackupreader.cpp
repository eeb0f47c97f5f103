#include "backup/documentproblem.h"
#include "backup/fullbackup.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

using SampleBackup::document;
using SampleBackup::documentWith;

// Collects what goes to the debug log for as long as it lives.
class DebugLog
{
public:
    DebugLog()
        : m_previous(qInstallMessageHandler(collect))
    {
        lines().clear();
    }
    ~DebugLog() { qInstallMessageHandler(m_previous); }
    DebugLog(const DebugLog &) = delete;
    DebugLog &operator=(const DebugLog &) = delete;

    static QStringList &lines()
    {
        static QStringList collected;
        return collected;
    }

private:
    static void collect(QtMsgType type, const QMessageLogContext & /*context*/,
                        const QString &message)
    {
        lines() << (type == QtDebugMsg ? message : QStringLiteral("not debug: ") + message);
    }

    QtMessageHandler m_previous;
};

QByteArray dataOnly(const QByteArray &content)
{
    return "<ZOR><ZORBackupData>" + content + "</ZORBackupData></ZOR>";
}

QByteArray section(const QByteArray &document, const QByteArray &name)
{
    const int begin = document.indexOf('<' + name + '>');
    const QByteArray end = "</" + name + '>';
    return document.mid(begin, document.indexOf(end) + end.size() - begin);
}

} // namespace

class TestFullBackupReader : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_log.reset(new DebugLog); }
    void cleanup() { m_log.reset(); }

    void readsEveryField()
    {
        FullBackup backup(nullptr, nullptr);
        QVERIFY(reads(document(), &backup));
        QCOMPARE(SampleBackup::describe(backup), SampleBackup::description());
    }

    void leavesTheRecordAloneWhenTheFileCannotBeOpened_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("not there") << m_folder.filePath(QStringLiteral("missing.xml"));
        QTest::newRow("a folder") << m_folder.path();
        QTest::newRow("below a file") << QStringLiteral("/dev/null/backup.xml");
    }

    void leavesTheRecordAloneWhenTheFileCannotBeOpened()
    {
        QFETCH(const QString, path);
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        QVERIFY(!backup.readFromFile(path));
        QCOMPARE(SampleBackup::describe(backup), SampleBackup::description());
    }

    void succeedsWithNothingWhereThereIsNoRoot_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("text") << QByteArray("ZOR");
        QTest::newRow("another root") << QByteArray("<other><ZORBackupData/></other>");
        QTest::newRow("another spelling") << QByteArray("<zor><ZORBackupData/></zor>");
        QTest::newRow("not well-formed") << QByteArray("<other></another>");
        QTest::newRow("half a root tag") << QByteArray("<ZOR");
        QTest::newRow("an empty root") << QByteArray("<ZOR/>");
    }

    void succeedsWithNothingWhereThereIsNoRoot()
    {
        QFETCH(const QByteArray, content);
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        FullBackup expected(nullptr, nullptr);
        SampleBackup::fill(&expected);
        expected.slaves.clear();
        QVERIFY(reads(content, &backup));
        QCOMPARE(SampleBackup::describe(backup), SampleBackup::describe(expected));
    }

    void keepsWhatTheDocumentDoesNotCarry()
    {
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        FullBackup expected(nullptr, nullptr);
        SampleBackup::fill(&expected);
        expected.domain = QStringLiteral("other.com");
        expected.slaves.clear();
        QVERIFY(reads(dataOnly("<domain>other.com</domain>"), &backup));
        QCOMPARE(SampleBackup::describe(backup), SampleBackup::describe(expected));
    }

    void takesSectionsInAnyOrder()
    {
        QByteArray reordered = "<ZOR>";
        for (const char *name :
             {"ZORBackupData", "ZORBackupInfo", "ZORControllerInfo", "ZORFileInfo"}) {
            reordered += section(document(), name);
        }
        FullBackup backup(nullptr, nullptr);
        QVERIFY(reads(reordered + "</ZOR>", &backup));
        QCOMPARE(SampleBackup::describe(backup), SampleBackup::description());
    }

    void readsASectionThatOccursTwiceTwice()
    {
        FullBackup backup(nullptr, nullptr);
        FullBackup expected(nullptr, nullptr);
        SampleBackup::fill(&expected);
        expected.net = QStringLiteral("dhcp");
        expected.slaves << QStringLiteral("slave-c");
        const QByteArray again = "<ZORBackupData><net>static</net><slaves><slave>slave-c</slave>"
                                 "</slaves><net>dhcp</net></ZORBackupData></ZOR>";
        QVERIFY(reads(documentWith("</ZOR>", again), &backup));
        QCOMPARE(SampleBackup::describe(backup), SampleBackup::describe(expected));
    }

    void readsARootWithinAnotherElement()
    {
        FullBackup backup(nullptr, nullptr);
        const QByteArray content = "<a><b/>" + section(document(), "ZOR") + "<c/></a>";
        QVERIFY(reads(content, &backup));
        QCOMPARE(SampleBackup::describe(backup), SampleBackup::description());
    }

    void takesNoNoticeOfWhatFollowsTheRoot()
    {
        for (const char *rest : {"<!-- a -->", "text", "<a>", "</a>", "<ZOR><a/></ZOR>", "\x01"}) {
            FullBackup backup(nullptr, nullptr);
            QVERIFY(reads(document() + rest, &backup));
            QCOMPARE(SampleBackup::describe(backup), SampleBackup::description());
        }
    }

    void passesOverWhatIsNoElement()
    {
        QByteArray content = document();
        content.replace("\n", " text <!-- <a> --> <?a b?> <![CDATA[<a/>]]> &lt;\n");
        content = section(content, "ZOR");
        FullBackup backup(nullptr, nullptr);
        QVERIFY(reads(content, &backup));
        QCOMPARE(SampleBackup::describe(backup), SampleBackup::description());
    }

    void refusesAnElementWithoutContent_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char *name : {"filetype", "version", "name", "serial", "ptVersion", "ctVersion",
                                 "systemModel", "type", "net", "domain", "nameServer", "ntpServer",
                                 "slave", "activeConfig", "configData"}) {
            QTest::newRow(name) << QByteArray(name);
        }
    }

    void refusesAnElementWithoutContent()
    {
        QFETCH(const QByteArray, name);
        const QByteArray element = section(document(), name);
        QVERIFY(reads(documentWith(element, element)));
        QVERIFY(!reads(documentWith(element, '<' + name + "></" + name + '>')));
        QVERIFY(!reads(documentWith(element, '<' + name + "/>")));
    }

    void acceptsAnyText_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        QTest::newRow("a blank") << QByteArray(" ") << QStringLiteral(" ");
        QTest::newRow("blanks around") << QByteArray("\n a\t") << QStringLiteral("\n a\t");
        QTest::newRow("references")
            << QByteArray("&lt;&amp;&#228;&#xe4;&gt;") << QStringLiteral(u"<&\u00e4\u00e4>");
        QTest::newRow("a CDATA section") << QByteArray("<![CDATA[<a>]]>") << QStringLiteral("<a>");
        QTest::newRow("an empty CDATA section") << QByteArray("<![CDATA[]]>") << QString();
        QTest::newRow("what follows a comment is lost")
            << QByteArray("a<!-- b -->c") << QStringLiteral("a");
        QTest::newRow("what follows a CDATA section is lost")
            << QByteArray("<![CDATA[a]]>b") << QStringLiteral("a");
    }

    void acceptsAnyText()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const QString, expected);
        FullBackup backup(nullptr, nullptr);
        QVERIFY(reads(documentWith(">tracker-7<", '>' + content + '<'), &backup));
        QCOMPARE(backup.name, expected);
    }

    void refusesWhatIsNoText_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("a comment") << QByteArray("<!-- a -->tracker-7");
        QTest::newRow("an instruction") << QByteArray("<?a b?>tracker-7");
        QTest::newRow("an element") << QByteArray("<a>tracker-7</a>");
        QTest::newRow("an element after the text") << QByteArray("tracker-7<a/>");
    }

    void refusesWhatIsNoText()
    {
        QFETCH(const QByteArray, content);
        QVERIFY(!reads(documentWith(">tracker-7<", '>' + content + '<')));
    }

    void comparesTheFixedTextsExactly_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<bool>("isRead");
        QTest::newRow("another case")
            << QByteArray(">ZORBackup<") << QByteArray(">ZORbackup<") << false;
        QTest::newRow("a blank") << QByteArray(">ZORBackup<") << QByteArray(">ZORBackup <")
                                 << false;
        QTest::newRow("references")
            << QByteArray(">ZORBackup<") << QByteArray(">&#90;ORBackup<") << true;
        QTest::newRow("another type")
            << QByteArray(">XQUFull<") << QByteArray(">XQUfull<") << false;
        QTest::newRow("more of it") << QByteArray(">XQUFull<") << QByteArray(">XQUFull2<") << false;
    }

    void comparesTheFixedTextsExactly()
    {
        QFETCH(const QByteArray, before);
        QFETCH(const QByteArray, after);
        QFETCH(const bool, isRead);
        QCOMPARE(reads(documentWith(before, after)), isRead);
    }

    void readsTheFormatVersion_data()
    {
        QTest::addColumn<QByteArray>("version");
        QTest::addColumn<bool>("isRead");
        QTest::newRow("v1.0.0") << QByteArray("v1.0.0") << true;
        QTest::newRow("V1.0.0") << QByteArray("V1.0.0") << true;
        QTest::newRow("1.0.0") << QByteArray("1.0.0") << true;
        QTest::newRow("v1.0.0-beta") << QByteArray("v1.0.0-beta") << true;
        QTest::newRow("v1.0") << QByteArray("v1.0") << false;
        QTest::newRow("v1") << QByteArray("v1") << false;
        QTest::newRow("v1.0.x") << QByteArray("v1.0.x") << true; // the x is cut off and leaves 0
        QTest::newRow("v1.0.1") << QByteArray("v1.0.1") << false;
        QTest::newRow("v2.0.0") << QByteArray("v2.0.0") << false;
        QTest::newRow("v1.x.0") << QByteArray("v1.x.0") << false;
    }

    void readsTheFormatVersion()
    {
        QFETCH(const QByteArray, version);
        QFETCH(const bool, isRead);
        for (const char *name : {"ZORFileInfo", "ZORBackupInfo"}) {
            QByteArray changed = section(document(), name);
            changed.replace("v1.0.0", version);
            QCOMPARE(reads(documentWith(section(document(), name), changed)), isRead);
        }
    }

    void refusesAVersionThatIsNone_data()
    {
        QTest::addColumn<QByteArray>("version");
        for (const char *version : {"v2.x", "x", "v", "v1.", "-1", " "}) {
            QTest::newRow(version) << QByteArray(version);
        }
    }

    void refusesAVersionThatIsNone()
    {
        QFETCH(const QByteArray, version);
        QVERIFY(!reads(documentWith(">v4.2.1<", '>' + version + '<')));
        QVERIFY(!reads(documentWith(">v3.5<", '>' + version + '<')));
    }

    void doesNotLookAtTheCreationDate_data()
    {
        QTest::addColumn<QByteArray>("element");
        QTest::newRow("no date") << QByteArray("<creationDate>yesterday</creationDate>");
        QTest::newRow("nothing") << QByteArray("<creationDate></creationDate>");
        QTest::newRow("a comment") << QByteArray("<creationDate><!-- a --></creationDate>");
        QTest::newRow("missing") << QByteArray();
    }

    void doesNotLookAtTheCreationDate()
    {
        QFETCH(const QByteArray, element);
        FullBackup backup(nullptr, nullptr);
        QVERIFY(reads(documentWith(section(document(), "creationDate"), element), &backup));
        QCOMPARE(SampleBackup::describe(backup), SampleBackup::description());
    }

    void takesDataFromCharacterDataSectionsOnly_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("isRead");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray before = "before";
        QTest::newRow("a section") << QByteArray("<![CDATA[QUJD]]>") << true << QByteArray("ABC");
        QTest::newRow("an empty section") << QByteArray("<![CDATA[]]>") << true << QByteArray();
        QTest::newRow("padding") << QByteArray("<![CDATA[QQ==]]>") << true << QByteArray("A");
        QTest::newRow("line breaks")
            << QByteArray("<![CDATA[QU\r\n JD\n]]>") << true << QByteArray("ABC");
        QTest::newRow("plain text") << QByteArray("QUJD") << false << before;
        QTest::newRow("a blank before the section")
            << QByteArray(" <![CDATA[QUJD]]>") << false << before;
        QTest::newRow("a comment before the section")
            << QByteArray("<!-- --><![CDATA[QUJD]]>") << false << before;
        QTest::newRow("nothing") << QByteArray() << false << before;
    }

    void takesDataFromCharacterDataSectionsOnly()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const bool, isRead);
        QFETCH(const QByteArray, expected);
        FullBackup backup(nullptr, nullptr);
        backup.configData = "before";
        QCOMPARE(reads(dataOnly("<configData>" + content + "</configData>"), &backup), isRead);
        QCOMPARE(backup.configData, expected);
    }

    void logsWhatItRefuses_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *name, const QByteArray &before, const QByteArray &after,
                            const QStringList &expected) {
            QTest::newRow(name) << before << after << expected;
        };
        const auto failed = [](const char *reader) {
            return QStringLiteral("read_%1_fromFile() failed").arg(QLatin1String(reader));
        };
        row("in the root", "<ZORFileInfo>", "<other/><ZORFileInfo>",
            {QStringLiteral("Invalid ZOR token other")});
        row("in the file's section", "<filetype>", "<other/><filetype>",
            {QStringLiteral("Invalid ZORFileInfo token other"), failed("ZORFileInfo")});
        row("in the controller's section", "<name>", "<Name/><name>",
            {QStringLiteral("Invalid ZORControllerInfo token Name"), failed("ZORControllerInfo")});
        row("in the backup's section", "<type>", "<ty-pe/><type>",
            {QStringLiteral("Invalid ZORBackupInfo token ty-pe"), failed("ZORBackupInfo")});
        row("in the date", "2024-03", "<date/>2024-03",
            {QStringLiteral("Invalid ZORBackupInfo token date"), failed("ZORBackupInfo")});
        row("in the data's section", "<net>", "<slave/><net>",
            {QStringLiteral("Invalid ZORBackupData token slave"), failed("ZORBackupData")});
        row("among the slaves", "<slave>", "<name/><slave>",
            {QStringLiteral("Invalid slaves token name"), failed("ZORBackupData")});
        row("beyond ASCII", "<name>", "<n\xc3\xa4me/><name>",
            {QStringLiteral(u"Invalid ZORControllerInfo token n\u00e4me"),
             failed("ZORControllerInfo")});
        row("a wrong file type", ">ZORBackup<", "><", {failed("ZORFileInfo")});
        row("a wrong version", ">v4.2.1<", ">x<", {failed("ZORControllerInfo")});
        row("a wrong backup type", ">XQUFull<", ">a<", {failed("ZORBackupInfo")});
        row("an empty slave", ">slave-a<", "><", {failed("ZORBackupData")});
        row("nothing wrong", "<ZOR>", "<ZOR>", {});
    }

    void logsWhatItRefuses()
    {
        QFETCH(const QByteArray, before);
        QFETCH(const QByteArray, after);
        QFETCH(const QStringList, expected);
        const bool isRead = reads(documentWith(before, after));
        QCOMPARE(DebugLog::lines(), expected);
        QCOMPARE(isRead, expected.isEmpty());
    }

    void stopsWhereTheDocumentEnds_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("in the root") << QByteArray("<ZOR>");
        QTest::newRow("in the file's section") << QByteArray("<ZOR><ZORFileInfo>");
        QTest::newRow("in the controller's section") << QByteArray("<ZOR><ZORControllerInfo>");
        QTest::newRow("in the backup's section") << QByteArray("<ZOR><ZORBackupInfo>");
        QTest::newRow("in the data's section") << QByteArray("<ZOR><ZORBackupData>");
        QTest::newRow("among the slaves") << QByteArray("<ZOR><ZORBackupData><slaves>");
        QTest::newRow("before a text") << QByteArray("<ZOR><ZORBackupData><net>");
        QTest::newRow("in a text") << QByteArray("<ZOR><ZORBackupData><net>a");
        QTest::newRow("in a CDATA section")
            << QByteArray("<ZOR><ZORBackupData><configData><![CDATA[QUJD");
        QTest::newRow("at a wrong end tag") << QByteArray("<ZOR><ZORBackupData></ZOR>");
        QTest::newRow("at a character that is none") << QByteArray("<ZOR>\x01</ZOR>");
        QTest::newRow("at a NUL") << QByteArray("<ZOR>\0</ZOR>", 12);
        QTest::newRow("at an entity nobody declared") << QByteArray("<ZOR>&a;</ZOR>");
    }

    void stopsWhereTheDocumentEnds()
    {
        QFETCH(const QByteArray, content);
        QVERIFY(!reads(content));
    }

    void stopsWhereTheDocumentIsTruncated()
    {
        const QByteArray whole = document();
        const int rootBegins = whole.indexOf("<ZOR>") + 5;
        const int rootEnds = whole.indexOf("</ZOR>") + 6;
        for (int size = 0; size <= whole.size(); ++size) {
            const bool isWithinRoot = size >= rootBegins && size < rootEnds;
            QVERIFY2(reads(whole.left(size)) == !isWithinRoot, whole.left(size));
        }
    }

    void refusesWhatIsMeantToExhaustIt_data()
    {
        QTest::addColumn<QByteArray>("content");
        const int many = 1000000;
        QByteArray attributes;
        for (int i = 0; i < many; ++i) {
            attributes += " a" + QByteArray::number(i) + "=''";
        }
        QByteArray namespaces;
        for (int i = 0; i < 300000; ++i) {
            namespaces += "<q:a xmlns:p" + QByteArray::number(i) + "='x'>";
        }
        QByteArray bomb = "<!DOCTYPE ZOR [<!ENTITY a 'aaaaaaaaaaaaaaaa'>";
        for (char c = 'b'; c <= 'z'; ++c) {
            bomb += QByteArray("<!ENTITY ") + c + " '";
            bomb += (QByteArray("&") + char(c - 1) + ';').repeated(16) + "'>";
        }
        QTest::newRow("a million attributes") << "<ZOR" + attributes + "/>";
        QTest::newRow("a million attributes of something else") << "<a" + attributes + "/>";
        QTest::newRow("namespaces nested deeply") << "<q:a xmlns:q='q'>" + namespaces;
        QTest::newRow("elements nested deeply") << "<ZOR>" + QByteArray("<a>").repeated(many);
        QTest::newRow("roots nested deeply") << QByteArray("<ZOR>").repeated(many);
        QTest::newRow("slaves nested deeply")
            << "<ZOR><ZORBackupData>" + QByteArray("<slaves>").repeated(many);
        QTest::newRow("entities of entities")
            << bomb + "]><ZOR><ZORBackupData><net>&z;</net></ZORBackupData></ZOR>";
        QTest::newRow("an external entity")
            << QByteArray("<!DOCTYPE ZOR [<!ENTITY a SYSTEM 'file:///etc/hostname'>]>"
                          "<ZOR><ZORBackupData><net>&a;</net></ZORBackupData></ZOR>");
        QTest::newRow("a long comment") << "<ZOR><!--" + QByteArray(1 << 24, 'a');
        QTest::newRow("a long name") << "<ZOR><" + QByteArray(1 << 24, 'a') + "/></ZOR>";
        QTest::newRow("a long attribute") << "<ZOR><a b='" + QByteArray(1 << 24, 'a') + "'/></ZOR>";
    }

    void refusesWhatIsMeantToExhaustIt()
    {
        QFETCH(const QByteArray, content);
        QVERIFY(!reads(content));
    }

    void endsOnWhatIsNoBackup_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("noise") << QByteArray(1 << 24, '\xa5');
        QTest::newRow("NULs") << QByteArray(1 << 24, '\0');
        QTest::newRow("blanks") << QByteArray(1 << 24, ' ');
        QTest::newRow("another encoding than it says")
            << documentWith("encoding=\"UTF-8\"", "encoding=\"UTF-16\"");
        QTest::newRow("an unknown encoding")
            << documentWith("encoding=\"UTF-8\"", "encoding=\"foo\"");
    }

    void endsOnWhatIsNoBackup()
    {
        QFETCH(const QByteArray, content);
        FullBackup backup(nullptr, nullptr);
        QVERIFY(reads(content, &backup));
        FullBackup untouched(nullptr, nullptr);
        QCOMPARE(SampleBackup::describe(backup), SampleBackup::describe(untouched));
    }

    void tellsWhatItRefusesAndWhere_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("line");
        QTest::addColumn<qint64>("column");
        const QString empty = "The field is empty or does not begin with text.";
        QTest::newRow("an empty field")
            << documentWith(">example.com<", "><") << empty << qint64(21) << qint64(19);
        QTest::newRow("an empty slave")
            << documentWith(">slave-b<", "><") << empty << qint64(26) << qint64(18);
        QTest::newRow("a comment in a field")
            << documentWith("example.com", "<!---->") << empty << qint64(21) << qint64(17);
        QTest::newRow("another file type")
            << documentWith(">ZORBackup<", ">a<") << "The field does not hold \"ZORBackup\"."
            << qint64(4) << qint64(14);
        QTest::newRow("another format")
            << documentWith("v1.0.0", "v1.0") << "The field does not hold the version 1.0.0."
            << qint64(5) << qint64(16);
        QTest::newRow("no version") << documentWith("v4.2.1", "v4.x")
                                    << "The field holds no version." << qint64(10) << qint64(18);
        QTest::newRow("data that is plain text")
            << documentWith("<![CDATA[AAH+/yBjb25maWd1cmF0aW9ucw==]]>", "AAH+")
            << "The field does not begin with a CDATA section." << qint64(29) << qint64(19);
        QTest::newRow("an unknown element")
            << documentWith("<domain>", "<a>") << "This element is unknown here." << qint64(21)
            << qint64(5);
        QTest::newRow("half a document") << document().left(document().indexOf("<domain>"))
                                         << "Premature end of document." << qint64(21) << qint64(2);
    }

    void tellsWhatItRefusesAndWhere()
    {
        QFETCH(const QByteArray, document);
        FullBackup backup(nullptr, nullptr);
        DocumentProblem problem;
        QVERIFY(!backup.readFromFile(SampleBackup::makeFile(m_folder.path(), document), &problem));
        QTEST(problem.text, "text");
        QTEST(problem.line, "line");
        QTEST(problem.column, "column");
    }

private:
    bool reads(const QByteArray &content, FullBackup *backup) const
    {
        return backup->readFromFile(SampleBackup::makeFile(m_folder.path(), content));
    }
    bool reads(const QByteArray &content) const
    {
        FullBackup backup(nullptr, nullptr);
        return reads(content, &backup);
    }

    const QTemporaryDir m_folder;
    QScopedPointer<DebugLog> m_log;
};

VELTRA4_TEST(TestFullBackupReader)
#include "tst_fullbackupreader.moc"

#include "backup/documentproblem.h"
#include "backup/fullbackup.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

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
    static void collect(QtMsgType type, const QMessageLogContext &, const QString &message)
    {
        lines() << (type == QtDebugMsg ? message : "not debug: " + message);
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

QByteArray documentNamed(const QByteArray &content)
{
    return documentWith(">tracker-7<", '>' + content + '<');
}

} // namespace

class TestFullBackupReader : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_log.reset(new DebugLog);
        m_backup.reset(new FullBackup(nullptr, nullptr));
    }
    void cleanup() { m_log.reset(); }

    void readsEveryField()
    {
        QVERIFY(reads(document()));
        QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::description());
    }

    void leavesTheRecordAloneWhenTheFileCannotBeOpened()
    {
        SampleBackup::Filled backup;
        for (const QString &path : {m_folder.filePath("missing.xml"), m_folder.path()}) {
            QVERIFY2(!backup.readFromFile(path), qPrintable(path));
            QCOMPARE(SampleBackup::describe(backup), SampleBackup::description());
        }
    }

    void succeedsWithNothingWhereThereIsNoRoot()
    {
        SampleBackup::Filled expected;
        expected.slaves.clear();
        for (const QByteArray &content :
             {QByteArray(), QByteArray("ZOR"), QByteArray("<other><ZORBackupData/></other>"),
              QByteArray("<zor><ZORBackupData/></zor>"), QByteArray("<other></another>"),
              QByteArray("<ZOR"), QByteArray("<ZOR/>"), QByteArray(20000, '\xa5'),
              QByteArray(20000, '\0'), QByteArray(20000, ' '), documentWith("UTF-8", "UTF-16"),
              documentWith("UTF-8", "foo")}) {
            SampleBackup::fill(m_backup.data());
            QVERIFY2(reads(content), content.left(40));
            QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::describe(expected));
        }
    }

    void keepsWhatTheDocumentDoesNotCarry()
    {
        SampleBackup::fill(m_backup.data());
        SampleBackup::Filled expected;
        expected.domain = "other.com";
        expected.slaves.clear();
        QVERIFY(reads(dataOnly("<domain>other.com</domain>")));
        QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::describe(expected));
    }

    void takesSectionsInAnyOrder()
    {
        QByteArray reordered = "<ZOR>";
        for (const char *name :
             {"ZORBackupData", "ZORBackupInfo", "ZORControllerInfo", "ZORFileInfo"}) {
            reordered += section(document(), name);
        }
        QVERIFY(reads(reordered + "</ZOR>"));
        QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::description());
    }

    void readsASectionThatOccursTwiceTwice()
    {
        SampleBackup::Filled expected;
        expected.net = "dhcp";
        expected.slaves << "slave-c";
        QVERIFY(reads(documentWith("</ZOR>",
                                   "<ZORBackupData><net>static</net><slaves><slave>slave-c</slave>"
                                   "</slaves><net>dhcp</net></ZORBackupData></ZOR>")));
        QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::describe(expected));
    }

    void readsARootWithinAnotherElement()
    {
        QVERIFY(reads("<a><b/>" + section(document(), "ZOR") + "<c/></a>"));
        QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::description());
    }

    void takesNoNoticeOfWhatFollowsTheRoot()
    {
        for (const char *rest : {"<!-- a -->", "text", "<a>", "</a>", "<ZOR><a/></ZOR>", "\x01"}) {
            QVERIFY2(reads(document() + rest), rest);
            QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::description());
        }
    }

    void passesOverWhatIsNoElement()
    {
        QByteArray content = document();
        content.replace("\n", " text <!-- <a> --> <?a b?> <![CDATA[<a/>]]> &lt;\n");
        QVERIFY(reads(section(content, "ZOR")));
        QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::description());
    }

    void refusesAnElementWithoutContent()
    {
        for (const QByteArray name :
             {"filetype", "version", "name", "serial", "ptVersion", "ctVersion", "systemModel",
              "type", "net", "domain", "nameServer", "ntpServer", "slave", "activeConfig",
              "configData"}) {
            const QByteArray element = section(document(), name);
            QVERIFY2(!reads(documentWith(element, '<' + name + "></" + name + '>')), name);
            QVERIFY2(!reads(documentWith(element, '<' + name + "/>")), name);
        }
    }

    void acceptsAnyText_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        const auto row = [](const QByteArray &content, const QString &expected) {
            QTest::newRow(content) << content << expected;
        };
        row(" ", " ");
        row("\n a\t", "\n a\t");
        row("&lt;&amp;&#228;&#xe4;&gt;", QStringLiteral(u"<&\u00e4\u00e4>"));
        row("<![CDATA[<a>]]>", "<a>");
        row("<![CDATA[]]>", "");
        row("a<!-- what follows a comment is lost -->c", "a");
        row("<![CDATA[a]]>what follows CDATA is lost", "a");
    }

    void acceptsAnyText()
    {
        QFETCH(const QByteArray, content);
        QVERIFY(reads(documentNamed(content)));
        QTEST(m_backup->name, "expected");
    }

    void refusesWhatIsNoText()
    {
        for (const char *content :
             {"<!-- a -->tracker-7", "<?a b?>tracker-7", "<a>tracker-7</a>", "tracker-7<a/>"}) {
            QVERIFY2(!reads(documentNamed(content)), content);
        }
    }

    void comparesTheFixedTextsExactly()
    {
        QVERIFY(reads(documentWith(">ZORBackup<", ">&#90;ORBackup<")));
        for (const char *type : {">ZORbackup<", ">ZORBackup <", ">ZORBackups<", ">ZOR<"}) {
            QVERIFY2(!reads(documentWith(">ZORBackup<", type)), type);
        }
        for (const char *type : {">XQUfull<", ">XQUFull2<"}) {
            QVERIFY2(!reads(documentWith(">XQUFull<", type)), type);
        }
    }

    void readsTheFormatVersion()
    {
        for (const char *name : {"ZORFileInfo", "ZORBackupInfo"}) {
            const QByteArray part = section(document(), name);
            const auto readsVersion = [&](const char *version) {
                return reads(documentWith(part, QByteArray(part).replace("v1.0.0", version)));
            };
            for (const char *version : {"v1.0.0", "V1.0.0", "1.0.0", "v1.0.0-beta", "v1.0.x"}) {
                QVERIFY2(readsVersion(version), version);
            }
            for (const char *version : {"v1.0", "v1", "v1.0.1", "v2.0.0", "v1.x.0"}) {
                QVERIFY2(!readsVersion(version), version);
            }
        }
    }

    void refusesAVersionThatIsNone()
    {
        for (const char *version : {">v2.x<", ">v<", "> <"}) {
            QVERIFY2(!reads(documentWith(">v4.2.1<", version)), version);
            QVERIFY2(!reads(documentWith(">v3.5<", version)), version);
        }
    }

    void doesNotLookAtTheCreationDate()
    {
        for (const char *element :
             {"", "<creationDate>yesterday</creationDate>", "<creationDate></creationDate>",
              "<creationDate><!-- a --></creationDate>"}) {
            QVERIFY2(reads(documentWith(section(document(), "creationDate"), element)), element);
            QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::description());
        }
    }

    void takesDataFromCharacterDataSectionsOnly_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const QByteArray &content, const QByteArray &expected) {
            QTest::newRow(content) << content << expected;
        };
        row("<![CDATA[QUJD]]>", "ABC");
        row("<![CDATA[]]>", "");
        row("<![CDATA[QQ==]]>", "A");
        row("<![CDATA[QU\r\n JD\n]]>", "ABC");
        row("QUJD", "refused");
        row(" <![CDATA[QUJD]]>", "refused");
        row("<!-- --><![CDATA[QUJD]]>", "refused");
    }

    void takesDataFromCharacterDataSectionsOnly()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const QByteArray, expected);
        m_backup->configData = "refused";
        QCOMPARE(reads(dataOnly("<configData>" + content + "</configData>")),
                 expected != "refused");
        QCOMPARE(m_backup->configData, expected);
    }

    void logsWhatItRefuses_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const QByteArray &before, const QByteArray &after,
                            const QStringList &expected) {
            QTest::newRow(after) << before << after << expected;
        };
        row("<ZORFileInfo>", "<other/><ZORFileInfo>", {"Invalid ZOR token other"});
        row("<filetype>", "<other/><filetype>",
            {"Invalid ZORFileInfo token other", "read_ZORFileInfo_fromFile() failed"});
        row("<name>", "<n\xc3\xa4me/><name>",
            {QStringLiteral(u"Invalid ZORControllerInfo token n\u00e4me"),
             "read_ZORControllerInfo_fromFile() failed"});
        row("<type>", "<ty-pe/><type>",
            {"Invalid ZORBackupInfo token ty-pe", "read_ZORBackupInfo_fromFile() failed"});
        row("2024-03", "<date/>2024-03",
            {"Invalid ZORBackupInfo token date", "read_ZORBackupInfo_fromFile() failed"});
        row("<net>", "<slave/><net>",
            {"Invalid ZORBackupData token slave", "read_ZORBackupData_fromFile() failed"});
        row("<slave>", "<name/><slave>",
            {"Invalid slaves token name", "read_ZORBackupData_fromFile() failed"});
        row(">slave-a<", "><", {"read_ZORBackupData_fromFile() failed"});
        row("<ZOR>", "<ZOR>", {});
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

    void stopsWhereTheDocumentBreaksOff()
    {
        for (const QByteArray &content :
             {QByteArray("<ZOR><ZORBackupData></ZOR>"), QByteArray("<ZOR>\x01</ZOR>"),
              QByteArray("<ZOR>\0</ZOR>", 12), QByteArray("<ZOR>&a;</ZOR>")}) {
            QVERIFY2(!reads(content), content);
        }
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

    void refusesWhatCostsTooMuch()
    {
        SampleBackup::fill(m_backup.data());
        QVERIFY(!reads(documentWith("<ZOR>", "<!DOCTYPE ZOR><ZOR>")));
        QCOMPARE(m_backup->slaves, QStringList());
    }

    void tellsWhatItRefusesAndWhere_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("expected");
        const QString empty = "The field is empty or does not begin with text.";
        QTest::newRow("an empty field") << documentWith(">example.com<", "><") << "21:19 " + empty;
        QTest::newRow("an empty slave") << documentWith(">slave-b<", "><") << "26:18 " + empty;
        QTest::newRow("a comment in a field")
            << documentWith("example.com", "<!---->") << "21:17 " + empty;
        QTest::newRow("another file type")
            << documentWith(">ZORBackup<", ">a<") << "4:14 The field does not hold \"ZORBackup\".";
        QTest::newRow("another format")
            << documentWith("v1.0.0", "v1.0") << "5:16 The field does not hold the version 1.0.0.";
        QTest::newRow("no version")
            << documentWith("v4.2.1", "v4.x") << "10:18 The field holds no version.";
        QTest::newRow("data that is plain text")
            << documentWith("<![CDATA[AAH+/yBjb25maWd1cmF0aW9ucw==]]>", "AAH+")
            << "29:19 The field does not begin with a CDATA section.";
        QTest::newRow("an unknown element")
            << documentWith("<domain>", "<a>") << "21:5 This element is unknown here.";
        QTest::newRow("half a field") << document().left(document().indexOf("example.com"))
                                      << "21:10 Premature end of document.";
        QTest::newRow("half a document")
            << document().left(document().indexOf("<domain>")) << "21:2 Premature end of document.";
    }

    void tellsWhatItRefusesAndWhere()
    {
        QFETCH(const QByteArray, document);
        DocumentProblem problem;
        QVERIFY(!reads(document, &problem));
        QTEST(SampleBackup::describe(problem), "expected");
    }

private:
    bool reads(const QByteArray &content, DocumentProblem *problem = nullptr) const
    {
        return m_backup->readFromFile(SampleBackup::makeFile(m_folder.path(), content), problem);
    }

    const QTemporaryDir m_folder;
    QScopedPointer<DebugLog> m_log;
    QScopedPointer<FullBackup> m_backup;
};

VELTRA4_TEST(TestFullBackupReader)
#include "tst_fullbackupreader.moc"

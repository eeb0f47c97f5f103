#include "backup/backupschema.h"
#include "backup/documentproblem.h"
#include "backup/documentguard.h"
#include "resources/resources.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QProcess>
#include <QResource>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QTest>

#include <malloc.h>
#include <unistd.h>

namespace {

using BackupSchema::Verdict;
using SampleBackup::documentWith;

QByteArray rootWith(const QByteArray &attributes)
{
    return "<ZOR xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' " + attributes + '>';
}

QByteArray utf16(const QByteArray &document)
{
    return QTextCodec::codecForName("UTF-16")->fromUnicode(
        QString::fromUtf8(document).replace("UTF-8", "UTF-16"));
}

QByteArray manyNamespaces()
{
    QByteArray text;
    for (int i = 0; i < DocumentGuard::maxAttributes; ++i) {
        text += " xmlns:a" + QByteArray::number(i) + "='b'";
    }
    return text;
}

struct Document
{
    const char *name;
    QByteArray content;
};

const QList<Document> &backups()
{
    static const QList<Document> documents{
        {"the sample", SampleBackup::document()},
        {"nothing but the root", "<ZOR/>"},
        {"no slaves", documentWith("<slave>slave-a</slave>\n\t\t\t<slave>slave-b</slave>", "")},
        {"empty texts", documentWith(">tracker-7<", "><")},
        {"any version", documentWith(">v1.0.0<", ">v7<")},
        {"data that is no CDATA",
         documentWith("<![CDATA[AAH+/yBjb25maWd1cmF0aW9ucw==]]>", "AAH+/yA=")},
        {"data on several lines", documentWith("AAH+", "AAH+\n")},
        {"no data", documentWith("AAH+/yBjb25maWd1cmF0aW9ucw==", "")},
        {"much data", documentWith("AAH+", QByteArray(3 << 18, 'x').toBase64() + "AAH+")},
        {"a time with a zone", documentWith("14:07:09", "14:07:09.5+01:00")},
        {"a comment", documentWith("<name>", "<!-- a --><name>")},
        {"an instruction", documentWith("<ZOR>", "<?a b?><ZOR>")},
        {"another encoding", utf16(SampleBackup::document())},
        {"a thousand namespaces", documentWith("<ZOR>", "<ZOR" + manyNamespaces() + '>')},
        {"long tags among many",
         documentWith("<ZOR>",
                      "<ZOR" + QByteArray(100000, ' ') + '>'
                          + QByteArray("<!---->").repeated(1000))},
        {"sections in another order",
         "<ZOR><ZORBackupInfo><creationDate>2024-03-05T14:07:09</creationDate>"
         "<version/><type>XQUFull</type></ZORBackupInfo><ZORFileInfo><version/>"
         "<filetype>ZORBackup</filetype></ZORFileInfo><ZORBackupData><net/><domain/>"
         "<nameServer/><ntpServer/><slaves/><activeConfig/><configData/>"
         "</ZORBackupData><ZORControllerInfo><name/><serial/><ptVersion/>"
         "<ctVersion/><systemModel/></ZORControllerInfo></ZOR>"},
    };
    return documents;
}

const QList<Document> &others()
{
    static const QList<Document> documents{
        {"nothing", ""},
        {"text", "ZOR"},
        {"bytes", QByteArray("\x00\xff\x80<ZOR/>", 9)},
        {"noise", QByteArray(1 << 18, '\xa5')},
        {"another root", "<zor/>"},
        {"a section as the root", "<ZORFileInfo/>"},
        {"two roots", "<ZOR/><ZOR/>"},
        {"in a namespace", documentWith("<ZOR>", "<ZOR xmlns='a'>")},
        {"an attribute", documentWith("<ZOR>", "<ZOR a='b'>")},
        {"an attribute in a namespace", documentWith("<ZOR>", "<ZOR xmlns:a='b' a:c='d'>")},
        {"an attribute of all documents", documentWith("<ZOR>", "<ZOR xml:lang='en'>")},
        {"an attribute of a setting", documentWith("<net>", "<net a='b'>")},
        {"another file type", documentWith(">ZORBackup<", ">zorbackup<")},
        {"no file type", documentWith("<filetype>ZORBackup</filetype>", "")},
        {"another backup type", documentWith(">XQUFull<", ">XQUPart<")},
        {"a date without time", documentWith("T14:07:09", "")},
        {"no date", documentWith("2024-03-05T14:07:09", "yesterday")},
        {"a fraction without end",
         documentWith("14:07:09", "14:07:09." + QByteArray(1 << 18, '2') + 'x')},
        {"no serial", documentWith("<serial>00001234</serial>", "")},
        {"two names", documentWith("<name>", "<name/><name>")},
        {"an unknown section", documentWith("<ZORFileInfo>", "<a/><ZORFileInfo>")},
        {"an unknown setting", documentWith("<domain>", "<a/><domain>")},
        {"settings in another order",
         documentWith("<domain>example.com</domain>\n\t\t<nameServer>192.168.0.2</nameServer>",
                      "<nameServer>a</nameServer><domain>b</domain>")},
        {"something else among the slaves", documentWith("<slave>", "<a/><slave>")},
        {"an element in a text", documentWith(">tracker-7<", "><a/><")},
        {"data that is not base64", documentWith("AAH+", "A=H+")},
        {"text between sections", documentWith("<ZORFileInfo>", "a<ZORFileInfo>")},
        {"NUL", documentWith("tracker", QByteArray("track\0er", 8))},
        {"not UTF-8", documentWith("tracker", QByteArray("tr\xe4") + "cker")},
        {"an unknown encoding", documentWith("UTF-8", "foo")},
        {"a tag that is not closed", documentWith("</ZOR>", "")},
        {"an unknown entity", documentWith("tracker", "&tracker;")},
        {"another type for an element", documentWith("<ZOR>", rootWith("xsi:type='ZORFileInfo'"))},
    };
    return documents;
}

// What an independent validator says about documents: one line at least for each.
QString reportOfXmllint(const QString &schemaPath, const QStringList &paths)
{
    QProcess xmllint;
    xmllint.start("xmllint",
                  QStringList{"--nonet", "--noout", "--huge", "--schema", schemaPath} + paths);
    if (!xmllint.waitForFinished()) {
        qFatal("xmllint does not run");
    }
    return QString::fromUtf8(xmllint.readAllStandardError());
}

} // namespace

class TestBackupSchema : public QObject
{
    Q_OBJECT

private slots:
    void isStoredAsAZlibBlock()
    {
        initializeResources();
        const QResource resource(":/XMLSchema_backup_xsd");
        QVERIFY(resource.isValid());
        QCOMPARE(resource.compressionAlgorithm(), QResource::ZlibCompression);
        QCOMPARE(BackupSchema::embedded(), resource.uncompressedData());
        QVERIFY(BackupSchema::embedded().contains("</xs:schema>"));
    }

    void hasTheDeclarationAndLineEndsThatItIsKnownFor()
    {
        const QByteArray schema = BackupSchema::embedded();
        QVERIFY(
            schema.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\r\n"));
        QVERIFY(schema.endsWith("\r\n"));
        QCOMPARE(schema.count('\n'), schema.count("\r\n"));
        QCOMPARE(schema.count('\r'), schema.count("\r\n"));
    }

    void isNotUsableWhenItIsNoSchema()
    {
        const QString path = file(SampleBackup::document());
        const QByteArray embedded = BackupSchema::embedded();
        for (const QByteArray &schema :
             {QByteArray(), QByteArray("schema"), SampleBackup::document(), embedded.left(700),
              QByteArray(embedded).replace("type=\"ZORRoot\"", "type=\"Root\"")}) {
            QVERIFY2(BackupSchema::validate(path, schema) == Verdict::SchemaUnusable, schema);
        }
        QCOMPARE(BackupSchema::validate(path, embedded), Verdict::Backup);
    }

    void acceptsWhateverABackupMayLookLike() { comparesToXmllint(backups(), Verdict::Backup); }

    void refusesEverythingElse() { comparesToXmllint(others(), Verdict::NoBackup); }

    void refusesWhatXmllintWouldNot()
    {
        for (const QByteArray &document :
             {documentWith("1.0", "1.1"), documentWith("AAH+", QByteArray(1 << 18, ' ') + '!')}) {
            QVERIFY2(BackupSchema::validate(file(document)) == Verdict::NoBackup, document);
        }
    }

    void refusesADocumentTruncatedAtAnyByte()
    {
        const QByteArray document = SampleBackup::document().trimmed();
        for (int size = 0; size < document.size(); ++size) {
            QCOMPARE(BackupSchema::validate(file(document.left(size))), Verdict::NoBackup);
        }
    }

    void refusesWhatCannotBeRead()
    {
        for (const QString &path : {m_folder.filePath("missing.xml"), m_folder.path(), QString(),
                                    QString("/dev/zero"), QString("/dev/null")}) {
            QVERIFY2(BackupSchema::validate(path) == Verdict::NoBackup, qPrintable(path));
        }
    }

    void looksAtTheContentNotAtTheName()
    {
        for (const char *name : {"a.dat", "b.XML", "c", "100% #1?\u00e4 d.dat"}) {
            const QString path = m_folder.filePath(name);
            QVERIFY(QFile::copy(file(SampleBackup::document()), path));
            QVERIFY2(BackupSchema::validate(path) == Verdict::Backup, name);
        }
        QVERIFY(QDir::setCurrent(m_folder.path()));
        QCOMPARE(BackupSchema::validate("a.dat"), Verdict::Backup);
    }

    void opensNoConnection()
    {
        QTcpServer server;
        bool isAsked = false;
        connect(&server, &QTcpServer::newConnection, this, [&] {
            isAsked = true;
            server.nextPendingConnection()->abort();
        });
        QVERIFY(server.listen(QHostAddress::LocalHost));
        const QByteArray address =
            "http://127.0.0.1:" + QByteArray::number(server.serverPort()) + "/a.xsd";
        for (QByteArray hint :
             {"xsi:noNamespaceSchemaLocation='%1'", "xsi:schemaLocation='a %1 b %1 c %1'"}) {
            const QString path = file(documentWith("<ZOR>", rootWith(hint.replace("%1", address))));
            QCOMPARE(BackupSchema::validate(path), Verdict::Backup);
        }
        QByteArray schema = BackupSchema::embedded();
        schema.replace("<xs:element name=\"ZOR\"",
                       "<xs:include schemaLocation='" + address + "'/><xs:element name=\"ZOR\"");
        QVERIFY(schema.contains(address));
        BackupSchema::validate(file(SampleBackup::document()), schema);
        QVERIFY(!server.waitForNewConnection(0));
        QVERIFY(!isAsked);
    }

    // With the other schema the document would be a valid one.
    void readsNoOtherSchemaFile_data()
    {
        QTest::addColumn<QByteArray>("hint");
        for (const char *hint :
             {"xsi:noNamespaceSchemaLocation='file://%1'",
              "xsi:noNamespaceSchemaLocation='other.xsd'", "xsi:schemaLocation='a file://%1'",
              "xsi:schemaLocation='a other.xsd'",
              "xsi:noNamespaceSchemaLocation='qrc:/XMLSchema_backup_xsd'"}) {
            QTest::newRow(hint) << QByteArray(hint);
        }
    }

    void readsNoOtherSchemaFile()
    {
        QFETCH(QByteArray, hint);
        const bool isInNamespace = hint.contains(":schemaLocation");
        const QByteArray target = isInNamespace ? "targetNamespace='a'" : "";
        const QString schema = file("<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' "
                                    + target + "><xs:element name='other'/></xs:schema>");
        QFile::remove(m_folder.filePath("other.xsd"));
        QVERIFY(QFile::rename(schema, m_folder.filePath("other.xsd")));
        hint.replace("%1", m_folder.filePath("other.xsd").toUtf8());
        const QByteArray root = isInNamespace ? "a:other xmlns:a='a'" : "other";
        const QString path = file(
            '<' + root + " xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' " + hint + "/>");
        QCOMPARE(BackupSchema::validate(path), Verdict::NoBackup);
    }

    void leavesTheEventsOfOthersAlone()
    {
        bool hasRun = false;
        QMetaObject::invokeMethod(
            this, [&hasRun] { hasRun = true; }, Qt::QueuedConnection);
        const QString path =
            file(documentWith("<ZOR>", rootWith("xsi:noNamespaceSchemaLocation='http://a/b'")));
        QCOMPARE(BackupSchema::validate(path), Verdict::Backup);
        QVERIFY(!hasRun);
        QCoreApplication::processEvents();
        QVERIFY(hasRun);
    }

    void printsNothing()
    {
        QFile printed(m_folder.filePath("printed"));
        QVERIFY(printed.open(QIODevice::ReadWrite));
        const int terminal = dup(STDERR_FILENO);
        QVERIFY(dup2(printed.handle(), STDERR_FILENO) >= 0);
        BackupSchema::validate(file("<ZOR><a/></ZOR>"));
        BackupSchema::validate(file("<ZOR>"));
        BackupSchema::validate(file("<ZOR/>"), "no schema");
        BackupSchema::validate(
            file(rootWith("xsi:noNamespaceSchemaLocation='http://a/b'") + "</ZOR>"));
        QVERIFY(dup2(terminal, STDERR_FILENO) >= 0);
        ::close(terminal);
        QCOMPARE(SampleBackup::contentOf(printed.fileName()), QByteArray());
    }

    void judgesTheSameWhateverItHasSeen()
    {
        const QString backup = file(SampleBackup::document());
        QByteArray manyNames = "<ZOR>";
        for (int i = 0; i < 2000; ++i) {
            manyNames += "<n" + QByteArray::number(i) + "/>";
        }
        const QString odd = file(manyNames + "</ZOR>");
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(BackupSchema::validate(backup), Verdict::Backup);
            QCOMPARE(BackupSchema::validate(odd), Verdict::NoBackup);
            QCOMPARE(BackupSchema::validate(backup, "no schema"), Verdict::SchemaUnusable);
        }
    }

    void keepsNothingOfWhatItHasSeen()
    {
        const QString backup = file(SampleBackup::document());
        const QString odd = file("<ZOR><a/></ZOR>");
        const auto growth = [&] {
            const qint64 before = qint64(mallinfo2().uordblks);
            for (int i = 0; i < 30; ++i) {
                BackupSchema::validate(backup);
                BackupSchema::validate(odd);
            }
            return qint64(mallinfo2().uordblks) - before;
        };
        growth();
        // The schema that is kept is made anew now and then, which frees much, but not so often.
        const qint64 most = qMax(growth(), growth());
        QVERIFY2(most < 50 * 1024, QByteArray::number(most));
    }

    void tellsWhatIsWrongAndWhere_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("expected");
        QTest::newRow("a value of the wrong type")
            << documentWith("2024-03-05T14:07:09", "yesterday")
            << "17:16 Content of element creationDate does not match its type definition: "
               "yesterday is not valid according to xs:dateTime.";
        QTest::newRow("a field that is missing")
            << documentWith("\t\t<serial>00001234</serial>\n", "")
            << "11:15 Element ZORControllerInfo is missing child element.";
        QTest::newRow("no XML") << QByteArray("ZOR<ZOR/>") << "1:1 Start tag expected.";
        QTest::newRow("quotes in the reason")
            << documentWith("tracker", "&a;") << "8:11 Entity 'a' not declared.";
        QTest::newRow("what is not even read") << QByteArray("<!DOCTYPE ZOR><ZOR/>")
                                               << "0:0 Cannot be read, or costs too much to be "
                                                  "read.";
    }

    void tellsWhatIsWrongAndWhere()
    {
        QFETCH(const QByteArray, document);
        DocumentProblem problem;
        QCOMPARE(BackupSchema::validate(file(document), &problem), Verdict::NoBackup);
        QTEST(SampleBackup::describe(problem), "expected");
        DocumentProblem same;
        const QByteArray schema = BackupSchema::embedded();
        QCOMPARE(BackupSchema::validate(file(document), schema, &same), Verdict::NoBackup);
        QTEST(SampleBackup::describe(same), "expected");
    }

    void tellsNothingOfABackup()
    {
        DocumentProblem problem;
        QCOMPARE(BackupSchema::validate(file(SampleBackup::document()), &problem), Verdict::Backup);
        QCOMPARE(problem.text, "");
    }

private:
    void comparesToXmllint(const QList<Document> &documents, Verdict verdict) const
    {
        QStringList paths;
        for (const Document &document : documents) {
            paths << file(document.content);
            QVERIFY2(BackupSchema::validate(paths.last()) == verdict, document.name);
        }
        const QString report = reportOfXmllint(file(BackupSchema::embedded()), paths);
        for (int i = 0; i < paths.size(); ++i) {
            const bool isValid = report.contains(paths.at(i) + " validates\n");
            QVERIFY2(isValid == (verdict == Verdict::Backup), documents.at(i).name);
        }
    }

    QString file(const QByteArray &content) const
    {
        return SampleBackup::makeFile(m_folder.path(), content);
    }

    const QTemporaryDir m_folder;
};

VELTRA4_TEST(TestBackupSchema)
#include "tst_backupschema.moc"

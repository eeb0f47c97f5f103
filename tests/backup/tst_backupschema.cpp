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
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <malloc.h>
#include <unistd.h>

Q_DECLARE_METATYPE(BackupSchema::Verdict)

namespace {

using BackupSchema::Verdict;
using SampleBackup::documentWith;

const QString resourceName = QStringLiteral(":/XMLSchema_backup_xsd");

QByteArray attributes(int number)
{
    QByteArray text;
    for (int i = 0; i < number; ++i) {
        text += " xmlns:a" + QByteArray::number(i) + "='b'";
    }
    return text;
}

QByteArray rootWith(const QByteArray &attributes)
{
    return "<ZOR xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' " + attributes + '>';
}

// What an independent validator says about a document.
bool isValidForXmllint(const QString &schemaPath, const QString &path)
{
    QProcess xmllint;
    xmllint.start(QStringLiteral("xmllint"),
                  {QStringLiteral("--nonet"), QStringLiteral("--noout"), QStringLiteral("--huge"),
                   QStringLiteral("--schema"), schemaPath, path});
    if (!xmllint.waitForFinished()) {
        qFatal("xmllint does not run");
    }
    return xmllint.exitCode() == 0;
}

} // namespace

class TestBackupSchema : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_schemaPath = file(BackupSchema::embedded()); }

    void isStoredAsAZlibBlock()
    {
        initializeResources();
        const QResource resource(resourceName);
        QVERIFY(resource.isValid());
        QCOMPARE(resource.compressionAlgorithm(), QResource::ZlibCompression);
        const QByteArray schema = qUncompress(resource.data(), int(resource.size()));
        QCOMPARE(schema, resource.uncompressedData());
        QCOMPARE(schema, BackupSchema::embedded());
        QVERIFY(schema.contains("</xs:schema>"));
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

    void isNotUsableWhenItIsNoSchema_data()
    {
        QTest::addColumn<QByteArray>("schema");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no XML") << QByteArray("schema");
        QTest::newRow("another document") << SampleBackup::document();
        QTest::newRow("half a schema") << BackupSchema::embedded().left(700);
        QByteArray unknownType = BackupSchema::embedded();
        unknownType.replace("type=\"ZORRoot\"", "type=\"Root\"");
        QTest::newRow("a type that is not there") << unknownType;
    }

    void isNotUsableWhenItIsNoSchema()
    {
        QFETCH(const QByteArray, schema);
        const QString path = file(SampleBackup::document());
        QCOMPARE(BackupSchema::validate(path, schema), Verdict::SchemaUnusable);
    }

    void acceptsABackup()
    {
        const QString path = file(SampleBackup::document());
        QCOMPARE(BackupSchema::validate(path), Verdict::Backup);
        QVERIFY(isValidForXmllint(m_schemaPath, path));
    }

    void acceptsWhateverABackupMayLookLike_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::newRow("nothing but the root") << QByteArray("<ZOR/>");
        QTest::newRow("an empty root") << QByteArray("<ZOR></ZOR>");
        QTest::newRow("no slaves")
            << documentWith("<slave>slave-a</slave>\n\t\t\t<slave>slave-b</slave>", "");
        QTest::newRow("empty texts") << documentWith(">tracker-7<", "><");
        QTest::newRow("any version") << documentWith(">v1.0.0<", ">v7<");
        QTest::newRow("data that is no CDATA")
            << documentWith("<![CDATA[AAH+/yBjb25maWd1cmF0aW9ucw==]]>", "AAH+/yA=");
        QTest::newRow("data on several lines") << documentWith("AAH+", "AAH+\n");
        QTest::newRow("no data") << documentWith("AAH+/yBjb25maWd1cmF0aW9ucw==", "");
        QTest::newRow("a time with a zone") << documentWith("14:07:09", "14:07:09.5+01:00");
        QTest::newRow("a comment") << documentWith("<name>", "<!-- a --><name>");
        QTest::newRow("an instruction") << documentWith("<ZOR>", "<?a b?><ZOR>");
        QTest::newRow("sections in another order") << QByteArray(
            "<ZOR><ZORBackupInfo><creationDate>2024-03-05T14:07:09</creationDate>"
            "<version/><type>XQUFull</type></ZORBackupInfo><ZORFileInfo><version/>"
            "<filetype>ZORBackup</filetype></ZORFileInfo><ZORBackupData><net/><domain/>"
            "<nameServer/><ntpServer/><slaves/><activeConfig/><configData/>"
            "</ZORBackupData><ZORControllerInfo><name/><serial/><ptVersion/>"
            "<ctVersion/><systemModel/></ZORControllerInfo></ZOR>");
    }

    void acceptsWhateverABackupMayLookLike()
    {
        QFETCH(const QByteArray, document);
        const QString path = file(document);
        QCOMPARE(BackupSchema::validate(path), Verdict::Backup);
        QVERIFY(isValidForXmllint(m_schemaPath, path));
    }

    void refusesEverythingElse_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("text") << QByteArray("ZOR");
        QTest::newRow("bytes") << QByteArray("\x00\xff\x80<ZOR/>", 9);
        QTest::newRow("another root") << QByteArray("<zor/>");
        QTest::newRow("a section as the root") << QByteArray("<ZORFileInfo/>");
        QTest::newRow("two roots") << QByteArray("<ZOR/><ZOR/>");
        QTest::newRow("in a namespace") << documentWith("<ZOR>", "<ZOR xmlns='a'>");
        QTest::newRow("an attribute") << documentWith("<ZOR>", "<ZOR a='b'>");
        QTest::newRow("an attribute in a namespace")
            << documentWith("<ZOR>", "<ZOR xmlns:a='b' a:c='d'>");
        QTest::newRow("an attribute of all documents")
            << documentWith("<ZOR>", "<ZOR xml:lang='en'>");
        QTest::newRow("an attribute of a setting") << documentWith("<net>", "<net a='b'>");
        QTest::newRow("another file type") << documentWith(">ZORBackup<", ">zorbackup<");
        QTest::newRow("no file type") << documentWith("<filetype>ZORBackup</filetype>", "");
        QTest::newRow("another backup type") << documentWith(">XQUFull<", ">XQUPart<");
        QTest::newRow("a date without time") << documentWith("T14:07:09", "");
        QTest::newRow("no date") << documentWith("2024-03-05T14:07:09", "yesterday");
        QTest::newRow("no serial") << documentWith("<serial>00001234</serial>", "");
        QTest::newRow("two names") << documentWith("<name>", "<name/><name>");
        QTest::newRow("an unknown section") << documentWith("<ZORFileInfo>", "<a/><ZORFileInfo>");
        QTest::newRow("an unknown setting") << documentWith("<domain>", "<a/><domain>");
        QTest::newRow("settings in another order") << documentWith(
            "<domain>example.com</domain>\n\t\t<nameServer>192.168.0.2</nameServer>",
            "<nameServer>a</nameServer><domain>b</domain>");
        QTest::newRow("something else among the slaves") << documentWith("<slave>", "<a/><slave>");
        QTest::newRow("an element in a text") << documentWith(">tracker-7<", "><a/><");
        QTest::newRow("data that is not base64") << documentWith("AAH+", "A=H+");
        QTest::newRow("text between sections") << documentWith("<ZORFileInfo>", "a<ZORFileInfo>");
        QTest::newRow("NUL") << documentWith("tracker", QByteArray("track\0er", 8));
        QTest::newRow("not UTF-8") << documentWith("tracker",
                                                   "tr\xe4"
                                                   "cker");
        QTest::newRow("an unknown encoding") << documentWith("UTF-8", "foo");
        QTest::newRow("a tag that is not closed") << documentWith("</ZOR>", "");
        QTest::newRow("an unknown entity") << documentWith("tracker", "&tracker;");
        QTest::newRow("another type for an element")
            << documentWith("<ZOR>", rootWith("xsi:type='ZORFileInfo'"));
    }

    void refusesEverythingElse()
    {
        QFETCH(const QByteArray, document);
        const QString path = file(document);
        QCOMPARE(BackupSchema::validate(path), Verdict::NoBackup);
        QVERIFY(!isValidForXmllint(m_schemaPath, path));
    }

    void refusesAnotherVersionOfXml()
    {
        QCOMPARE(BackupSchema::validate(file(documentWith("1.0", "1.1"))), Verdict::NoBackup);
    }

    void refusesADocumentTruncatedAtAnyByte()
    {
        const QByteArray document = SampleBackup::document().trimmed();
        for (int size = 0; size < document.size(); ++size) {
            QCOMPARE(BackupSchema::validate(file(document.left(size))), Verdict::NoBackup);
        }
    }

    void refusesWhatCannotBeRead_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("not there") << m_folder.filePath(QStringLiteral("missing.xml"));
        QTest::newRow("a folder") << m_folder.path();
        QTest::newRow("no name") << QString();
        QTest::newRow("an endless device") << QStringLiteral("/dev/zero");
        QTest::newRow("an empty device") << QStringLiteral("/dev/null");
    }

    void refusesWhatCannotBeRead()
    {
        QFETCH(const QString, path);
        QCOMPARE(BackupSchema::validate(path), Verdict::NoBackup);
    }

    void refusesADocumentTypeDeclaration_data()
    {
        QTest::addColumn<QByteArray>("declaration");
        QByteArray bomb = "<!DOCTYPE ZOR [<!ENTITY a 'aaaaaaaaaaaaaaaa'>";
        for (char c = 'b'; c <= 'z'; ++c) {
            bomb += QByteArray("<!ENTITY ") + c + " '";
            bomb += (QByteArray("&") + char(c - 1) + ';').repeated(16) + "'>";
        }
        QTest::newRow("harmless") << QByteArray("<!DOCTYPE ZOR>");
        QTest::newRow("external") << QByteArray("<!DOCTYPE ZOR SYSTEM 'file:///etc/hostname'>");
        QTest::newRow("entities of entities") << bomb + "]>";
        QTest::newRow("a long entity")
            << "<!DOCTYPE ZOR [<!ENTITY z '" + QByteArray(1 << 20, 'a') + "'>]>";
    }

    void refusesADocumentTypeDeclaration()
    {
        QFETCH(const QByteArray, declaration);
        QByteArray document = documentWith("<ZOR>", declaration + "<ZOR>");
        QCOMPARE(BackupSchema::validate(file(document)), Verdict::NoBackup);
        document.replace("tracker", QByteArray("&z;").repeated(100));
        QCOMPARE(BackupSchema::validate(file(document)), Verdict::NoBackup);
    }

    void looksAtTheContentNotAtTheName()
    {
        for (const QString &name : {QStringLiteral("a.dat"), QStringLiteral("b.XML"),
                                    QStringLiteral("c"), QStringLiteral("100% #1?\u00e4 d.dat")}) {
            const QString path = m_folder.filePath(name);
            QVERIFY(QFile::copy(file(SampleBackup::document()), path));
            QCOMPARE(BackupSchema::validate(path), Verdict::Backup);
        }
        QVERIFY(QDir::setCurrent(m_folder.path()));
        QCOMPARE(BackupSchema::validate(QStringLiteral("a.dat")), Verdict::Backup);
    }

    void acceptsSixteenMebibytes()
    {
        const QByteArray data = QByteArray(16 << 20, 'x').toBase64();
        const QString path = file(documentWith("AAH+/yBjb25maWd1cmF0aW9ucw==", data));
        QCOMPARE(BackupSchema::validate(path), Verdict::Backup);
    }

    void opensNoConnection_data()
    {
        QTest::addColumn<QByteArray>("hint");
        QTest::newRow("a schema for no namespace")
            << QByteArray("xsi:noNamespaceSchemaLocation='%1'");
        QTest::newRow("a schema for a namespace") << QByteArray("xsi:schemaLocation='a %1'");
        QTest::newRow("schemas for many namespaces")
            << QByteArray("xsi:schemaLocation='a %1 b %1 c %1'");
    }

    void opensNoConnection()
    {
        QFETCH(QByteArray, hint);
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        hint.replace("%1",
                     "http://127.0.0.1:" + QByteArray::number(server.serverPort()) + "/a.xsd");
        const QString path = file(documentWith("<ZOR>", rootWith(hint)));
        QCOMPARE(BackupSchema::validate(path), Verdict::Backup);
        QVERIFY(!server.waitForNewConnection(0));
        QVERIFY(!server.hasPendingConnections());
    }

    void readsNoOtherSchemaFile_data()
    {
        QTest::addColumn<QByteArray>("hint");
        QTest::newRow("a schema for no namespace")
            << QByteArray("xsi:noNamespaceSchemaLocation='file://%1'");
        QTest::newRow("a schema beside the document")
            << QByteArray("xsi:noNamespaceSchemaLocation='other.xsd'");
        QTest::newRow("a schema for a namespace") << QByteArray("xsi:schemaLocation='a file://%1'");
        QTest::newRow("a schema for a namespace, beside the document")
            << QByteArray("xsi:schemaLocation='a other.xsd'");
        QTest::newRow("a schema from the resources")
            << QByteArray("xsi:noNamespaceSchemaLocation='qrc:/XMLSchema_backup_xsd'");
    }

    // With the other schema the document would be a valid one.
    void readsNoOtherSchemaFile()
    {
        QFETCH(QByteArray, hint);
        const bool isInNamespace = hint.contains(":schemaLocation");
        const QByteArray target = isInNamespace ? "targetNamespace='a'" : "";
        const QString schemaPath = m_folder.filePath(QStringLiteral("other.xsd"));
        QFile schema(schemaPath);
        QVERIFY(schema.open(QIODevice::WriteOnly));
        schema.write("<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' " + target
                     + "><xs:element name='other'/></xs:schema>");
        schema.close();
        hint.replace("%1", schemaPath.toUtf8());
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
        QFile printed(m_folder.filePath(QStringLiteral("printed")));
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

    void endsOnWhatIsMeantToExhaustIt_data()
    {
        QTest::addColumn<QByteArray>("document");
        const int many = 300000;
        QByteArray namespaces = "<q:a xmlns:q='q'>";
        for (int i = 0; i < many; ++i) {
            namespaces += "<q:a xmlns:p" + QByteArray::number(i) + "='x'>";
        }
        QTest::newRow("a million attributes") << rootWith(attributes(1000000)) + "</ZOR>";
        QTest::newRow("elements nested deeply")
            << QByteArray("<ZOR>").repeated(many) + QByteArray("</ZOR>").repeated(many);
        QTest::newRow("namespaces nested deeply") << namespaces;
        QTest::newRow("many comments") << QByteArray("<!---->").repeated(2000000) + "<a/>";
        QTest::newRow("many elements") << "<a>" + QByteArray("<b/>").repeated(2000000) + "</a>";
        const QByteArray longName(1 << 20, 'n');
        QTest::newRow("a long namespace of many elements")
            << "<ZOR xmlns='" + longName + "'>" + QByteArray("<a/>").repeated(many) + "</ZOR>";
        QTest::newRow("a long namespace of many elements inside") << documentWith(
            "<slave>", "<slave xmlns='" + longName + "'>" + QByteArray("<a/>").repeated(many));
        QTest::newRow("a long namespace of many attributes") << documentWith(
            "<slaves>",
            "<slaves xmlns:n='" + longName + "'>" + QByteArray("<slave n:a=''/>").repeated(many));
        QTest::newRow("a number without end")
            << documentWith("2024-03-05", QByteArray(1 << 22, '2') + "-03-05");
        QTest::newRow("a fraction without end")
            << documentWith("14:07:09", "14:07:09." + QByteArray(1 << 22, '2') + 'x');
        QTest::newRow("data that never gets valid")
            << documentWith("AAH+", QByteArray(1 << 22, ' ') + '!');
        QTest::newRow("spaces") << QByteArray(1 << 22, ' ');
        QTest::newRow("noise") << QByteArray(1 << 22, '\xa5');
    }

    void endsOnWhatIsMeantToExhaustIt()
    {
        QFETCH(const QByteArray, document);
        QCOMPARE(BackupSchema::validate(file(document)), Verdict::NoBackup);
    }

    void acceptsAThousandAttributes()
    {
        const QByteArray most = attributes(DocumentGuard::maxAttributes);
        const QByteArray document =
            documentWith("<ZOR>", "<ZOR" + most + '>').replace("<slave>", "<slave" + most + '>');
        QCOMPARE(BackupSchema::validate(file(document)), Verdict::Backup);
    }

    void acceptsUtf16WithAPairAcrossAnyPiece()
    {
        const QByteArray clef = "\xf0\x9d\x84\x9e";
        const QString text =
            QString::fromUtf8(documentWith("<name>tracker-7", "<name>" + clef.repeated(40000))
                                  .replace("UTF-8", "UTF-16"));
        for (const QString &shift : {QString(), QStringLiteral(" ")}) {
            QByteArray document = QTextCodec::codecForName("UTF-16")->fromUnicode(
                QString(text).replace(QLatin1String("<ZOR>"), QLatin1String("<ZOR>") + shift));
            QCOMPARE(BackupSchema::validate(file(document)), Verdict::Backup);
        }
    }

    void acceptsALongDeclaration()
    {
        QByteArray document = SampleBackup::document();
        document.replace("?>", QByteArray(100 * 1024, ' ') + "?>");
        QCOMPARE(BackupSchema::validate(file(document)), Verdict::Backup);
    }

    void acceptsLongTagsAmongMany()
    {
        const QByteArray tag = "<ZOR" + QByteArray(100 * 1000, ' ') + '>';
        const QByteArray many = QByteArray("<!-- -->").repeated(1000);
        const QByteArray document = documentWith("<ZOR>", tag + many);
        QVERIFY(document.contains(many));
        QCOMPARE(BackupSchema::validate(file(document)), Verdict::Backup);
    }

    void judgesTheSameWhateverItHasSeen()
    {
        const QString backup = file(SampleBackup::document());
        QByteArray manyNames = "<ZOR>";
        for (int i = 0; i < 200000; ++i) {
            manyNames += "<n" + QByteArray::number(i) + "/>";
        }
        const QString odd = file(manyNames + "</ZOR>");
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(BackupSchema::validate(backup), Verdict::Backup);
            QCOMPARE(BackupSchema::validate(odd), Verdict::NoBackup);
            QCOMPARE(BackupSchema::validate(backup, "no schema"), Verdict::SchemaUnusable);
        }
    }

    void keepsNothingOfWhatItHasSeen()
    {
        const QString backup = file(SampleBackup::document());
        const QString odd = file("<ZOR><a/></ZOR>");
        const auto validateBoth = [&](int times) {
            for (int i = 0; i < times; ++i) {
                QCOMPARE(BackupSchema::validate(backup), Verdict::Backup);
                QCOMPARE(BackupSchema::validate(odd), Verdict::NoBackup);
            }
        };
        validateBoth(20);
        const size_t before = mallinfo2().uordblks;
        validateBoth(100);
        const size_t after = mallinfo2().uordblks;
        QVERIFY2(after < before + 100UL * 1024, qPrintable(QString::number(after - before)));
    }

    void tellsWhatIsWrongAndWhere_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("line");
        QTest::addColumn<qint64>("column");
        QTest::newRow("a value of the wrong type")
            << documentWith("2024-03-05T14:07:09", "yesterday")
            << "Content of element creationDate does not match its type definition: yesterday is "
               "not "
               "valid according to xs:dateTime."
            << qint64(17) << qint64(16);
        QTest::newRow("a field that is missing")
            << documentWith("\t\t<serial>00001234</serial>\n", "")
            << "Element ZORControllerInfo is missing child element." << qint64(11) << qint64(15);
        QTest::newRow("no XML") << QByteArray("ZOR<ZOR/>") << "Start tag expected." << qint64(1)
                                << qint64(1);
        QTest::newRow("quotes in the reason")
            << documentWith("tracker", "&a;") << "Entity 'a' not declared." << qint64(8)
            << qint64(11);
        QTest::newRow("what is not even read")
            << QByteArray("<!DOCTYPE ZOR><ZOR/>") << "Cannot be read, or costs too much to be read."
            << qint64(0) << qint64(0);
    }

    void tellsWhatIsWrongAndWhere()
    {
        QFETCH(const QByteArray, document);
        DocumentProblem problem;
        QCOMPARE(BackupSchema::validate(file(document), &problem), Verdict::NoBackup);
        QTEST(problem.text, "text");
        QTEST(problem.line, "line");
        QTEST(problem.column, "column");
    }

    void tellsNothingOfABackup()
    {
        DocumentProblem problem;
        QCOMPARE(BackupSchema::validate(file(SampleBackup::document()), &problem), Verdict::Backup);
        QCOMPARE(problem.text, QString());
    }

private:
    QString file(const QByteArray &content) const
    {
        return SampleBackup::makeFile(m_folder.path(), content);
    }

    const QTemporaryDir m_folder;
    QString m_schemaPath;
};

VELTRA4_TEST(TestBackupSchema)
#include "tst_backupschema.moc"

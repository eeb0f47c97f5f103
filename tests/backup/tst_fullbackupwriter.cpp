#include "backup/backupschema.h"
#include "backup/fullbackup.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/owndevice.h"
#include "tests/support/testmain.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr char olderContent[] = "an older file";

// Nothing can be made, renamed or removed in the folder, but the file in it can be written.
class ClosedFolder
{
public:
    ClosedFolder(const QString &folder, const QString &file)
        : m_folder(folder.toLocal8Bit())
        , m_user(geteuid())
    {
        constexpr uid_t nobody = 65534; // permissions do not keep an administrator out
        const bool isClosed = chmod(qPrintable(file), 0666) == 0
            && chmod(m_folder.constData(), 0555) == 0 && (m_user != 0 || seteuid(nobody) == 0);
        if (!isClosed) {
            qFatal("Cannot close %s", m_folder.constData());
        }
    }
    ~ClosedFolder()
    {
        const bool isOpen = seteuid(m_user) == 0 && chmod(m_folder.constData(), 0700) == 0;
        if (!isOpen) {
            qFatal("Cannot open %s", m_folder.constData());
        }
    }
    ClosedFolder(const ClosedFolder &) = delete;
    ClosedFolder &operator=(const ClosedFolder &) = delete;

private:
    QByteArray m_folder;
    uid_t m_user;
};

// The document, with the time of writing replaced by the sample's.
QByteArray withSampleDate(const QByteArray &document)
{
    static const QRegularExpression date(
        QStringLiteral("<creationDate>\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d</creationDate>"));
    return QString::fromUtf8(document)
        .replace(date, QStringLiteral("<creationDate>2024-03-05T14:07:09</creationDate>"))
        .toUtf8();
}

// One field of the record, for tests that go through all of them.
struct Field
{
    const char *name;
    void (*set)(FullBackup *backup, const QString &text);
};

const QList<Field> fields{
    {"name", [](FullBackup *backup, const QString &text) { backup->name = text; }},
    {"serial", [](FullBackup *backup, const QString &text) { backup->serial = text; }},
    {"systemModel", [](FullBackup *backup, const QString &text) { backup->systemModel = text; }},
    {"net", [](FullBackup *backup, const QString &text) { backup->net = text; }},
    {"domain", [](FullBackup *backup, const QString &text) { backup->domain = text; }},
    {"nameServer", [](FullBackup *backup, const QString &text) { backup->nameServer = text; }},
    {"ntpServer", [](FullBackup *backup, const QString &text) { backup->ntpServer = text; }},
    {"slaves", [](FullBackup *backup, const QString &text) { backup->slaves.append(text); }},
    {"activeConfig", [](FullBackup *backup, const QString &text) { backup->activeConfig = text; }},
};

} // namespace

class TestFullBackupWriter : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder.reset(new QTemporaryDir);
        m_path = m_folder->filePath(QStringLiteral("backup.xml"));
    }

    void writesTheWholeDocument()
    {
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        QVERIFY(backup.writeToFile(m_path));
        QCOMPARE(withSampleDate(written()), SampleBackup::document());
        QCOMPARE(files(), QStringList(QStringLiteral("backup.xml")));
    }

    void writesTheLocalTimeOfWriting()
    {
        const auto now = [] { return QDateTime::currentDateTime().toString(Qt::ISODate).toUtf8(); };
        FullBackup backup(nullptr, nullptr);
        const QByteArray before = now();
        QVERIFY(backup.writeToFile(m_path));
        const QByteArray after = now();
        const QByteArray tag = "<creationDate>";
        const QByteArray date = written().mid(written().indexOf(tag) + tag.size(), before.size());
        QVERIFY2(before <= date && date <= after, date);
    }

    void writesElementsWithoutContentForWhatIsEmpty()
    {
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        backup.slaves.clear();
        backup.domain.clear();
        backup.ctVersion = {-1, 2, 3};
        backup.configData.clear();
        QVERIFY(backup.writeToFile(m_path));
        QVERIFY(written().contains("\t\t<slaves/>\n"));
        QVERIFY(written().contains("\t\t<domain></domain>\n"));
        QVERIFY(written().contains("\t\t<ctVersion></ctVersion>\n"));
        QVERIFY(written().contains("\t\t<configData><![CDATA[]]></configData>\n"));
    }

    void writesAnEmptyRecord()
    {
        const FullBackup backup(nullptr, nullptr);
        QVERIFY(backup.writeToFile(m_path));
        QCOMPARE(BackupSchema::validate(m_path), BackupSchema::Verdict::Backup);
    }

    void escapesWhatXmlRequires()
    {
        FullBackup backup(nullptr, nullptr);
        backup.name = QStringLiteral("<a & \"b\" 'c' ]]>\r");
        backup.serial = QStringLiteral(u"\u00e4");
        QVERIFY(backup.writeToFile(m_path));
        QVERIFY(written().contains(
            "\t\t<name>&lt;a &amp; &quot;b&quot; 'c' ]]&gt;&#13;</name>\n\t\t<serial>\xc3\xa4<"));
    }

    void everyTextIsReadBackAsItWas_data()
    {
        QTest::addColumn<QString>("text");
        const QChar clef[] = {QChar(0xd834), QChar(0xdd1e)};
        QTest::newRow("markup") << QStringLiteral("<a b='c'>&amp;\"]]></a>");
        QTest::newRow("blanks around") << QStringLiteral("  a  b  ");
        QTest::newRow("only a blank") << QStringLiteral(" ");
        QTest::newRow("tab and line feed") << QStringLiteral("a\tb\nc\n");
        QTest::newRow("carriage returns") << QStringLiteral("\ra\r\nb\r");
        QTest::newRow("Latin") << QStringLiteral(u"\u00e4\u00ff\u0160");
        QTest::newRow("control characters above ASCII")
            << QStringLiteral(u"\u007f\u0085\u009f\u2028");
        QTest::newRow("the last of the first plane") << QStringLiteral(u"\ud7ff\ue000\ufffd");
        QTest::newRow("beyond the first plane") << QString(clef, 2);
        QTest::newRow("long") << QString(1 << 20, QLatin1Char('&'));
    }

    void everyTextIsReadBackAsItWas()
    {
        QFETCH(const QString, text);
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        for (const Field &field : fields) {
            field.set(&backup, text);
        }
        QVERIFY(backup.writeToFile(m_path));
        FullBackup readBack(nullptr, nullptr);
        QVERIFY(readBack.readFromFile(m_path));
        QCOMPARE(SampleBackup::describe(readBack), SampleBackup::describe(backup));
    }

    void everyByteOfTheDataIsReadBackAsItWas()
    {
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        QByteArray everyByte;
        for (int value = 0; value < 256; ++value) {
            everyByte += static_cast<char>(value);
        }
        for (int size : {1, 2, 3, 4, 255, 256}) { // every kind of padding
            backup.configData = everyByte.right(size);
            QVERIFY(backup.writeToFile(m_path));
            FullBackup readBack(nullptr, nullptr);
            QVERIFY(readBack.readFromFile(m_path));
            QCOMPARE(readBack.configData, backup.configData);
        }
    }

    void sixteenMebibytesAreReadBackAsTheyWere()
    {
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        while (backup.configData.size() < (16 << 20)) {
            backup.configData += backup.configData;
        }
        QVERIFY(backup.writeToFile(m_path));
        FullBackup readBack(nullptr, nullptr);
        QVERIFY(readBack.readFromFile(m_path));
        QVERIFY(readBack.configData == backup.configData);
    }

    void whatIsWrittenIsValid_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QString();
        QTest::newRow("markup") << QStringLiteral("<a b='c'>&amp;\"]]></a>");
        QTest::newRow("line ends") << QStringLiteral("a\tb\nc\rd");
        QTest::newRow("not ASCII") << QStringLiteral(u"\u00e4\u0160\u2028\ufffd");
    }

    void whatIsWrittenIsValid()
    {
        QFETCH(const QString, text);
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        for (const Field &field : fields) {
            field.set(&backup, text);
        }
        QVERIFY(backup.writeToFile(m_path));
        QCOMPARE(BackupSchema::validate(m_path), BackupSchema::Verdict::Backup);

        const QString schema = SampleBackup::makeFile(m_folder->path(), BackupSchema::embedded());
        QProcess xmllint;
        xmllint.start(QStringLiteral("xmllint"),
                      {QStringLiteral("--noout"), QStringLiteral("--schema"), schema, m_path});
        QVERIFY(xmllint.waitForFinished());
        QVERIFY2(xmllint.exitCode() == 0, xmllint.readAllStandardError());
    }

    void refusesWhatXmlCannotCarry_data()
    {
        QTest::addColumn<QString>("text");
        for (ushort control = 0; control < 0x20; ++control) {
            if (control != '\t' && control != '\n' && control != '\r') {
                QTest::addRow("U+%04X", control) << QString(QChar(control));
            }
        }
        for (const int unit : {0xd800, 0xdbff, 0xdc00, 0xdfff, 0xfffe, 0xffff}) {
            QTest::addRow("U+%04X", unit) << QString(QChar(unit));
        }
        const QChar reversed[] = {QChar(0xdd1e), QChar(0xd834)};
        QTest::newRow("a pair the wrong way round") << QString(reversed, 2);
    }

    void refusesWhatXmlCannotCarry()
    {
        QFETCH(const QString, text);
        for (const Field &field : fields) {
            FullBackup backup(nullptr, nullptr);
            SampleBackup::fill(&backup);
            field.set(&backup, QLatin1String("a") + text + QLatin1String("b"));
            QFile::remove(m_path);
            QVERIFY2(!backup.writeToFile(m_path), field.name);
            QCOMPARE(files(), QStringList());
            makeOlderFile();
            QVERIFY2(!backup.writeToFile(m_path), field.name);
            QCOMPARE(written(), QByteArray(olderContent));
            QCOMPARE(files(), QStringList(QStringLiteral("backup.xml")));
        }
    }

    void refusesHalfACharacterAtTheEnd()
    {
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        backup.name = QLatin1String("a") + QChar(0xd834);
        QVERIFY(!backup.writeToFile(m_path));
        QCOMPARE(files(), QStringList());
    }

    void refusesAPathThatCannotBeOpened_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("no name") << QString();
        QTest::newRow("a folder") << QStringLiteral("folder");
        QTest::newRow("in a folder that is not there") << QStringLiteral("missing/backup.xml");
        QTest::newRow("below a file") << QStringLiteral("file/backup.xml");
        QTest::newRow("a name that is too long") << QString(300, QLatin1Char('a'));
    }

    void refusesAPathThatCannotBeOpened()
    {
        QFETCH(const QString, name);
        QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("folder")));
        QFile file(m_folder->filePath(QStringLiteral("file")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        const FullBackup backup(nullptr, nullptr);
        QVERIFY(!backup.writeToFile(name.isEmpty() ? name : m_folder->filePath(name)));
        QCOMPARE(files(), QStringList({QStringLiteral("file"), QStringLiteral("folder")}));
    }

    void replacesAnOlderFile()
    {
        makeOlderFile();
        const QString other = m_folder->filePath(QStringLiteral("other"));
        QVERIFY(::link(qPrintable(m_path), qPrintable(other)) == 0);
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        QVERIFY(backup.writeToFile(m_path));
        QCOMPARE(withSampleDate(written()), SampleBackup::document());
        QCOMPARE(SampleBackup::contentOf(other), QByteArray(olderContent)); // not written in place
    }

    void replacesTheFileBehindALink()
    {
        makeOlderFile();
        const QString link = m_folder->filePath(QStringLiteral("link.xml"));
        QVERIFY(QFile::link(m_path, link));
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        QVERIFY(backup.writeToFile(link));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(withSampleDate(written()), SampleBackup::document());
    }

    void keepsThePermissionsOfTheFile()
    {
        makeOlderFile();
        const auto readable = QFile::ReadOwner | QFile::WriteOwner;
        QVERIFY(QFile::setPermissions(m_path, readable));
        const FullBackup backup(nullptr, nullptr);
        QVERIFY(backup.writeToFile(m_path));
        QCOMPARE(QFile::permissions(m_path) & (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
    }

    void aFullDiskLeavesNoFile_data()
    {
        QTest::addColumn<int>("dataSize");
        QTest::addColumn<bool>("hasOlderFile");
        QTest::newRow("a small document") << 10 << false;
        QTest::newRow("a large document") << 300000 << false;
        QTest::newRow("a small document in place of an older file") << 10 << true;
        QTest::newRow("a large document in place of an older file") << 300000 << true;
    }

    void aFullDiskLeavesNoFile()
    {
        QFETCH(const int, dataSize);
        QFETCH(const bool, hasOlderFile);
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        backup.configData = QByteArray(dataSize, 'x');
        QVERIFY(backup.writeToFile(m_path));
        const int size = written().size();

        const int steps = 50;
        for (int step = 0; step <= steps; ++step) {
            QFile::remove(m_path);
            if (hasOlderFile) {
                makeOlderFile();
            }
            const int limit = step < steps ? size / steps * step : size - 1;
            bool isWritten = true;
            {
                const FileSizeLimit full(static_cast<rlim_t>(limit));
                isWritten = backup.writeToFile(m_path);
            }
            QVERIFY2(!isWritten, qPrintable(QString::number(limit)));
            QCOMPARE(files(), QStringList());
        }
        bool isWritten = false;
        {
            const FileSizeLimit justEnough(static_cast<rlim_t>(size));
            isWritten = backup.writeToFile(m_path);
        }
        QVERIFY(isWritten);
        QCOMPARE(written().size(), size);
    }

    void aDiskThatFillsWithinATextIsNoticed()
    {
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        backup.name = QString(100000, QLatin1Char('x')); // more than is buffered
        bool isWritten = true;
        {
            const FileSizeLimit full(1000);
            isWritten = backup.writeToFile(m_path);
        }
        QVERIFY(!isWritten);
        QCOMPARE(files(), QStringList());
    }

    void aFullDeviceIsNoticed()
    {
        const QTemporaryDir folder;
        const QString device = ownDevice("/dev/full", folder.path());
        if (device.isEmpty()) {
            QSKIP("no device can be made here");
        }
        const FullBackup backup(nullptr, nullptr);
        QVERIFY(!backup.writeToFile(device));
        QVERIFY(QFileInfo::exists(device));
        QVERIFY(!QFileInfo(device).isFile());
    }

    void aLinkToAFullDeviceDoesNotStay()
    {
        const QTemporaryDir folder;
        const QString device = ownDevice("/dev/full", folder.path());
        if (device.isEmpty()) {
            QSKIP("no device can be made here");
        }
        QVERIFY(QFile::link(device, m_path));
        const FullBackup backup(nullptr, nullptr);
        QVERIFY(!backup.writeToFile(m_path));
        QCOMPARE(files(), QStringList());
        QVERIFY(QFileInfo::exists(device));
    }

    void aDeviceStaysOne()
    {
        const QTemporaryDir folder;
        const QString device = ownDevice("/dev/null", folder.path());
        if (device.isEmpty()) {
            QSKIP("no device can be made here");
        }
        const FullBackup backup(nullptr, nullptr);
        QVERIFY(backup.writeToFile(device));
        QVERIFY(!QFileInfo(device).isFile());
        QVERIFY(QFileInfo::exists(device));
    }

    void writesInPlaceWhereTheFolderIsClosed()
    {
        makeOlderFile();
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        bool isWritten = false;
        {
            const ClosedFolder closed(m_folder->path(), m_path);
            isWritten = backup.writeToFile(m_path);
        }
        QVERIFY(isWritten);
        QCOMPARE(withSampleDate(written()), SampleBackup::document());
    }

    // A name beside it would have six letters more than a name may have.
    void writesInPlaceWhereNothingCanStandBesideIt()
    {
        const QString path = m_folder->filePath(QString(251, QLatin1Char('x')) + ".xml");
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        for (int times = 0; times < 2; ++times) {
            QVERIFY(backup.writeToFile(path));
            FullBackup copy(nullptr, nullptr);
            QVERIFY(copy.readFromFile(path));
            QCOMPARE(SampleBackup::describe(copy), SampleBackup::describe(backup));
        }
        const FileSizeLimit full(500);
        QVERIFY(!backup.writeToFile(path));
        QVERIFY(!QFile::exists(path));
    }

    void leavesNothingOfADocumentThatCannotBeRemoved()
    {
        makeOlderFile();
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        bool isWritten = true;
        {
            const ClosedFolder closed(m_folder->path(), m_path);
            const FileSizeLimit full(500);
            isWritten = backup.writeToFile(m_path);
        }
        QVERIFY(!isWritten);
        QCOMPARE(written(), QByteArray());
    }

    void beingKilledLeavesTheOlderFile()
    {
        makeOlderFile();
        QCOMPARE(killedAfterWriting(500), SIGXFSZ);
        QCOMPARE(written(), QByteArray(olderContent));
    }

    void beingKilledLeavesNoFileWhereThereWasNone()
    {
        QCOMPARE(killedAfterWriting(500), SIGXFSZ);
        QVERIFY(!QFileInfo::exists(m_path));
    }

private:
    QStringList files() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    QByteArray written() const { return SampleBackup::contentOf(m_path); }

    void makeOlderFile() const
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(olderContent);
    }

    // The signal that killed a process of its own which was to write this many bytes at most.
    int killedAfterWriting(rlim_t bytes) const
    {
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        const pid_t child = fork();
        if (child == 0) {
            const FileSizeLimit limit(bytes);
            std::signal(SIGXFSZ, SIG_DFL);
            const bool isWritten = backup.writeToFile(m_path);
            _exit(isWritten ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

    QScopedPointer<QTemporaryDir> m_folder;
    QString m_path;
};

VELTRA4_TEST(TestFullBackupWriter)
#include "tst_fullbackupwriter.moc"

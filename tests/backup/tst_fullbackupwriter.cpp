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
#include <QTest>

#include <csignal>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr char olderContent[] = "an older file";
const QString markup = QStringLiteral("<a b='c'>&amp;\"]]></a>");

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

// Every text of the record.
QList<QString *> textsOf(FullBackup *backup)
{
    return {&backup->name,      &backup->serial,        &backup->systemModel,
            &backup->net,       &backup->domain,        &backup->nameServer,
            &backup->ntpServer, &backup->slaves.last(), &backup->activeConfig};
}

} // namespace

class TestFullBackupWriter : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_backup.reset(new SampleBackup::Filled);
        m_folder.reset(new QTemporaryDir);
        m_path = m_folder->filePath("backup.xml");
    }

    void writesTheWholeDocument()
    {
        QVERIFY(isWritten());
        QCOMPARE(withSampleDate(written()), SampleBackup::document());
        QCOMPARE(files(), QStringList("backup.xml"));
    }

    void writesTheLocalTimeOfWriting()
    {
        const auto now = [] { return QDateTime::currentDateTime().toString(Qt::ISODate).toUtf8(); };
        const QByteArray before = now();
        QVERIFY(isWritten());
        const QByteArray after = now();
        const QByteArray tag = "<creationDate>";
        const QByteArray date = written().mid(written().indexOf(tag) + tag.size(), before.size());
        QVERIFY2(before <= date && date <= after, date);
    }

    void writesElementsWithoutContentForWhatIsEmpty()
    {
        m_backup->slaves.clear();
        m_backup->domain.clear();
        m_backup->ctVersion = {-1, 2, 3};
        m_backup->configData.clear();
        QVERIFY(isWritten());
        for (const char *line :
             {"\t\t<slaves/>\n", "\t\t<domain></domain>\n", "\t\t<ctVersion></ctVersion>\n",
              "\t\t<configData><![CDATA[]]></configData>\n"}) {
            QVERIFY2(written().contains(line), line);
        }
    }

    void escapesWhatXmlRequires()
    {
        m_backup->name = "<a & \"b\" 'c' ]]>\r";
        m_backup->serial = QStringLiteral(u"\u00e4");
        QVERIFY(isWritten());
        QVERIFY(written().contains(
            "\t\t<name>&lt;a &amp; &quot;b&quot; 'c' ]]&gt;&#13;</name>\n\t\t<serial>\xc3\xa4<"));
    }

    void everyTextIsReadBackAsItWas_data()
    {
        QTest::addColumn<QString>("text");
        const QChar clef[] = {QChar(0xd834), QChar(0xdd1e)};
        QTest::newRow("markup") << markup;
        QTest::newRow("blanks around") << "  a  b  ";
        QTest::newRow("only a blank") << " ";
        QTest::newRow("tab and line feed") << "a\tb\nc\n";
        QTest::newRow("carriage returns") << "\ra\r\nb\r";
        QTest::newRow("control characters above ASCII")
            << QStringLiteral(u"\u007f\u0085\u009f\u2028");
        QTest::newRow("the last of the first plane") << QStringLiteral(u"\ud7ff\ue000\ufffd");
        QTest::newRow("beyond the first plane") << QString(clef, 2);
        QTest::newRow("long") << QString(1 << 15, '&');
    }

    void everyTextIsReadBackAsItWas()
    {
        QFETCH(const QString, text);
        for (QString *const field : textsOf(m_backup.data())) {
            *field = text;
        }
        QVERIFY(isWritten());
        FullBackup readBack(nullptr, nullptr);
        QVERIFY(readBack.readFromFile(m_path));
        QCOMPARE(SampleBackup::describe(readBack), SampleBackup::describe(*m_backup));
    }

    void everyByteOfTheDataIsReadBackAsItWas()
    {
        QByteArray everyByte;
        for (int value = 0; value < 256; ++value) {
            everyByte += static_cast<char>(value);
        }
        for (int size : {1, 2, 3, 4, 255, 256, 16 << 20}) { // every kind of padding
            m_backup->configData = everyByte.repeated(1 + size / 256).right(size);
            QVERIFY(isWritten());
            FullBackup readBack(nullptr, nullptr);
            QVERIFY(readBack.readFromFile(m_path));
            QVERIFY(readBack.configData == m_backup->configData);
        }
    }

    void whatIsWrittenIsValid()
    {
        const QString schema = SampleBackup::makeFile(m_folder->path(), BackupSchema::embedded());
        const QString lineEnds = QStringLiteral("a\tb\nc\rd");
        const QString notAscii = QStringLiteral(u"\u00e4\u0160\u2028\ufffd");
        for (const QString &text : {QString(), markup + lineEnds + notAscii}) {
            for (QString *const field : textsOf(m_backup.data())) {
                *field = text;
            }
            QVERIFY(isWritten());
            QCOMPARE(BackupSchema::validate(m_path), BackupSchema::Verdict::Backup);
            QProcess xmllint;
            xmllint.start("xmllint", {"--noout", "--schema", schema, m_path});
            QVERIFY(xmllint.waitForFinished());
            QVERIFY2(xmllint.exitCode() == 0, xmllint.readAllStandardError());
        }
        QVERIFY(FullBackup(nullptr, nullptr).writeToFile(m_path));
        QCOMPARE(BackupSchema::validate(m_path), BackupSchema::Verdict::Backup);
    }

    void refusesWhatXmlCannotCarry()
    {
        const QChar reversed[] = {QChar(0xdd1e), QChar(0xd834)};
        QStringList refused{QString(reversed, 2)};
        for (const int unit : {0x0b, 0x0c, 0xd800, 0xdbff, 0xdc00, 0xdfff, 0xfffe, 0xffff}) {
            refused << QString(QChar(unit));
        }
        for (ushort unit = 0; unit < 0x20; unit = ushort(unit == 0x08 ? 0x0e : unit + 1)) {
            refused << QString(QChar(unit));
        }
        makeOlderFile();
        for (const QString &text : qAsConst(refused)) {
            for (const char *after : {"b", ""}) {
                m_backup->name = 'a' + text + after;
                const bool isRefused = !isWritten() && written() == olderContent;
                QVERIFY2(isRefused, QByteArray::number(text.at(0).unicode(), 16));
            }
        }
    }

    void refusesItInEveryTextAndLeavesEverythingAsItWas()
    {
        for (int i = 0; i < textsOf(m_backup.data()).size(); ++i) {
            m_backup.reset(new SampleBackup::Filled);
            *textsOf(m_backup.data()).at(i) = QString(QChar(1));
            QFile::remove(m_path);
            QVERIFY2(!isWritten(), QByteArray::number(i));
            QCOMPARE(files(), QStringList());
            makeOlderFile();
            QVERIFY(!isWritten());
            QCOMPARE(written(), QByteArray(olderContent));
            QCOMPARE(files(), QStringList("backup.xml"));
        }
    }

    void refusesAPathThatCannotBeOpened()
    {
        QVERIFY(!m_backup->writeToFile(QString()));
        QVERIFY(QDir(m_folder->path()).mkdir("folder"));
        for (const QString &name :
             {QString("folder"), QString("missing/backup.xml"), QString(300, 'a')}) {
            QVERIFY2(!m_backup->writeToFile(m_folder->filePath(name)), qPrintable(name));
        }
        QCOMPARE(files(), QStringList("folder"));
    }

    void replacesAnOlderFile()
    {
        makeOlderFile();
        const QString other = m_folder->filePath("other");
        QVERIFY(::link(qPrintable(m_path), qPrintable(other)) == 0);
        QVERIFY(isWritten());
        QCOMPARE(withSampleDate(written()), SampleBackup::document());
        QCOMPARE(SampleBackup::contentOf(other), QByteArray(olderContent)); // not written in place
    }

    void replacesTheFileBehindALink()
    {
        makeOlderFile();
        const QString link = m_folder->filePath("link.xml");
        QVERIFY(QFile::link(m_path, link));
        QVERIFY(m_backup->writeToFile(link));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(withSampleDate(written()), SampleBackup::document());
    }

    void keepsThePermissionsOfTheFile()
    {
        makeOlderFile();
        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner));
        QVERIFY(isWritten());
        QCOMPARE(QFile::permissions(m_path) & (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
    }

    void aFullDiskLeavesNoFile_data()
    {
        QTest::addColumn<int>("dataSize");
        QTest::addColumn<bool>("hasOlderFile");
        QTest::newRow("a small document") << 10 << false;
        QTest::newRow("a large document") << 300000 << false;
        QTest::newRow("a large document in place of an older file") << 300000 << true;
    }

    void aFullDiskLeavesNoFile()
    {
        QFETCH(const int, dataSize);
        QFETCH(const bool, hasOlderFile);
        m_backup->configData = QByteArray(dataSize, 'x');
        QVERIFY(isWritten());
        const int size = written().size();

        const int steps = 20;
        for (int step = 0; step <= steps; ++step) {
            QFile::remove(m_path);
            if (hasOlderFile) {
                makeOlderFile();
            }
            const int limit = step < steps ? size / steps * step : size - 1;
            QVERIFY2(!isWrittenWithin(limit), QByteArray::number(limit));
            QCOMPARE(files(), QStringList());
        }
        QVERIFY(isWrittenWithin(size));
        QCOMPARE(written().size(), size);
    }

    void aDiskThatFillsWithinATextIsNoticed()
    {
        m_backup->name = QString(100000, 'x'); // more than is buffered
        QVERIFY(!isWrittenWithin(1000));
        QCOMPARE(files(), QStringList());
    }

    void aFullDeviceIsNoticedAndALinkToItDoesNotStay()
    {
        const QTemporaryDir folder;
        const QString device = ownDevice("/dev/full", folder.path());
        if (device.isEmpty()) {
            QSKIP("no device can be made here");
        }
        QVERIFY(!m_backup->writeToFile(device));
        QVERIFY(QFile::link(device, m_path));
        QVERIFY(!isWritten());
        QCOMPARE(files(), QStringList());
        QVERIFY(QFileInfo::exists(device));
        QVERIFY(!QFileInfo(device).isFile());
    }

    void aDeviceStaysOne()
    {
        const QTemporaryDir folder;
        const QString device = ownDevice("/dev/null", folder.path());
        if (device.isEmpty()) {
            QSKIP("no device can be made here");
        }
        QVERIFY(m_backup->writeToFile(device));
        QVERIFY(QFileInfo::exists(device));
        QVERIFY(!QFileInfo(device).isFile());
    }

    void writesInPlaceWhereTheFolderIsClosed()
    {
        makeOlderFile();
        QVERIFY(isWrittenInClosedFolder(RLIM_INFINITY));
        QCOMPARE(withSampleDate(written()), SampleBackup::document());
    }

    void leavesNothingOfADocumentThatCannotBeRemoved()
    {
        makeOlderFile();
        QVERIFY(!isWrittenInClosedFolder(500));
        QCOMPARE(written(), QByteArray());
        QCOMPARE(files(), QStringList("backup.xml"));
    }

    // A name beside it would have six letters more than a name may have.
    void writesInPlaceWhereNothingCanStandBesideIt()
    {
        m_path = m_folder->filePath(QString(251, 'x') + ".xml");
        for (int times = 0; times < 2; ++times) {
            QVERIFY(isWritten());
            QCOMPARE(withSampleDate(written()), SampleBackup::document());
        }
        QVERIFY(!isWrittenWithin(500));
        QCOMPARE(files(), QStringList());
    }

    void beingKilledLeavesWhatWasThere()
    {
        QCOMPARE(killedAfterWriting(500), SIGXFSZ);
        QVERIFY(!QFileInfo::exists(m_path));
        makeOlderFile();
        QCOMPARE(killedAfterWriting(500), SIGXFSZ);
        QCOMPARE(written(), QByteArray(olderContent));
    }

private:
    bool isWritten() const { return m_backup->writeToFile(m_path); }

    bool isWrittenWithin(rlim_t bytes) const
    {
        const FileSizeLimit full(bytes);
        return isWritten();
    }

    bool isWrittenInClosedFolder(rlim_t bytes) const
    {
        const ClosedFolder closed(m_folder->path(), m_path);
        return isWrittenWithin(bytes);
    }

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
        const pid_t child = fork();
        if (child == 0) {
            const FileSizeLimit limit(bytes);
            std::signal(SIGXFSZ, SIG_DFL);
            _exit(isWritten() ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

    QScopedPointer<SampleBackup::Filled> m_backup;
    QScopedPointer<QTemporaryDir> m_folder;
    QString m_path;
};

VELTRA4_TEST(TestFullBackupWriter)
#include "tst_fullbackupwriter.moc"

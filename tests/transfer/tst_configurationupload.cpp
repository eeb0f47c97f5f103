#include "channel/controller.h"
#include "channel/transferencoding.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/configurationupload.h"

#include <QTemporaryDir>
#include <QtTest>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using TransferTesting::writeFile;

namespace {

QByteArray someBytes(int size)
{
    QByteArray bytes;
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(i * 7);
    }
    return bytes;
}

/// What uploading @p bytes sends, written down straight from the protocol.
QStringList commandsFor(const QByteArray &bytes)
{
    QStringList commands;
    const int count = (bytes.size() + 99) / 100;
    for (int k = 1; k <= count; ++k) {
        commands << QStringLiteral("sendCommand system upload %1 %2 %3")
                        .arg(count)
                        .arg(k)
                        .arg(QString::fromLatin1(
                            TransferEncoding::encode(bytes.mid(100 * (k - 1), 100))));
    }
    return commands;
}

/// Takes everything and remembers nothing.
class SinkChannel final : public LineChannel
{
public:
    int setTimeout(int /*channel*/, int /*milliseconds*/, int /*flag*/) override { return 0; }
    int postMessage(const char * /*category*/, const char * /*source*/, int /*level*/,
                    const char * /*text*/) override
    {
        return 0;
    }
    int addMessageReceiver(const char * /*name*/, MessageReceiver * /*receiver*/) override
    {
        return 0;
    }
    int removeMessageReceiver(const char * /*name*/, MessageReceiver * /*receiver*/) override
    {
        return 0;
    }
    int commandCount() const { return m_commandCount; }

private:
    int transact(Operation /*operation*/, const QByteArray & /*command*/,
                 QByteArray * /*answer*/) override
    {
        ++m_commandCount;
        return 0;
    }

    int m_commandCount = 0;
};

qint64 peakMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024;
}

} // namespace

class TestConfigurationUpload : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void sendsTheFileInChunksOf100Bytes_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {1, 2, 99, 100, 101, 199, 200, 201, 250, 100000}) {
            QTest::addRow("%d bytes", size) << size;
        }
    }

    void sendsTheFileInChunksOf100Bytes()
    {
        QFETCH(const int, size);
        const QByteArray bytes = someBytes(size);
        ScriptedChannel channel;
        QCOMPARE(uploadConfigurationFile(Controller(&channel), fileWith(bytes)), 0);
        QCOMPARE(channel.trace(), commandsFor(bytes));
    }

    void twoHundredFiftyBytesGiveTextsOf134And134And67Characters()
    {
        ScriptedChannel channel;
        uploadConfigurationFile(Controller(&channel), fileWith(someBytes(250)));
        const QStringList trace = channel.trace();
        QCOMPARE(trace.size(), 3);
        const QList<int> lengths{134, 134, 67};
        for (int i = 0; i < 3; ++i) {
            const QString start = QStringLiteral("sendCommand system upload 3 %1 ").arg(i + 1);
            QVERIFY2(trace.at(i).startsWith(start), qPrintable(trace.at(i)));
            QCOMPARE(trace.at(i).size() - start.size(), lengths.at(i));
        }
    }

    void oneByteGivesTwoCharacters_data()
    {
        QTest::addColumn<QByteArray>("byte");
        QTest::addColumn<QString>("text");
        QTest::newRow("01") << QByteArray("\x01") << "BA";
        QTest::newRow("ff") << QByteArray("\xff") << "/D";
        QTest::newRow("00") << QByteArray(1, '\0') << "AA";
    }

    void oneByteGivesTwoCharacters()
    {
        QFETCH(const QByteArray, byte);
        QFETCH(const QString, text);
        ScriptedChannel channel;
        uploadConfigurationFile(Controller(&channel), fileWith(byte));
        QCOMPARE(channel.trace(), QStringList("sendCommand system upload 1 1 " + text));
    }

    void anEmptyFileFailsWithoutAWord()
    {
        ScriptedChannel channel;
        QCOMPARE(uploadConfigurationFile(Controller(&channel), fileWith({})), -1);
        QCOMPARE(channel.trace(), QStringList());
    }

    void whatCannotBeOpenedIsReported_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing") << m_folder.filePath("missing.dat");
        QTest::newRow("folder") << m_folder.path();
        QTest::newRow("device") << "/dev/zero";
        QTest::newRow("no name") << "";
    }

    void whatCannotBeOpenedIsReported()
    {
        QFETCH(const QString, path);
        ScriptedChannel channel;
        QCOMPARE(uploadConfigurationFile(Controller(&channel), path), -2);
        QCOMPARE(channel.trace(),
                 QStringList(ScriptedChannel::reported("file cannot be opened for reading")));
    }

    void aFileWithoutPermissionIsReported()
    {
        if (geteuid() == 0) {
            QSKIP("root may read everything");
        }
        const QString path = fileWith("data");
        QVERIFY(QFile::setPermissions(path, {}));
        ScriptedChannel channel;
        QCOMPARE(uploadConfigurationFile(Controller(&channel), path), -2);
        QCOMPARE(channel.trace(),
                 QStringList(ScriptedChannel::reported("file cannot be opened for reading")));
        QVERIFY(QFile::remove(path));
    }

    void aPipeIsNotWaitedFor()
    {
        const QString path = m_folder.filePath("pipe.dat");
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        ScriptedChannel channel;
        QCOMPARE(uploadConfigurationFile(Controller(&channel), path), -2);
        QCOMPARE(channel.trace(),
                 QStringList(ScriptedChannel::reported("file cannot be opened for reading")));
    }

    void aFileThatShrinksOnTheWayIsReported()
    {
        const QByteArray bytes = someBytes(1000000);
        const QString path = fileWith(bytes);
        ScriptedChannel channel;
        channel.whenSent(commandsFor(bytes).at(1).mid(12).toLatin1(),
                         [path] { QVERIFY(QFile::resize(path, 150)); });
        QCOMPARE(uploadConfigurationFile(Controller(&channel), path), -1);
        // How far it got depends on how much was read ahead.
        QVERIFY(channel.commandCount() < 1000);
        QCOMPARE(channel.trace().last(), ScriptedChannel::reported("unable to read data: 0"));
    }

    void ofAFileThatGrowsOnTheWayOnlyTheOldSizeIsSent()
    {
        const QByteArray bytes = someBytes(250);
        const QString path = fileWith(bytes);
        ScriptedChannel channel;
        channel.whenSent(commandsFor(bytes).at(0).mid(12).toLatin1(), [path] {
            QFile file(path);
            QVERIFY(file.open(QIODevice::Append));
            file.write(QByteArray(1000, 'x'));
        });
        QCOMPARE(uploadConfigurationFile(Controller(&channel), path), 0);
        QCOMPARE(channel.commandCount(), 3);
    }

    void refusedChunksDoNotEndTheUpload_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<bool>("lasting");
        for (int first = 1; first <= 3; ++first) {
            QTest::addRow("chunk %d", first) << first << false;
            QTest::addRow("from chunk %d on", first) << first << true;
        }
    }

    void refusedChunksDoNotEndTheUpload()
    {
        QFETCH(const int, first);
        QFETCH(const bool, lasting);
        const QByteArray bytes = someBytes(250);
        ScriptedChannel channel;
        channel.failNth(first, lasting);
        QCOMPARE(uploadConfigurationFile(Controller(&channel), fileWith(bytes)), 0);
        QCOMPARE(channel.trace(), commandsFor(bytes));
    }

    void aFileOfMoreChunksThanCanBeNumberedIsUnreadable()
    {
        const QString path = m_folder.filePath("endless.dat");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        if (!file.resize(qint64(100) * 2147483647)) {
            QSKIP("no holes in files here");
        }
        ScriptedChannel channel;
        QCOMPARE(uploadConfigurationFile(Controller(&channel), path), -2);
        QCOMPARE(channel.commandCount(), 0);
        QVERIFY(file.remove());
    }

    void memoryDoesNotGrowWithTheFile()
    {
#ifdef __SANITIZE_ADDRESS__
        QSKIP("the sanitizer keeps what was freed");
#endif
        constexpr qint64 size = 64 << 20;
        const QString path = m_folder.filePath("large.dat");
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
        QVERIFY(QFile::resize(path, size));
        SinkChannel channel;
        const qint64 before = peakMemory();
        QCOMPARE(uploadConfigurationFile(Controller(&channel), path), 0);
        QCOMPARE(qint64(channel.commandCount()), (size + 99) / 100);
        QVERIFY(peakMemory() - before < 8 << 20);
    }

private:
    QString fileWith(const QByteArray &contents) const
    {
        return writeFile(m_folder.filePath("some.dat"), contents);
    }

    QTemporaryDir m_folder;
};

VELTRA4_TEST(TestConfigurationUpload)
#include "tst_configurationupload.moc"

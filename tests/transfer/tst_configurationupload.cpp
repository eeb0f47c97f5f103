#include "channel/controller.h"
#include "channel/transferencoding.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/configurationupload.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

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

/// The command for the chunk number @p k of @p bytes, as the channel has it sent.
QByteArray chunkOf(const QByteArray &bytes, int k)
{
    return commandsFor(bytes).at(k - 1).mid(12).toLatin1();
}

} // namespace

class TestConfigurationUpload : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }
    void init() { m_channel = std::make_unique<ScriptedChannel>(); }

    void sendsTheFileInChunksOf100Bytes()
    {
        for (const int size : {1, 2, 99, 100, 101, 199, 200, 201, 250, 100000}) {
            const QByteArray bytes = someBytes(size);
            QCOMPARE(upload(fileWith(bytes)), 0);
            QCOMPARE(m_channel->takeTrace(), commandsFor(bytes));
        }
    }

    void anEmptyFileFailsWithoutAWord()
    {
        QCOMPARE(upload(fileWith({})), -1);
        QCOMPARE(m_channel->trace(), QStringList());
    }

    void whatCannotBeOpenedIsReported()
    {
        const QString pipe = m_folder.filePath("pipe.dat"); // which is not waited for
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        for (const QString &path :
             {m_folder.filePath("missing.dat"), m_folder.path(), QString("/dev/zero"), pipe}) {
            expectUnreadable(path);
        }
    }

    void aFileWithoutPermissionIsReported()
    {
        if (geteuid() == 0) {
            QSKIP("root may read everything");
        }
        const QString path = fileWith("data");
        QVERIFY(QFile::setPermissions(path, {}));
        expectUnreadable(path);
        QVERIFY(QFile::remove(path));
    }

    void aFileOfMoreChunksThanCanBeNumberedIsReported()
    {
        const QString path = m_folder.filePath("endless.dat");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        if (!file.resize(qint64(100) * 2147483647)) {
            QSKIP("no holes in files here");
        }
        expectUnreadable(path);
        QVERIFY(file.remove());
    }

    // Nor is it read into memory as a whole.
    void aFileThatShrinksOnTheWayIsReported()
    {
        const QByteArray bytes = someBytes(1000000);
        const QString path = fileWith(bytes);
        m_channel->whenSent(chunkOf(bytes, 2), [path] { QVERIFY(QFile::resize(path, 150)); });
        QCOMPARE(upload(path), -1);
        // How far it got depends on how much was read ahead.
        QVERIFY(m_channel->commandCount() < 1000);
        QCOMPARE(m_channel->trace().last(), ScriptedChannel::reported("unable to read data: 0"));
    }

    void ofAFileThatGrowsOnTheWayOnlyTheOldSizeIsSent()
    {
        const QByteArray bytes = someBytes(250);
        const QString path = fileWith(bytes);
        m_channel->whenSent(chunkOf(bytes, 1), [path] {
            QFile file(path);
            QVERIFY(file.open(QIODevice::Append));
            file.write(QByteArray(1000, 'x'));
        });
        QCOMPARE(upload(path), 0);
        QCOMPARE(m_channel->commandCount(), 3);
    }

    void refusedChunksDoNotEndTheUpload()
    {
        const QByteArray bytes = someBytes(250);
        m_channel->failNth(1, true);
        QCOMPARE(upload(fileWith(bytes)), 0);
        QCOMPARE(m_channel->trace(), commandsFor(bytes));
    }

private:
    QString fileWith(const QByteArray &contents) const
    {
        return writeFile(m_folder.filePath("some.dat"), contents);
    }

    int upload(const QString &path) const
    {
        return uploadConfigurationFile(Controller(m_channel.get()), path);
    }

    void expectUnreadable(const QString &path) const
    {
        QVERIFY2(upload(path) == -2, qPrintable(path));
        QCOMPARE(m_channel->takeTrace(),
                 QStringList(ScriptedChannel::reported("file cannot be opened for reading")));
    }

    QTemporaryDir m_folder;
    std::unique_ptr<ScriptedChannel> m_channel;
};

VELTRA4_TEST(TestConfigurationUpload)
#include "tst_configurationupload.moc"

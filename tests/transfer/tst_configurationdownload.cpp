#include "channel/controller.h"
#include "channel/transferencoding.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/configurationdownload.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>
#include <memory>

using namespace TransferTesting;

class TestConfigurationDownload : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_channel = std::make_unique<ScriptedChannel>();
    }

    void cleanup()
    {
        m_channel.reset();
        m_folder.reset();
    }

    void writesTheDecodedChunksInOrder()
    {
        answerChunks({"first", QByteArray("\0\xff\n", 3), "third"});
        QCOMPARE(download(inFolder("a.dat")), 0);
        QCOMPARE(m_channel->trace(),
                 QStringList({"queryString system download 1", "queryString system download 2",
                              "queryString system download 3"}));
        QCOMPARE(contentsOf(inFolder("a.dat")), QByteArray("first\0\xff\nthird", 13));
    }

    void aLargeFileArrivesByteForByte()
    {
        QByteArray archive;
        for (int i = 0; archive.size() < 300 * 1000 + 37; ++i) {
            archive += static_cast<char>(i * 7 + i / 256);
        }
        QList<QByteArray> chunks;
        for (int at = 0; at < archive.size(); at += TransferEncoding::chunkSize) {
            chunks << archive.mid(at, TransferEncoding::chunkSize);
        }
        answerChunks(chunks);
        QCOMPARE(download(inFolder("a.dat")), 0);
        QCOMPARE(contentsOf(inFolder("a.dat")), archive);
    }

    void theFirstNumberThatIsNotZeroCounts_data()
    {
        QTest::addColumn<QList<QByteArray>>("answers");
        QTest::addColumn<QByteArray>("contents");
        using Answers = QList<QByteArray>;
        QTest::newRow("one chunk") << Answers({"1 'BA'"}) << QByteArray("\x01");
        QTest::newRow("zero ends after one chunk")
            << Answers({"0 'BA'", "2 'BB'"}) << QByteArray("\x01");
        QTest::newRow("so does a negative number")
            << Answers({"-3 'BA'", "2 'BB'"}) << QByteArray("\x01");
        QTest::newRow("later numbers are ignored")
            << Answers({"3 'BA'", "1 'BB'", "99 'AB'"}) << QByteArray("\x01\x41\x40");
        QTest::newRow("a later zero is ignored")
            << Answers({"2 'BA'", "0 'BB'"}) << QByteArray("\x01\x41");
    }

    void theFirstNumberThatIsNotZeroCounts()
    {
        QFETCH(const QList<QByteArray>, answers);
        QFETCH(const QByteArray, contents);
        for (int i = 0; i < answers.size(); ++i) {
            m_channel->answer("system download " + QByteArray::number(i + 1), answers.at(i));
        }
        QCOMPARE(download(inFolder("a.dat")), 0);
        QCOMPARE(m_channel->commandCount(), contents.size());
        QCOMPARE(contentsOf(inFolder("a.dat")), contents);
    }

    void anEmptyChunkIsAccepted()
    {
        m_channel->answer("system download 1", "1 ''");
        QCOMPARE(download(inFolder("a.dat")), 0);
        QCOMPARE(contentsOf(inFolder("a.dat")), QByteArray());
    }

    void anExistingFileIsLeftAlone()
    {
        writeFile(inFolder("a.dat"), "precious");
        answerChunks({"first"});
        QCOMPARE(download(inFolder("a.dat")), -2);
        QCOMPARE(m_channel->trace(), QStringList(ScriptedChannel::reported("file already exists")));
        QCOMPARE(contentsOf(inFolder("a.dat")), QByteArray("precious"));
    }

    void anExistingFolderIsLeftAlone()
    {
        QVERIFY(QDir(m_folder->path()).mkdir("a.dat"));
        QCOMPARE(download(inFolder("a.dat")), -2);
        QCOMPARE(m_channel->trace(), QStringList(ScriptedChannel::reported("file already exists")));
    }

    void aFailingQueryEndsTheDownloadSilently_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<QByteArray>("contents");
        QTest::newRow("first") << 1 << QByteArray("(no file)");
        QTest::newRow("second") << 2 << QByteArray("one ");
        QTest::newRow("last") << 3 << QByteArray("one two ");
    }

    void aFailingQueryEndsTheDownloadSilently()
    {
        QFETCH(const int, number);
        QFETCH(const QByteArray, contents);
        answerChunks({"one ", "two ", "three"});
        m_channel->fail("system download " + QByteArray::number(number));
        QCOMPARE(download(inFolder("a.dat")), -1);
        QCOMPARE(m_channel->trace().size(), number);
        QCOMPARE(contentsOf(inFolder("a.dat")), contents);
    }

    void anAnswerOfAnotherFormIsReported_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("no number") << QByteArray("'BA'");
        QTest::newRow("a word") << QByteArray("end 'BA'");
        QTest::newRow("no quotes") << QByteArray("2 BA");
        QTest::newRow("double quotes") << QByteArray("2 \"BA\"");
        QTest::newRow("only a number") << QByteArray("2");
        QTest::newRow("Latin-1") << QByteArray("\xfc"
                                               "berall");
        QTest::newRow("as long as can be") << QByteArray(199, 'x');
    }

    void anAnswerOfAnotherFormIsReported()
    {
        QFETCH(const QByteArray, answer);
        answerChunks({"one", "two", "three"});
        m_channel->answer("system download 2", answer);
        QCOMPARE(download(inFolder("a.dat")), -1);
        QCOMPARE(m_channel->trace(),
                 QStringList({"queryString system download 1", "queryString system download 2",
                              ScriptedChannel::reported("invalid return: "
                                                        + QString::fromLatin1(answer))}));
        QCOMPARE(contentsOf(inFolder("a.dat")), QByteArray("one"));
    }

    void aTextThatCannotBeDecodedIsReported_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("padding") << QByteArray("AQ==");
        QTest::newRow("a blank") << QByteArray("AA AA");
        QTest::newRow("a dash") << QByteArray("AA-A");
        QTest::newRow("Latin-1") << QByteArray("AA\xe4"
                                               "A");
        QTest::newRow("a per cent sign") << QByteArray("%1%s");
    }

    void aTextThatCannotBeDecodedIsReported()
    {
        QFETCH(const QByteArray, text);
        m_channel->answer("system download 1", "1 '" + text + '\'');
        QCOMPARE(download(inFolder("a.dat")), -1);
        QCOMPARE(m_channel->trace(),
                 QStringList({"queryString system download 1",
                              ScriptedChannel::reported("unable to parse '"
                                                        + QString::fromLatin1(text) + '\'')}));
        QCOMPARE(names(), QStringList());
    }

    void aFileThatCannotBeOpenedIsReported()
    {
        answerChunks({"one", "two"});
        const QString fileName = inFolder("missing/a.dat");
        QCOMPARE(download(fileName), -1);
        QCOMPARE(
            m_channel->trace(),
            QStringList({"queryString system download 1",
                         ScriptedChannel::reported("unable to open file '" + fileName + '\'')}));
    }

    void aFolderThatVanishesMeanwhileIsReported()
    {
        answerChunks({"one", "two"});
        QVERIFY(QDir(m_folder->path()).mkdir("disk"));
        const QString fileName = inFolder("disk/a.dat");
        m_channel->whenSent("system download 2",
                            [this] { QDir(inFolder("disk")).removeRecursively(); });
        QCOMPARE(download(fileName), -1);
        QCOMPARE(
            m_channel->trace(),
            QStringList({"queryString system download 1", "queryString system download 2",
                         ScriptedChannel::reported("unable to open file '" + fileName + '\'')}));
    }

    void aFullDiskShowsAtOnce_data()
    {
        QTest::addColumn<int>("limit");
        QTest::addColumn<int>("failingChunk");
        QTest::newRow("full from the beginning") << 0 << 1;
        QTest::newRow("full within the first chunk") << 7 << 1;
        QTest::newRow("full after the first chunk") << 10 << 2;
        QTest::newRow("full within the last chunk") << 25 << 3;
    }

    void aFullDiskShowsAtOnce()
    {
        QFETCH(const int, limit);
        QFETCH(const int, failingChunk);
        answerChunks({"0123456789", "0123456789", "0123456789"});
        {
            const FileSizeLimit full(static_cast<rlim_t>(limit));
            QCOMPARE(download(inFolder("a.dat")), -1);
        }
        QStringList expected;
        for (int number = 1; number <= failingChunk; ++number) {
            expected << QStringLiteral("queryString system download %1").arg(number);
        }
        expected << ScriptedChannel::reported("unable to write data");
        QCOMPARE(m_channel->trace(), expected);
        QCOMPARE(contentsOf(inFolder("a.dat")),
                 QByteArray("012345678901234567890123456789").left(limit));
    }

    void theNameIsLatin1OnTheDisk()
    {
        answerChunks({"one"});
        QCOMPARE(download(inFolder(QStringLiteral("Pr\u00fcfung.dat"))), 0);
        const QByteArray nameOnDisk = m_folder->path().toLatin1() + "/Pr\xfc" + "fung.dat";
        QCOMPARE(std::remove(nameOnDisk.constData()), 0);
    }

    void aNameOutsideLatin1IsWrittenWithQuestionMarks()
    {
        answerChunks({"one"});
        QCOMPARE(download(inFolder(QStringLiteral("\u6e2c\u5b9a.dat"))), 0);
        QCOMPARE(names(), QStringList("??.dat"));
    }

private:
    QString inFolder(const QString &name) const { return m_folder->filePath(name); }

    int download(const QString &fileName)
    {
        return downloadConfigurationFile(Controller(m_channel.get()), fileName);
    }

    void answerChunks(const QList<QByteArray> &chunks)
    {
        for (int i = 0; i < chunks.size(); ++i) {
            m_channel->answer("system download " + QByteArray::number(i + 1),
                              QByteArray::number(chunks.size()) + " '"
                                  + TransferEncoding::encode(chunks.at(i)) + "' ");
        }
    }

    QStringList names() const
    {
        return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ScriptedChannel> m_channel;
};

VELTRA4_TEST(TestConfigurationDownload)
#include "tst_configurationdownload.moc"

#include "channel/controller.h"
#include "channel/transferencoding.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/configurationdownload.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace TransferTesting;

namespace {

struct DownloadStage
{
    QString path(const QString &name = "a.dat") const { return folder.filePath(name); }
    QByteArray contents() const { return contentsOf(path()); }

    int download(const QString &name = "a.dat")
    {
        return downloadConfigurationFile(Controller(&channel), path(name));
    }

    void answerChunks(const QList<QByteArray> &chunks)
    {
        for (int i = 0; i < chunks.size(); ++i) {
            channel.answer("system download " + QByteArray::number(i + 1),
                           QByteArray::number(chunks.size()) + " '"
                               + TransferEncoding::encode(chunks.at(i)) + "' ");
        }
    }

    QTemporaryDir folder;
    ScriptedChannel channel;
};

QStringList queries(int count)
{
    QStringList lines;
    for (int number = 1; number <= count; ++number) {
        lines << QStringLiteral("queryString system download %1").arg(number);
    }
    return lines;
}

} // namespace

class TestConfigurationDownload : public QObject
{
    Q_OBJECT

private slots:
    void writesTheDecodedChunksInOrder()
    {
        DownloadStage f;
        f.answerChunks({"first", QByteArray("\0\xff\n", 3), "", "fourth"});
        QCOMPARE(f.download(), 0);
        QCOMPARE(f.channel.trace(), queries(4));
        QCOMPARE(f.contents(), QByteArray("first\0\xff\nfourth", 14));
    }

    void anEmptyChunkMakesAnEmptyFile()
    {
        DownloadStage f;
        f.answerChunks({""});
        QCOMPARE(f.download(), 0);
        QCOMPARE(f.contents(), QByteArray());
    }

    void whatExistsIsLeftAlone()
    {
        DownloadStage f;
        writeFile(f.path(), "precious");
        QVERIFY(QDir(f.folder.path()).mkdir("folder"));
        for (const char *name : {"a.dat", "folder"}) {
            QCOMPARE(f.download(name), -2);
            QCOMPARE(f.channel.takeTrace(),
                     QStringList(ScriptedChannel::reported("file already exists")));
        }
        QCOMPARE(f.contents(), QByteArray("precious"));
    }

    void aFailingQueryEndsTheDownloadSilently()
    {
        const QList<QByteArray> contents{"(no file)", "one ", "one two "};
        for (int number = 1; number <= 3; ++number) {
            DownloadStage f;
            f.answerChunks({"one ", "two ", "three"});
            f.channel.failNth(number);
            QCOMPARE(f.download(), -1);
            QCOMPARE(f.channel.trace(), queries(number));
            QCOMPARE(f.contents(), contents.at(number - 1));
        }
    }

    void anAnswerOfAnotherFormIsReported()
    {
        DownloadStage f;
        f.answerChunks({"one", "two", "three"});
        f.channel.answer("system download 2", "\xfc %1%s");
        QCOMPARE(f.download(), -1);
        QCOMPARE(f.channel.trace(),
                 queries(2) << ScriptedChannel::reported(
                     QString::fromLatin1("invalid return: \xfc %1%s")));
        QCOMPARE(f.contents(), QByteArray("one"));
    }

    void aTextThatCannotBeDecodedIsReported()
    {
        DownloadStage f;
        f.channel.answer("system download 1", "1 'AA\xe4 %1%s'");
        QCOMPARE(f.download(), -1);
        QCOMPARE(f.channel.trace(),
                 queries(1) << ScriptedChannel::reported(
                     QString::fromLatin1("unable to parse 'AA\xe4 %1%s'")));
        QCOMPARE(f.contents(), QByteArray("(no file)"));
    }

    void aFileThatCannotBeOpenedIsReported()
    {
        DownloadStage f;
        f.answerChunks({"one", "two"});
        const QString report =
            ScriptedChannel::reported("unable to open file '" + f.path("disk/a.dat") + '\'');
        QCOMPARE(f.download("disk/a.dat"), -1);
        QCOMPARE(f.channel.takeTrace(), queries(1) << report);

        QVERIFY(QDir(f.folder.path()).mkdir("disk"));
        f.channel.whenSent("system download 2", [&f] { QDir(f.path("disk")).removeRecursively(); });
        QCOMPARE(f.download("disk/a.dat"), -1);
        QCOMPARE(f.channel.takeTrace(), queries(2) << report);
    }

    void aFullDiskShowsAtOnce()
    {
        for (const int limit : {0, 7, 10, 25}) {
            DownloadStage f;
            f.answerChunks({"0123456789", "0123456789", "0123456789"});
            {
                const FileSizeLimit full(static_cast<rlim_t>(limit));
                QCOMPARE(f.download(), -1);
            }
            QCOMPARE(f.channel.trace(),
                     queries(limit / 10 + 1) << ScriptedChannel::reported("unable to write data"));
            QCOMPARE(f.contents(), QByteArray("0123456789").repeated(3).left(limit));
        }
    }

    void theNameIsLatin1OnTheDisk()
    {
        DownloadStage f;
        f.answerChunks({"one"});
        QCOMPARE(f.download(QStringLiteral("Pr\u00fcfung \u6e2c.dat")), 0);
        const QByteArray nameOnDisk = f.folder.path().toLatin1() + "/Pr\xfc" + "fung ?.dat";
        QCOMPARE(std::remove(nameOnDisk.constData()), 0);
    }
};

VELTRA4_TEST(TestConfigurationDownload)
#include "tst_configurationdownload.moc"

#include "host/transferprogress.h"

#include "tests/support/testmain.h"

#include <QtTest>

using State = TransferProgress::State;

class TestTransferProgress : public QObject
{
    Q_OBJECT

private slots:
    void aDownloadRunsToItsEnd()
    {
        TransferProgress progress;
        QVERIFY(progress.follow("system download 1", "4 'AAAA'", 0));
        QCOMPARE(progress.state(), State::Running);
        QCOMPARE(progress.percent(), 25);
        QCOMPARE(progress.text(), QStringLiteral("Download: chunk 1 of 4"));
        progress.follow("system download 2", "4 'AAAA'", 0);
        progress.follow("system download 3", "4 'AAAA'", 0);
        QCOMPARE(progress.percent(), 75);
        progress.follow("system download 4", "4 'AA'", 0);
        QCOMPARE(progress.state(), State::Complete);
        QCOMPARE(progress.text(), QStringLiteral("Download complete, 4 chunks"));
    }

    void anUploadRunsToItsEnd()
    {
        TransferProgress progress;
        QVERIFY(progress.follow("system upload 2 1 AAAA", "", 0));
        QCOMPARE(progress.text(), QStringLiteral("Upload: chunk 1 of 2"));
        progress.follow("system upload 2 2 AA", "", 0);
        QCOMPARE(progress.state(), State::Complete);
        QCOMPARE(progress.percent(), 100);
    }

    void theOccasionTakesThePlaceOfTheDirection()
    {
        TransferProgress progress;
        QCOMPARE(progress.text("Automatic backup"), QStringLiteral("Automatic backup"));
        progress.follow("system download 1", "2 'AAAA'", 0);
        QCOMPARE(progress.text("Automatic backup"),
                 QStringLiteral("Automatic backup: chunk 1 of 2"));
        progress.follow("system download 2", "", 1);
        QCOMPARE(progress.text("Automatic backup"),
                 QStringLiteral("Automatic backup broke off at chunk 2"));
    }

    void onlyTheFirstTotalCounts()
    {
        TransferProgress progress;
        progress.follow("system download 1", "3 'AAAA'", 0);
        progress.follow("system download 2", "900 'AAAA'", 0);
        QCOMPARE(progress.total(), 3);
    }

    void aRefusedChunkBreaksTheTransferOff()
    {
        TransferProgress progress;
        progress.follow("system download 1", "3 'AAAA'", 0);
        progress.follow("system download 2", "", 1);
        QCOMPARE(progress.state(), State::BrokenOff);
        QCOMPARE(progress.text(), QStringLiteral("Download broke off at chunk 2"));
    }

    void aGarbledFirstAnswerBreaksTheTransferOff()
    {
        TransferProgress progress;
        QVERIFY(progress.follow("system download 1", "nonsense", 0));
        QCOMPARE(progress.state(), State::BrokenOff);
    }

    void cancellingEndsARunningTransferOfItsDirection()
    {
        TransferProgress progress;
        QVERIFY(!progress.follow("system download cancel", "", 0));
        QCOMPARE(progress.state(), State::Idle);
        progress.follow("system download 1", "3 'AAAA'", 0);
        progress.follow("system upload cancel", "", 0);
        QCOMPARE(progress.state(), State::Running);
        QVERIFY(progress.follow("system download cancel", "", 0));
        QCOMPARE(progress.state(), State::Cancelled);
        QCOMPARE(progress.text(), QStringLiteral("Download cancelled"));
    }

    void aTransferWithoutChunksIsComplete()
    {
        TransferProgress progress;
        progress.follow("system download 1", "0 ''", 0);
        QCOMPARE(progress.state(), State::Complete);
        QCOMPARE(progress.percent(), 0);
    }

    void otherCommandsAreNoTransfer_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("query") << QByteArray("config active_config");
        QTest::newRow("prepare") << QByteArray("system download prepare 'config' '__base'");
        QTest::newRow("available") << QByteArray("system download available");
        QTest::newRow("download without number") << QByteArray("system download ");
        QTest::newRow("upload without number") << QByteArray("system upload 3");
        QTest::newRow("empty") << QByteArray();
    }

    void otherCommandsAreNoTransfer()
    {
        QFETCH(const QByteArray, command);
        TransferProgress progress;
        QVERIFY(!progress.follow(command, "yes", 0));
        QCOMPARE(progress.state(), State::Idle);
        QCOMPARE(progress.text(), QString());
    }
};

VELTRA4_TEST(TestTransferProgress)
#include "tst_transferprogress.moc"

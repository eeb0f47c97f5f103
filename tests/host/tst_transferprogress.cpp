#include "host/transferprogress.h"

#include "tests/support/testmain.h"

#include <QTest>

/// What is told of a transfer after some commands, their answers and results.
class TestTransferProgress : public QObject
{
    Q_OBJECT

private:
    struct Step
    {
        QByteArray command;
        QByteArray answer = {};
        int result = 0;
    };

    static TransferProgress after(const QVector<Step> &steps)
    {
        TransferProgress progress;
        for (const Step &step : steps) {
            progress.follow(step.command, step.answer, step.result);
        }
        return progress;
    }

private slots:
    void aDownloadRunsToItsEnd()
    {
        QVector<Step> steps{{"system download 1", "4 'AAAA'"}};
        QCOMPARE(after(steps).state(), TransferProgress::State::Running);
        QCOMPARE(after(steps).percent(), 25);
        QCOMPARE(after(steps).text(), "Download: chunk 1 of 4");
        steps << Step{"system download 2", "900 'AAAA'"} << Step{"system download 3", "4 'AAAA'"};
        QCOMPARE(after(steps).percent(), 75);
        QCOMPARE(after(steps).total(), 4); // only the first one counts
        steps << Step{"system download 4", "4 'AA'"};
        QCOMPARE(after(steps).state(), TransferProgress::State::Complete);
        QCOMPARE(after(steps).text(), "Download complete, 4 chunks");
    }

    void anUploadRunsToItsEnd()
    {
        QVector<Step> steps{{"system upload 2 1 AAAA"}};
        QCOMPARE(after(steps).text(), "Upload: chunk 1 of 2");
        steps << Step{"system upload 2 2 AA"};
        QCOMPARE(after(steps).text(), "Upload complete, 2 chunks");
        QCOMPARE(after(steps).percent(), 100);
    }

    void theOccasionTakesThePlaceOfTheDirection()
    {
        const QString occasion = "Automatic backup";
        QCOMPARE(after({}).text(occasion), occasion);
        QCOMPARE(after({{"system download 1", "2 'AAAA'"}}).text(occasion),
                 "Automatic backup: chunk 1 of 2");
    }

    void aRefusedChunkOrAGarbledAnswerBreaksTheTransferOff()
    {
        const TransferProgress refused =
            after({{"system download 1", "3 'AAAA'"}, {"system download 2", "", 1}});
        QCOMPARE(refused.state(), TransferProgress::State::BrokenOff);
        QCOMPARE(refused.text(), "Download broke off at chunk 2");
        QCOMPARE(refused.text("Automatic backup"), "Automatic backup broke off at chunk 2");
        QCOMPARE(after({{"system download 1", "nonsense"}}).text(),
                 "Download broke off at chunk 1");
    }

    void cancellingEndsARunningTransferOfItsDirection()
    {
        TransferProgress progress;
        QVERIFY(!progress.follow("system download cancel", "", 0));
        QCOMPARE(progress.text(), "");
        QVERIFY(progress.follow("system download 1", "3 'AAAA'", 0));
        QVERIFY(!progress.follow("system upload cancel", "", 0));
        QCOMPARE(progress.text(), "Download: chunk 1 of 3");
        QVERIFY(progress.follow("system download cancel", "", 0));
        QCOMPARE(progress.state(), TransferProgress::State::Cancelled);
        QCOMPARE(progress.text(), "Download cancelled");
    }

    void aTransferWithoutChunksIsComplete()
    {
        const TransferProgress progress = after({{"system download 1", "0 ''"}});
        QCOMPARE(progress.text(), "Download complete, 0 chunks");
        QCOMPARE(progress.percent(), 0);
    }

    void otherCommandsAreNoTransfer()
    {
        for (const char *command :
             {"config active_config", "system download prepare 'config' '__base'",
              "system download available", "system download ", "system upload 3", ""}) {
            TransferProgress progress;
            QVERIFY2(!progress.follow(command, "yes", 0), command);
            QCOMPARE(progress.state(), TransferProgress::State::Idle);
            QCOMPARE(progress.text(), "");
        }
    }
};

VELTRA4_TEST(TestTransferProgress)
#include "tst_transferprogress.moc"

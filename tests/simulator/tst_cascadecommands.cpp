#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

class TestCascadeCommands : public QObject
{
    Q_OBJECT

private slots:
    void connectedSlavesAreCountedNamedAndAvailableIfTheyAnswer()
    {
        expectAnswers(smallState(),
                      {"cascade number_of_connected_slaves -> 2",
                       "cascade connected_slave d01 -> near", "cascade connected_slave d02 -> dead",
                       "cascade connected_slave_available near -> yes",
                       "cascade connected_slave_available dead -> no",
                       "cascade connected_slave_available ready -> no",
                       "cascade connected_slave_available nobody -> refused: unknown slave"});
        for (const QByteArray place : {"d03", "d00", "d1", "d001", "t01", "01", "", "d0x"}) {
            expectRefusals(smallState(), "unknown slave", {"cascade connected_slave " + place});
        }
    }

    void anotherSlaveHasToBeScannedFirst()
    {
        const QByteArray unscanned = " -> veltra2 error: the slave has to be scanned first";
        expectAnswers(smallState(),
                      {"veltra2 cascade add_slave far" + unscanned,
                       "veltra2 cascade add_slave nobody" + unscanned,
                       "cascade number_of_connected_slaves -> 2",
                       "veltra2 cascade add_scanned_slave far", "veltra2 cascade add_slave far",
                       "cascade connected_slave_available far -> yes"});
    }

    void theScanFindsOnlySlavesThatAnswer()
    {
        for (const QByteArray name : {"dead", "nobody", ""}) {
            const QByteArray line = "veltra2 cascade add_scanned_slave " + name
                + " -> veltra2 error: the scan found no such slave";
            expectUnchanged(smallState(), {line});
        }
    }

    void aSlaveIsRemovedAndComesBackInItsPlace()
    {
        QVERIFY(stateAfter(smallState(),
                           {"veltra2 cascade sub_slave near", "cascade connected_slave d01 -> dead",
                            "veltra2 cascade add_slave near"})
                == smallState());
    }

    void onlyAConnectedSlaveIsRemovedAndOnlyAnotherIsAdded()
    {
        expectRefusals(smallState(), "the slave is not connected",
                       {"veltra2 cascade sub_slave ready", "veltra2 cascade sub_slave nobody"});
        expectRefusals(smallState(), "the slave is connected already",
                       {"veltra2 cascade add_slave near"});
    }
};

VELTRA4_TEST(TestCascadeCommands)
#include "tst_cascadecommands.moc"

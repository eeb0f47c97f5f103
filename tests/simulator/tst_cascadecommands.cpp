#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

#include <QtTest>

class TestCascadeCommands : public QObject
{
    Q_OBJECT

private slots:
    void connectedSlavesAreCountedAndNamed()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "cascade number_of_connected_slaves"), QByteArray("2"));
        QCOMPARE(answer(controller, "cascade connected_slave d01"), QByteArray("near"));
        QCOMPARE(answer(controller, "cascade connected_slave d02"), QByteArray("dead"));
        for (const QByteArray place : {"d03", "d00", "d1", "d001", "t01", "01", "", "d0x"}) {
            QCOMPARE(answer(controller, "cascade connected_slave " + place),
                     QByteArray("refused: unknown slave"));
        }
    }

    void moreThanNinetyNineSlavesAreNamed()
    {
        ControllerState state = smallState();
        state.slaves.clear();
        for (int i = 1; i <= 120; ++i) {
            state.slaves << CascadeSlave{"slave" + QByteArray::number(i), true, true, true};
        }
        SimulatedController controller(state);
        QCOMPARE(answer(controller, "cascade connected_slave d09"), QByteArray("slave9"));
        QCOMPARE(answer(controller, "cascade connected_slave d120"), QByteArray("slave120"));
    }

    void onlyAConnectedSlaveThatAnswersIsAvailable_data()
    {
        QTest::addColumn<QByteArray>("slave");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("connected") << QByteArray("near") << QByteArray("yes");
        QTest::newRow("connected, switched off") << QByteArray("dead") << QByteArray("no");
        QTest::newRow("not connected") << QByteArray("ready") << QByteArray("no");
        QTest::newRow("unknown") << QByteArray("nobody") << QByteArray("refused: unknown slave");
    }

    void onlyAConnectedSlaveThatAnswersIsAvailable()
    {
        QFETCH(const QByteArray, slave);
        QFETCH(const QByteArray, expected);
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "cascade connected_slave_available " + slave), expected);
    }

    void aScannedSlaveIsConnected()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "veltra2 cascade add_slave ready"), QByteArray("veltra2 ok"));
        QCOMPARE(answer(controller, "cascade connected_slave d03"), QByteArray("ready"));
    }

    void anotherSlaveHasToBeScannedFirst()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "veltra2 cascade add_slave far"),
                 QByteArray("veltra2 error: the slave has to be scanned first"));
        QCOMPARE(answer(controller, "cascade number_of_connected_slaves"), QByteArray("2"));
        QCOMPARE(answer(controller, "veltra2 cascade add_scanned_slave far"),
                 QByteArray("veltra2 ok"));
        QCOMPARE(answer(controller, "veltra2 cascade add_slave far"), QByteArray("veltra2 ok"));
        QCOMPARE(answer(controller, "cascade connected_slave_available far"), QByteArray("yes"));
    }

    void theScanFindsOnlySlavesThatAnswer()
    {
        SimulatedController controller(smallState());
        for (const QByteArray name : {"dead", "nobody", ""}) {
            QCOMPARE(answer(controller, "veltra2 cascade add_scanned_slave " + name),
                     QByteArray("veltra2 error: the scan found no such slave"));
        }
        QCOMPARE(answer(controller, "veltra2 cascade add_slave nobody"),
                 QByteArray("veltra2 error: the slave has to be scanned first"));
        QVERIFY(controller.state() == smallState());
    }

    void aConnectedSlaveIsNotAddedTwice()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "veltra2 cascade add_slave near"),
                 QByteArray("refused: the slave is connected already"));
    }

    void aSlaveIsRemovedAndComesBackInItsPlace()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "veltra2 cascade sub_slave near"), QByteArray("veltra2 ok"));
        QCOMPARE(answer(controller, "cascade connected_slave d01"), QByteArray("dead"));
        QCOMPARE(answer(controller, "veltra2 cascade add_slave near"), QByteArray("veltra2 ok"));
        QVERIFY(controller.state() == smallState());
    }

    void onlyAConnectedSlaveIsRemoved()
    {
        SimulatedController controller(smallState());
        for (const QByteArray name : {"ready", "nobody"}) {
            QCOMPARE(answer(controller, "veltra2 cascade sub_slave " + name),
                     QByteArray("refused: the slave is not connected"));
        }
    }
};

VELTRA4_TEST(TestCascadeCommands)
#include "tst_cascadecommands.moc"

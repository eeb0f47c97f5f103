#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

#include <QtTest>

class TestSystemCommands : public QObject
{
    Q_OBJECT

private slots:
    void theControllerSaysWhatItIs_data()
    {
        QTest::addColumn<QByteArray>("query");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("serial") << QByteArray("system controller_serial") << QByteArray("1234");
        QTest::newRow("model") << QByteArray("system model") << QByteArray("2");
        QTest::newRow("description")
            << QByteArray("system model_description") << QByteArray("\"Model 5\"");
        QTest::newRow("embedded") << QByteArray("system controller_embedded") << QByteArray("yes");
        QTest::newRow("activity") << QByteArray("status active") << QByteArray("none");
    }

    void theControllerSaysWhatItIs()
    {
        QFETCH(const QByteArray, query);
        QFETCH(const QByteArray, expected);
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, query), expected);
    }

    void whatItIsCannotBeSet_data() { theControllerSaysWhatItIs_data(); }

    void whatItIsCannotBeSet()
    {
        QFETCH(const QByteArray, query);
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, query + " x"), QByteArray("refused: takes no argument"));
        ControllerState state = smallState();
        state.isEmbedded = false;
        controller.setState(state);
        QCOMPARE(answer(controller, "system controller_embedded"), QByteArray("no"));
    }

    void networkSettingsAreAnsweredAndSet_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("before");
        QTest::newRow("host name") << QByteArray("system hostname") << QByteArray("host");
        QTest::newRow("net") << QByteArray("system net") << QByteArray("10.0.0.2/8");
        QTest::newRow("domain") << QByteArray("system domainname") << QByteArray("domain");
        QTest::newRow("name server") << QByteArray("system nameserver") << QByteArray("10.0.0.1");
        QTest::newRow("time server") << QByteArray("system ntp_server") << QByteArray("ntp");
    }

    void networkSettingsAreAnsweredAndSet()
    {
        QFETCH(const QByteArray, name);
        QFETCH(const QByteArray, before);
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, name), before);
        QCOMPARE(answer(controller, name + " static 10.1.2.3 *"), QByteArray());
        QCOMPARE(answer(controller, name), QByteArray("static 10.1.2.3 *"));
        QCOMPARE(answer(controller, name + ' ' + before), QByteArray());
        QVERIFY(controller.state() == smallState());
    }

    void settingsAreChecked_data() { networkSettingsAreAnsweredAndSet_data(); }

    void settingsAreChecked()
    {
        QFETCH(const QByteArray, name);
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, name + ' '), QByteArray("refused: wrong argument"));
        QCOMPARE(answer(controller, name + ' ' + QByteArray(101, 'x')),
                 QByteArray("refused: wrong argument"));
        QVERIFY(controller.state() == smallState());
    }
};

VELTRA4_TEST(TestSystemCommands)
#include "tst_systemcommands.moc"

#include "simulator/controllerclient.h"

#include "channel/transferencoding.h"
#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

#include <QtTest>

namespace {

const QByteArray yes = "yes";
const QByteArray no = "no";
const QByteArray done;

ControllerState lockedState()
{
    ControllerState state = smallState();
    state.configurations[1].password = SaltedHash::of("secret", "salt");
    return state;
}

// One controller with two clients.
struct Setup
{
    explicit Setup(const ControllerState &state)
        : controller(state)
    {
    }

    QByteArray ask(ControllerClient &client, const QByteArray &command)
    {
        const Reply reply = controller.execute(client, command);
        return reply.ok ? reply.text : "refused: " + reply.reason.toLatin1();
    }

    SimulatedController controller;
    ControllerClient one;
    ControllerClient other;
};

} // namespace

class TestControllerClient : public QObject
{
    Q_OBJECT

private slots:
    void allSeeTheSameState()
    {
        Setup setup(smallState());
        QCOMPARE(setup.ask(setup.one, "config active_config second"), done);
        QCOMPARE(setup.ask(setup.other, "config active_config"), QByteArray("second"));
    }

    void aPasswordOpensForTheOneWhoGaveIt()
    {
        Setup setup(lockedState());
        QCOMPARE(setup.ask(setup.one, "config password 'secret'"), done);
        QCOMPARE(setup.ask(setup.one, "config is_changeable"), yes);
        QCOMPARE(setup.ask(setup.other, "config is_changeable"), no);
        QVERIFY(setup.ask(setup.other, "config new_password none").startsWith("refused"));
        QCOMPARE(setup.ask(setup.one, "config new_password none"), done);
    }

    void anotherActiveConfigurationForgetsWhatAnyoneGave()
    {
        Setup setup(lockedState());
        QCOMPARE(setup.ask(setup.one, "config password 'secret'"), done);
        QCOMPARE(setup.ask(setup.other, "config active_config second"), done);
        QCOMPARE(setup.ask(setup.other, "config active_config first"), done);
        QCOMPARE(setup.ask(setup.one, "config is_changeable"), no);
    }

    void aNewLockHoldsForEveryone()
    {
        Setup setup(lockedState());
        QCOMPARE(setup.ask(setup.one, "config password 'secret'"), done);
        QCOMPARE(setup.ask(setup.other, "config super_password 'super'"), done);
        QCOMPARE(setup.ask(setup.other, "config new_password 'another'"), done);
        QCOMPARE(setup.ask(setup.one, "config is_changeable"), no);
        QCOMPARE(setup.ask(setup.other, "config is_changeable"), no);
    }

    void withdrawingTheSuperPasswordConcernsOneselfOnly()
    {
        Setup setup(lockedState());
        QCOMPARE(setup.ask(setup.one, "config super_password 'super'"), done);
        QCOMPARE(setup.ask(setup.other, "config super_password '.'"), done);
        QCOMPARE(setup.ask(setup.one, "config is_changeable"), yes);
    }

    void downloadsDoNotMix()
    {
        Setup setup(smallState());
        QCOMPARE(setup.ask(setup.one, "system download prepare 'config' 'first'"), done);
        QCOMPARE(setup.ask(setup.other, "system download available"), no);
        QCOMPARE(setup.ask(setup.other, "system download cancel"), done);
        QCOMPARE(setup.ask(setup.one, "system download available"), yes);
    }

    void uploadsDoNotMix()
    {
        Setup setup(smallState());
        const QByteArray chunk = TransferEncoding::encode(QByteArray(100, 'x'));
        QCOMPARE(setup.ask(setup.one, "system upload 2 1 " + chunk), done);
        QVERIFY(setup.ask(setup.other, "system upload 2 2 " + chunk).startsWith("refused"));
        QCOMPARE(setup.ask(setup.one, "system upload 2 2 " + chunk), done);
    }
};

VELTRA4_TEST(TestControllerClient)
#include "tst_controllerclient.moc"

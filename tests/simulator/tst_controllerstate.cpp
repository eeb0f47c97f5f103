#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

class TestControllerState : public QObject
{
    Q_OBJECT

private slots:
    void theSampleIsPlausible()
    {
        const ControllerState sample = ControllerState::sample();
        QVERIFY(sample == ControllerState::sample());
        QCOMPARE(sample.problem(), QString());
        QCOMPARE(sample.configurations.size(), 12);
        QCOMPARE(sample.configurations.at(0).identifier, "standard");
        QVERIFY(sample.usedBytes() > 300000 && sample.usedBytes() < 999999);
        QVERIFY(sample.freeFraction() > 0.2);
        QVERIFY(sample.superPassword.matches("super"));
        int locked = 0;
        for (const Configuration &configuration : sample.configurations) {
            QVERIFY(!configuration.owner.isEmpty() && !configuration.description.isEmpty());
            QCOMPARE(configuration.password.matches("lock"), configuration.isLocked());
            locked += configuration.isLocked() ? 1 : 0;
        }
        QCOMPARE(locked, 1);
    }

    void anyDifferenceMakesStatesUnequal()
    {
        using State = ControllerState;
        const QVector<QPair<const char *, void (*)(State &)>> changes{
            {"hostName", [](State &s) { s.hostName = "x"; }},
            {"serial", [](State &s) { s.serial = "x"; }},
            {"model", [](State &s) { s.model = "x"; }},
            {"modelDescription", [](State &s) { s.modelDescription = "x"; }},
            {"isEmbedded", [](State &s) { s.isEmbedded = false; }},
            {"net", [](State &s) { s.net = "x"; }},
            {"domainName", [](State &s) { s.domainName = "x"; }},
            {"nameServer", [](State &s) { s.nameServer = "x"; }},
            {"ntpServer", [](State &s) { s.ntpServer = "x"; }},
            {"activity", [](State &s) { s.activity = "x"; }},
            {"storeCapacity", [](State &s) { ++s.storeCapacity; }},
            {"activeIdentifier", [](State &s) { s.activeIdentifier = "second"; }},
            {"baseData", [](State &s) { s.baseData = "x"; }},
            {"superPassword", [](State &s) { s.superPassword.hash = "x"; }},
            {"superPassword salt", [](State &s) { s.superPassword.salt = "x"; }},
            {"fewer configurations", [](State &s) { s.configurations.removeLast(); }},
            {"identifier", [](State &s) { s.configurations[1].identifier = "x"; }},
            {"owner", [](State &s) { s.configurations[1].owner = "x"; }},
            {"description", [](State &s) { s.configurations[1].description = "x"; }},
            {"password", [](State &s) { s.configurations[1].password = SaltedHash::of("x"); }},
            {"data", [](State &s) { s.configurations[1].data[7] = 'x'; }},
            {"fewer slaves", [](State &s) { s.slaves.removeLast(); }},
            {"slave name", [](State &s) { s.slaves[0].name = "x"; }},
            {"slave connected", [](State &s) { s.slaves[0].isConnected = false; }},
            {"slave available", [](State &s) { s.slaves[0].isAvailable = false; }},
            {"slave scanned", [](State &s) { s.slaves[0].isScanned = false; }}};
        QVERIFY(smallState() == smallState());
        for (const auto &[name, change] : changes) {
            State state = smallState();
            change(state);
            QVERIFY2(state != smallState(), name);
        }
    }

    void problemsAreNamed()
    {
        ControllerState state = smallState();
        QCOMPARE(state.problem(), "");
        auto problemWith = [state](const Configuration &replacement) mutable {
            state.configurations[1] = replacement;
            return state.problem();
        };
        QCOMPARE(problemWith({"a b", {}, {}, {}, {}}), "\"a b\" is not an identifier");
        QCOMPARE(problemWith({"__base", {}, {}, {}, {}}), "\"__base\" is not an identifier");
        QCOMPARE(problemWith({"standard", {}, {}, {}, {}}), "\"standard\" is stored twice");
        const QString tooLong = "owner or description of \"first\" is too long";
        QCOMPARE(problemWith({"first", QByteArray(101, 'o'), {}, {}, {}}), tooLong);
        QCOMPARE(problemWith({"first", {}, QByteArray(101, 'd'), {}, {}}), tooLong);
        state.activeIdentifier = "nobody";
        QCOMPARE(state.problem(), "\"nobody\" is not stored");
        state.configurations.removeFirst();
        QCOMPARE(state.problem(), "\"standard\" is not stored");
    }

    void changesAreAnnouncedOnce()
    {
        SimulatedController controller(smallState());
        int changes = 0;
        controller.setChangeCallback([&changes] { ++changes; });
        for (const QByteArray command :
             {"config desc", "config active_config first", "config active_config nobody",
              "config password 'x'", "system download prepare 'config' 'first'",
              "veltra2 cascade add_scanned_slave ready"}) {
            answer(controller, command);
        }
        QCOMPARE(changes, 0);
        answer(controller, "veltra2 config new_config new");
        QCOMPARE(changes, 1);
        answer(controller, "veltra2 config delete_config new");
        QCOMPARE(changes, 2);
        controller.setState(smallState());
        QCOMPARE(changes, 3);
    }
};

VELTRA4_TEST(TestControllerState)
#include "tst_controllerstate.moc"

#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

#include <functional>

using Change = std::function<void(ControllerState &)>;
Q_DECLARE_METATYPE(Change)

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

    void anyDifferenceMakesStatesUnequal_data()
    {
        using State = ControllerState;
        QTest::addColumn<Change>("change");
        const auto row = [](const char *name, const Change &change) {
            QTest::newRow(name) << change;
        };
        row("hostName", [](State &s) { s.hostName = "x"; });
        row("serial", [](State &s) { s.serial = "x"; });
        row("model", [](State &s) { s.model = "x"; });
        row("modelDescription", [](State &s) { s.modelDescription = "x"; });
        row("isEmbedded", [](State &s) { s.isEmbedded = false; });
        row("net", [](State &s) { s.net = "x"; });
        row("domainName", [](State &s) { s.domainName = "x"; });
        row("nameServer", [](State &s) { s.nameServer = "x"; });
        row("ntpServer", [](State &s) { s.ntpServer = "x"; });
        row("activity", [](State &s) { s.activity = "x"; });
        row("storeCapacity", [](State &s) { ++s.storeCapacity; });
        row("activeIdentifier", [](State &s) { s.activeIdentifier = "second"; });
        row("baseData", [](State &s) { s.baseData = "x"; });
        row("superPassword", [](State &s) { s.superPassword.hash = "x"; });
        row("superPassword salt", [](State &s) { s.superPassword.salt = "x"; });
        row("fewer configurations", [](State &s) { s.configurations.removeLast(); });
        row("identifier", [](State &s) { s.configurations[1].identifier = "x"; });
        row("owner", [](State &s) { s.configurations[1].owner = "x"; });
        row("description", [](State &s) { s.configurations[1].description = "x"; });
        row("password", [](State &s) { s.configurations[1].password = SaltedHash::of("x"); });
        row("data", [](State &s) { s.configurations[1].data[7] = 'x'; });
        row("fewer slaves", [](State &s) { s.slaves.removeLast(); });
        row("slave name", [](State &s) { s.slaves[0].name = "x"; });
        row("slave connected", [](State &s) { s.slaves[0].isConnected = false; });
        row("slave available", [](State &s) { s.slaves[0].isAvailable = false; });
        row("slave scanned", [](State &s) { s.slaves[0].isScanned = false; });
    }

    void anyDifferenceMakesStatesUnequal()
    {
        QFETCH(const Change, change);
        ControllerState state = smallState();
        QVERIFY(state == smallState());
        change(state);
        QVERIFY(state != smallState());
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
        answer(controller, "config desc");
        answer(controller, "config active_config first");
        answer(controller, "config active_config nobody");
        answer(controller, "config password 'x'");
        answer(controller, "system download prepare 'config' 'first'");
        answer(controller, "veltra2 cascade add_scanned_slave ready");
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

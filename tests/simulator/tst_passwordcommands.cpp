#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

#include <QtTest>

namespace {

const QByteArray done;
const QByteArray locked = "refused: configuration 'first' is locked";
const QByteArray wrongPassword = "refused: wrong password";

ControllerState lockedState()
{
    ControllerState state = smallState();
    state.configurations[1].password = SaltedHash::of("secret", "salt");
    return state;
}

bool isChangeable(SimulatedController &controller)
{
    return answer(controller, "config is_changeable") == "yes";
}

} // namespace

class TestPasswordCommands : public QObject
{
    Q_OBJECT

private slots:
    void aPasswordLocksTheActiveConfiguration()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "config config_has_password first"), QByteArray("no"));
        QVERIFY(isChangeable(controller));
        QCOMPARE(answer(controller, "config new_password 'a+b/c'"), done);
        QCOMPARE(answer(controller, "config config_has_password first"), QByteArray("yes"));
        QCOMPARE(answer(controller, "config config_has_password second"), QByteArray("no"));
        QVERIFY(!isChangeable(controller));
    }

    void onlyASaltedHashIsKept()
    {
        SimulatedController one(smallState());
        SimulatedController other(smallState());
        QCOMPARE(answer(one, "config new_password 'secret'"), done);
        QCOMPARE(answer(other, "config new_password 'secret'"), done);
        const SaltedHash &kept = one.state().configurations.at(1).password;
        QVERIFY(!kept.hash.contains("secret") && !kept.salt.contains("secret"));
        QCOMPARE(kept.hash.size(), 32);
        QVERIFY(kept.salt.size() >= 16);
        QVERIFY(kept != other.state().configurations.at(1).password);
        QVERIFY(kept.matches("secret"));
        QVERIFY(!kept.matches("Secret"));
    }

    void aLockedConfigurationRefusesChanges_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("description") << QByteArray("config desc \"x\"");
        QTest::newRow("owner") << QByteArray("config owner \"x\"");
        QTest::newRow("new password") << QByteArray("config new_password 'x'");
        QTest::newRow("no password") << QByteArray("config new_password none");
        QTest::newRow("deletion") << QByteArray("veltra2 config delete_config first");
    }

    void aLockedConfigurationRefusesChanges()
    {
        QFETCH(const QByteArray, command);
        SimulatedController controller(lockedState());
        QCOMPARE(answer(controller, command), locked);
        QVERIFY(controller.state() == lockedState());
        QCOMPARE(answer(controller, "config password 'secret'"), done);
        QVERIFY(controller.execute(command).ok);
        QVERIFY(controller.state() != lockedState());
    }

    void theRightPasswordMakesItChangeable_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("its own") << QByteArray("config password 'secret'");
        QTest::newRow("the super password") << QByteArray("config super_password 'super'");
    }

    void theRightPasswordMakesItChangeable()
    {
        QFETCH(const QByteArray, command);
        SimulatedController controller(lockedState());
        QVERIFY(!isChangeable(controller));
        QCOMPARE(answer(controller, command), done);
        QVERIFY(isChangeable(controller));
        QVERIFY(controller.state() == lockedState());
    }

    void onlyTheActiveConfigurationIsMadeChangeable()
    {
        ControllerState state = lockedState();
        state.configurations[2].password = SaltedHash::of("secret", "salt");
        SimulatedController controller(state);
        QCOMPARE(answer(controller, "config super_password 'super'"), done);
        QCOMPARE(answer(controller, "veltra2 config delete_config second"),
                 QByteArray("refused: configuration 'second' is locked"));
    }

    void noneRemovesTheLock()
    {
        SimulatedController controller(lockedState());
        QCOMPARE(answer(controller, "config password 'secret'"), done);
        QCOMPARE(answer(controller, "config new_password none"), done);
        QCOMPARE(answer(controller, "config config_has_password first"), QByteArray("no"));
        QVERIFY(isChangeable(controller));
        QVERIFY(controller.state() == smallState());
    }

    void noneInQuotesIsAPassword()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "config new_password 'none'"), done);
        QVERIFY(controller.state().configurations.at(1).password.matches("none"));
    }

    void aWrongPasswordMakesNothingChangeable()
    {
        SimulatedController controller(lockedState());
        for (const QByteArray command :
             {"config password 'Secret'", "config password ''", "config password 'super'",
              "config super_password 'secret'", "config super_password ''"}) {
            QCOMPARE(answer(controller, command), wrongPassword);
            QVERIFY(!isChangeable(controller));
        }
    }

    void aWrongPasswordEndsWhatTheRightOneAllowed()
    {
        SimulatedController controller(lockedState());
        QCOMPARE(answer(controller, "config password 'secret'"), done);
        QCOMPARE(answer(controller, "config password 'wrong'"), wrongPassword);
        QVERIFY(!isChangeable(controller));
    }

    void anotherActiveConfigurationEndsIt()
    {
        SimulatedController controller(lockedState());
        QCOMPARE(answer(controller, "config super_password 'super'"), done);
        QCOMPARE(answer(controller, "config active_config second"), done);
        QCOMPARE(answer(controller, "config active_config first"), done);
        QVERIFY(!isChangeable(controller));
    }

    void theSameActiveConfigurationDoesNotEndIt()
    {
        SimulatedController controller(lockedState());
        QCOMPARE(answer(controller, "config password 'secret'"), done);
        QCOMPARE(answer(controller, "config active_config first"), done);
        QVERIFY(isChangeable(controller));
    }

    void aNewLockHoldsAtOnce()
    {
        SimulatedController controller(lockedState());
        QCOMPARE(answer(controller, "config super_password 'super'"), done);
        QCOMPARE(answer(controller, "config new_password 'other'"), done);
        QVERIFY(!isChangeable(controller));
        QCOMPARE(answer(controller, "config password 'secret'"), wrongPassword);
        QCOMPARE(answer(controller, "config password 'other'"), done);
        QVERIFY(isChangeable(controller));
    }

    void theSuperPasswordIsWithdrawnByADot()
    {
        SimulatedController controller(lockedState());
        QCOMPARE(answer(controller, "config super_password 'super'"), done);
        QCOMPARE(answer(controller, "config super_password '.'"), done);
        QVERIFY(!isChangeable(controller));
    }

    void theDotWithdrawsNothingElse()
    {
        SimulatedController controller(lockedState());
        QCOMPARE(answer(controller, "config password 'secret'"), done);
        QCOMPARE(answer(controller, "config super_password '.'"), done);
        QVERIFY(isChangeable(controller));
    }

    void withoutASuperPasswordNoneFits()
    {
        ControllerState state = lockedState();
        state.superPassword = {};
        SimulatedController controller(state);
        QCOMPARE(answer(controller, "config super_password ''"), wrongPassword);
        QVERIFY(!isChangeable(controller));
    }

    void aNewStateForgetsWhatWasPresented()
    {
        SimulatedController controller(lockedState());
        QCOMPARE(answer(controller, "config password 'secret'"), done);
        controller.setState(lockedState());
        QVERIFY(!isChangeable(controller));
    }

    void passwordsHaveToBeQuoted_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("new, bare") << QByteArray("config new_password x");
        QTest::newRow("new, empty") << QByteArray("config new_password ''");
        QTest::newRow("new, quote inside") << QByteArray("config new_password 'a'b'");
        QTest::newRow("new, blank behind") << QByteArray("config new_password 'x' ");
        QTest::newRow("new, too long") << "config new_password '" + QByteArray(101, 'x') + "'";
        QTest::newRow("own, bare") << QByteArray("config password x");
        QTest::newRow("super, bare") << QByteArray("config super_password x");
        QTest::newRow("super, bare dot") << QByteArray("config super_password .");
    }

    void passwordsHaveToBeQuoted()
    {
        QFETCH(const QByteArray, command);
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, command), QByteArray("refused: wrong argument"));
        QVERIFY(controller.state() == smallState());
    }
};

VELTRA4_TEST(TestPasswordCommands)
#include "tst_passwordcommands.moc"

#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

class TestPasswordCommands : public QObject
{
    Q_OBJECT

private slots:
    void aPasswordLocksTheActiveConfiguration()
    {
        expectAnswers(smallState(),
                      {"config config_has_password first -> no", "config is_changeable -> yes",
                       "config new_password 'a+b/c'", "config config_has_password first -> yes",
                       "config config_has_password second -> no", "config is_changeable -> no"});
    }

    void onlyASaltedHashIsKept()
    {
        const auto kept = [](const QByteArray &password) {
            return stateAfter(smallState(), {"config new_password " + password})
                .configurations.at(1)
                .password;
        };
        const SaltedHash hash = kept("'secret'");
        QVERIFY(!hash.hash.contains("secret") && !hash.salt.contains("secret"));
        QCOMPARE(hash.hash.size(), 32);
        QVERIFY(hash.salt.size() >= 16);
        QVERIFY(hash.matches("secret"));
        QVERIFY(hash != kept("'secret'"));
        QVERIFY(kept("'none'").matches("none"));
    }

    void aLockedConfigurationRefusesChanges()
    {
        for (const QByteArray command :
             {"config desc \"x\"", "config owner \"x\"", "config new_password 'x'",
              "config new_password none", "veltra2 config delete_config first"}) {
            expectRefusals(lockedState(), "configuration 'first' is locked", {command});
            QVERIFY(stateAfter(lockedState(), {"config password 'secret'", command})
                    != lockedState());
        }
    }

    void theRightPasswordMakesItChangeable()
    {
        for (const QByteArray command :
             {"config password 'secret'", "config super_password 'super'"}) {
            QVERIFY(
                stateAfter(lockedState(),
                           {"config is_changeable -> no", command, "config is_changeable -> yes"})
                == lockedState());
        }
    }

    void onlyTheActiveConfigurationIsMadeChangeable()
    {
        ControllerState state = lockedState();
        state.configurations[2].password = SaltedHash::of("secret", "salt");
        expectAnswers(state,
                      {"config super_password 'super'",
                       "veltra2 config delete_config second -> refused: configuration 'second' is "
                       "locked"});
    }

    void noneRemovesTheLock()
    {
        QVERIFY(
            stateAfter(lockedState(),
                       {"config password 'secret'", "config new_password none",
                        "config config_has_password first -> no", "config is_changeable -> yes"})
            == smallState());
    }

    void aWrongPasswordMakesNothingChangeable()
    {
        for (const QByteArray command :
             {"config password 'Secret'", "config password ''", "config password 'super'",
              "config super_password 'secret'", "config super_password ''"}) {
            expectAnswers(lockedState(),
                          {command + " -> refused: wrong password", "config is_changeable -> no"});
        }
    }

    void aWrongPasswordEndsWhatTheRightOneAllowed()
    {
        expectUnchanged(lockedState(),
                        {"config password 'secret'",
                         "config password 'wrong' -> refused: wrong password",
                         "config is_changeable -> no"});
    }

    void theSameActiveConfigurationDoesNotEndIt()
    {
        expectUnchanged(lockedState(),
                        {"config password 'secret'", "config active_config first",
                         "config is_changeable -> yes"});
    }

    void aNewLockHoldsAtOnce()
    {
        expectAnswers(lockedState(),
                      {"config super_password 'super'", "config new_password 'other'",
                       "config is_changeable -> no",
                       "config password 'secret' -> refused: wrong password",
                       "config password 'other'", "config is_changeable -> yes"});
    }

    void theDotWithdrawsOnlyTheSuperPassword()
    {
        expectUnchanged(lockedState(),
                        {"config super_password 'super'", "config super_password '.'",
                         "config is_changeable -> no", "config password 'secret'",
                         "config super_password '.'", "config is_changeable -> yes"});
    }

    void withoutASuperPasswordNoneFits()
    {
        ControllerState state = lockedState();
        state.superPassword = {};
        expectAnswers(
            state,
            {"config super_password '' -> refused: wrong password", "config is_changeable -> no"});
    }

    void aNewStateForgetsWhatWasPresented()
    {
        SimulatedController controller(lockedState());
        expectAnswers(controller, {"config password 'secret'"});
        controller.setState(lockedState());
        expectAnswers(controller, {"config is_changeable -> no"});
    }

    void passwordsHaveToBeQuoted()
    {
        expectRefusals(smallState(), "wrong argument",
                       {"config new_password x", "config new_password ''",
                        "config new_password 'a'b'", "config new_password 'x' ",
                        "config new_password '" + QByteArray(101, 'x') + "'", "config password x",
                        "config super_password x", "config super_password ."});
    }
};

VELTRA4_TEST(TestPasswordCommands)
#include "tst_passwordcommands.moc"

#include "simulator/controllerclient.h"

#include "channel/transferencoding.h"
#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

/// Two clients of one controller.
class TestControllerClient : public QObject
{
    Q_OBJECT

private:
    // The lines of the other one begin with "other: ".
    static void talk(const ControllerState &state, const QByteArrayList &lines)
    {
        const QByteArray prefix = "other: ";
        SimulatedController controller(state);
        ControllerClient one;
        ControllerClient other;
        for (const QByteArray &line : lines) {
            const bool isOther = line.startsWith(prefix);
            const auto ask = [&](const QByteArray &command) {
                return textOf(controller.execute(isOther ? other : one, command));
            };
            expectAnswer(ask, isOther ? line.mid(prefix.size()) : line);
        }
    }

private slots:
    void allSeeTheSameState()
    {
        talk(smallState(),
             {"config active_config second", "other: config active_config -> second"});
    }

    void aPasswordOpensForTheOneWhoGaveIt()
    {
        talk(lockedState(),
             {"config password 'secret'", "config is_changeable -> yes",
              "other: config is_changeable -> no",
              "other: config new_password none -> refused: configuration 'first' is locked",
              "config new_password none"});
    }

    void anotherActiveConfigurationForgetsWhatAnyoneGave()
    {
        talk(lockedState(),
             {"config password 'secret'", "other: config active_config second",
              "other: config active_config first", "config is_changeable -> no"});
    }

    void aNewLockHoldsForEveryone()
    {
        talk(lockedState(),
             {"config password 'secret'", "other: config super_password 'super'",
              "other: config new_password 'another'", "config is_changeable -> no",
              "other: config is_changeable -> no"});
    }

    void withdrawingTheSuperPasswordConcernsOneselfOnly()
    {
        talk(lockedState(),
             {"config super_password 'super'", "other: config super_password '.'",
              "config is_changeable -> yes"});
    }

    void transfersDoNotMix()
    {
        const QByteArray chunk = TransferEncoding::encode(QByteArray(100, 'x'));
        talk(smallState(),
             {"system download prepare 'config' 'first'", "other: system download available -> no",
              "other: system download cancel", "system download available -> yes",
              "system upload 2 1 " + chunk,
              "other: system upload 2 2 " + chunk + " -> refused: chunk 2 is not the next one",
              "system upload 2 2 " + chunk});
    }
};

VELTRA4_TEST(TestControllerClient)
#include "tst_controllerclient.moc"

#include "simulator/controllerclient.h"

#include "channel/transferencoding.h"
#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

/// Two clients of one controller.
class TestControllerClient : public QObject
{
    Q_OBJECT

private:
    enum Client { One, Other };
    using Line = std::pair<Client, QByteArray>;

    static void talk(const ControllerState &state, const QVector<Line> &lines)
    {
        SimulatedController controller(state);
        ControllerClient clients[2];
        for (const auto &[client, line] : lines) {
            const auto ask = [&, asking = &clients[client]](const QByteArray &command) {
                return textOf(controller.execute(*asking, command));
            };
            expectAnswer(ask, line);
        }
    }

private slots:
    void allSeeTheSameState()
    {
        talk(smallState(),
             {{One, "config active_config second"}, {Other, "config active_config -> second"}});
    }

    void aPasswordOpensForTheOneWhoGaveIt()
    {
        talk(lockedState(),
             {{One, "config password 'secret'"},
              {One, "config is_changeable -> yes"},
              {Other, "config is_changeable -> no"},
              {Other, "config new_password none -> refused: configuration 'first' is locked"},
              {One, "config new_password none"}});
    }

    void anotherActiveConfigurationForgetsWhatAnyoneGave()
    {
        talk(lockedState(),
             {{One, "config password 'secret'"},
              {Other, "config active_config second"},
              {Other, "config active_config first"},
              {One, "config is_changeable -> no"}});
    }

    void aNewLockHoldsForEveryone()
    {
        talk(lockedState(),
             {{One, "config password 'secret'"},
              {Other, "config super_password 'super'"},
              {Other, "config new_password 'another'"},
              {One, "config is_changeable -> no"},
              {Other, "config is_changeable -> no"}});
    }

    void withdrawingTheSuperPasswordConcernsOneselfOnly()
    {
        talk(lockedState(),
             {{One, "config super_password 'super'"},
              {Other, "config super_password '.'"},
              {One, "config is_changeable -> yes"}});
    }

    void transfersDoNotMix()
    {
        const QByteArray chunk = TransferEncoding::encode(QByteArray(100, 'x'));
        talk(smallState(),
             {{One, "system download prepare 'config' 'first'"},
              {Other, "system download available -> no"},
              {Other, "system download cancel"},
              {One, "system download available -> yes"},
              {One, "system upload 2 1 " + chunk},
              {Other, "system upload 2 2 " + chunk + " -> refused: chunk 2 is not the next one"},
              {One, "system upload 2 2 " + chunk}});
    }
};

VELTRA4_TEST(TestControllerClient)
#include "tst_controllerclient.moc"

#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

class TestSystemCommands : public QObject
{
    Q_OBJECT

private slots:
    void theControllerSaysWhatItIs()
    {
        ControllerState state = smallState();
        expectAnswers(state,
                      {"system controller_serial -> 1234", "system model -> 2",
                       "system model_description -> \"Model 5\"",
                       "system controller_embedded -> yes", "status active -> none"});
        state.isEmbedded = false;
        expectAnswers(state, {"system controller_embedded -> no"});
    }

    void whatItIsCannotBeSet()
    {
        expectRefusals(smallState(), "takes no argument",
                       {"system controller_serial x", "system model x",
                        "system model_description x", "system controller_embedded x",
                        "status active x"});
    }

    void networkSettingsAreAnsweredAndSet()
    {
        const QVector<QPair<QByteArray, QByteArray>> settings{{"system hostname", "host"},
                                                              {"system net", "10.0.0.2/8"},
                                                              {"system domainname", "domain"},
                                                              {"system nameserver", "10.0.0.1"},
                                                              {"system ntp_server", "ntp"}};
        for (const auto &[name, before] : settings) {
            expectUnchanged(smallState(),
                            {name + " -> " + before, name + " static 10.1.2.3 *",
                             name + " -> static 10.1.2.3 *", name + ' ' + before});
            expectRefusals(smallState(), "wrong argument",
                           {name + ' ', name + ' ' + QByteArray(101, 'x')});
        }
    }
};

VELTRA4_TEST(TestSystemCommands)
#include "tst_systemcommands.moc"

#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

class TestCommandTable : public QObject
{
    Q_OBJECT

private slots:
    void whatIsNoCommandIsRefusedWithAReason()
    {
        expectRefusals(smallState(), "unknown command",
                       {"", " ", "config", "Config free_space", "config  free_space",
                        " config free_space", "config new_config x", "veltra2 config free_space",
                        "config descr"});
        expectRefusals(smallState(), "takes no argument",
                       {"config free_space now", "config free_space "});
        expectRefusals(smallState(), "an argument is missing", {"config config"});
        expectRefusals(smallState(), "not a command line",
                       {"config free_space\n", QByteArray("config\0free_space", 17),
                        "config desc \"\x7f\"", "config desc \"" + QByteArray(100000, 'x') + '"'});
    }

    void noAnswerIsLongerThanABufferTakes()
    {
        ControllerState state = smallState();
        state.hostName = QByteArray(300, 'x');
        expectAnswers(state, {"system hostname -> " + QByteArray(Reply::maxLength, 'x')});
        QCOMPARE(int(Reply::maxLength), 199);
    }
};

VELTRA4_TEST(TestCommandTable)
#include "tst_commandtable.moc"

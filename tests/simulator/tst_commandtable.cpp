#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

#include <QRandomGenerator>

namespace {

QByteArray randomBytes(QRandomGenerator &generator, int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes) {
        byte = static_cast<char>(generator.bounded(256));
    }
    return bytes;
}

const QList<QByteArray> vocabulary = {"config number_of_configs",
                                      "config config t01",
                                      "config active_config",
                                      "config active_config second",
                                      "config owner_of_config first",
                                      "config desc_of_config first",
                                      "config config_has_password first",
                                      "config free_space",
                                      "config desc",
                                      "config desc \"text\" ",
                                      "config owner \"text\"",
                                      "config new_password none",
                                      "config new_password 'x'",
                                      "config password 'x'",
                                      "config super_password 'super'",
                                      "config super_password '.'",
                                      "config is_changeable",
                                      "veltra2 config new_config new",
                                      "veltra2 config clone_config copy first",
                                      "veltra2 config delete_config second",
                                      "veltra2 cascade add_slave far",
                                      "veltra2 cascade add_scanned_slave far",
                                      "veltra2 cascade sub_slave near",
                                      "cascade number_of_connected_slaves",
                                      "cascade connected_slave d01",
                                      "cascade connected_slave_available near",
                                      "status active",
                                      "system hostname",
                                      "system hostname other",
                                      "system controller_serial",
                                      "system model",
                                      "system model_description",
                                      "system controller_embedded",
                                      "system download prepare 'config' '__base'",
                                      "system download prepare 'config' 'first'",
                                      "system download available",
                                      "system download 1",
                                      "system download cancel",
                                      "system upload 2 1 AAAA",
                                      "system upload cancel",
                                      "system import available",
                                      "system import item i01",
                                      "system import 'config' 'first'"};

} // namespace

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

    void spoiledCommandsAreAnsweredShortOrRefusedWithAReason()
    {
        QRandomGenerator generator(2);
        SimulatedController controller(smallState());
        for (int i = 0; i < 50000; ++i) {
            QByteArray command = vocabulary.at(generator.bounded(vocabulary.size()));
            const int position = generator.bounded(command.size());
            switch (generator.bounded(4)) {
            case 0:
                command.truncate(position);
                break;
            case 1:
                command.insert(position, randomBytes(generator, generator.bounded(4)));
                break;
            case 2:
                command[position] = static_cast<char>(0x20 + generator.bounded(0xe0));
                break;
            default:
                break;
            }
            const Reply reply = controller.execute(command);
            QVERIFY(reply.text.size() <= Reply::maxLength);
            QCOMPARE(reply.reason.isEmpty(), reply.ok);
        }
    }

    void noAnswerIsLongerThanABufferTakes()
    {
        ControllerState state = smallState();
        for (QByteArray *text :
             {&state.hostName, &state.serial, &state.model, &state.modelDescription, &state.net,
              &state.activity, &state.slaves[0].name}) {
            *text = QByteArray(300, 'x');
        }
        const QByteArray identifier(64, 'i');
        state.configurations << Configuration{
            identifier, QByteArray(100, 'o'), QByteArray(100, 'd'), {}, QByteArray(1000, '0')};
        state.activeIdentifier = identifier;
        SimulatedController controller(state);
        QList<QByteArray> commands = vocabulary;
        commands << "config owner_of_config " + identifier << "config desc_of_config " + identifier;
        for (const QByteArray &command : commands) {
            QVERIFY2(controller.execute(command).text.size() <= Reply::maxLength,
                     command.constData());
        }
    }
};

VELTRA4_TEST(TestCommandTable)
#include "tst_commandtable.moc"

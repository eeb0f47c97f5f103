#include "simulator/factorydata.h"
#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

#include <QtTest>

namespace {

const QByteArray done;
const QByteArray ok = "veltra2 ok";
const QByteArray wrong = "refused: wrong argument";

const Configuration *find(const SimulatedController &controller, const QByteArray &identifier)
{
    for (const Configuration &configuration : controller.state().configurations) {
        if (configuration.identifier == identifier) {
            return &configuration;
        }
    }
    return nullptr;
}

} // namespace

class TestConfigurationCommands : public QObject
{
    Q_OBJECT

private slots:
    void slotsNameTheConfigurations()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "config number_of_configs"), QByteArray("3"));
        QCOMPARE(answer(controller, "config config t01"), QByteArray("standard"));
        QCOMPARE(answer(controller, "config config t03"), QByteArray("second"));
        for (const QByteArray slot :
             {"t00", "t04", "t1", "t001", "01", "T01", "t-1", "t", "t99999999999"}) {
            QCOMPARE(answer(controller, "config config " + slot),
                     QByteArray("refused: no such slot"));
        }
    }

    void slotsBeyondNinetyNineAreNamed()
    {
        ControllerState state = smallState();
        for (int i = 4; i <= 200; ++i) {
            state.configurations << Configuration{"c" + QByteArray::number(i), {}, {}, {}, {}};
        }
        SimulatedController controller(state);
        QCOMPARE(answer(controller, "config config t99"), QByteArray("c99"));
        QCOMPARE(answer(controller, "config config t100"), QByteArray("c100"));
        QCOMPARE(answer(controller, "config config t200"), QByteArray("c200"));
    }

    void theActiveConfigurationIsSaidAndSet()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "config active_config"), QByteArray("first"));
        QCOMPARE(answer(controller, "config active_config second"), done);
        QCOMPARE(answer(controller, "config active_config"), QByteArray("second"));
        QCOMPARE(answer(controller, "config active_config nobody"),
                 QByteArray("refused: unknown configuration 'nobody'"));
        QCOMPARE(answer(controller, "config active_config "),
                 QByteArray("refused: unknown configuration ''"));
        QCOMPARE(answer(controller, "config active_config"), QByteArray("second"));
    }

    void ownerAndDescriptionAreAnsweredInDoubleQuotes()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "config owner_of_config second"), QByteArray("\"Bob\""));
        QCOMPARE(answer(controller, "config desc_of_config second"), QByteArray("\"Second one\""));
        QCOMPARE(answer(controller, "config desc"), QByteArray("\"First one\""));
        for (const QByteArray query :
             {"owner_of_config", "desc_of_config", "config_has_password"}) {
            QCOMPARE(answer(controller, "config " + query + " nobody"),
                     QByteArray("refused: unknown configuration 'nobody'"));
        }
    }

    void ownerAndDescriptionAreSetOnTheActiveConfiguration()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "config owner \"J. D\xf6rfler\" "), done);
        QCOMPARE(answer(controller, "config desc \"Hall 2 / left\""), done);
        QCOMPARE(find(controller, "first")->owner, QByteArray("J. D\xf6rfler"));
        QCOMPARE(find(controller, "first")->description, QByteArray("Hall 2 / left"));
        QCOMPARE(answer(controller, "config owner \"\""), done);
        QCOMPARE(find(controller, "first")->owner, QByteArray());
    }

    void longTextsAreCut()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "config owner \"" + QByteArray(150, 'o') + "\""), done);
        QCOMPARE(answer(controller, "config desc \"" + QByteArray(150, 'd') + "\""), done);
        QCOMPARE(find(controller, "first")->owner, QByteArray(100, 'o'));
        QCOMPARE(find(controller, "first")->description, QByteArray(100, 'd'));
    }

    void textsHaveToBeQuoted_data()
    {
        QTest::addColumn<QByteArray>("argument");
        QTest::newRow("nothing") << QByteArray("");
        QTest::newRow("no quotes") << QByteArray("text");
        QTest::newRow("one quote") << QByteArray("\"");
        QTest::newRow("not closed") << QByteArray("\"text");
        QTest::newRow("not opened") << QByteArray("text\"");
        QTest::newRow("quote inside") << QByteArray("\"te\"xt\"");
        QTest::newRow("something behind") << QByteArray("\"text\" x");
        QTest::newRow("single quotes") << QByteArray("'text'");
    }

    void textsHaveToBeQuoted()
    {
        QFETCH(const QByteArray, argument);
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "config desc " + argument), wrong);
        QCOMPARE(answer(controller, "config owner " + argument), wrong);
        QVERIFY(controller.state() == smallState());
    }

    void freeSpaceFollowsFromTheData()
    {
        ControllerState state = smallState();
        state.storeCapacity = state.usedBytes() * 4;
        SimulatedController controller(state);
        QCOMPARE(answer(controller, "config free_space"), QByteArray("0.750000"));
        state.storeCapacity = state.usedBytes() - 1;
        controller.setState(state);
        QCOMPARE(answer(controller, "config free_space"), QByteArray("0.000000"));
        state.storeCapacity = 0;
        controller.setState(state);
        QCOMPARE(answer(controller, "config free_space"), QByteArray("0.000000"));
    }

    void aNewConfigurationHasDefaultsAndIsActive()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "veltra2 config new_config config2024"), ok);
        QCOMPARE(answer(controller, "config active_config"), QByteArray("config2024"));
        QCOMPARE(answer(controller, "config config t04"), QByteArray("config2024"));
        QCOMPARE(find(controller, "config2024")->data, FactoryData::defaults());
        QVERIFY(!find(controller, "config2024")->isLocked());
    }

    void aCloneHasEverythingButThePasswordAndIsActive()
    {
        ControllerState state = smallState();
        state.configurations[2].password = SaltedHash::of("secret");
        SimulatedController controller(state);
        QCOMPARE(answer(controller, "veltra2 config clone_config copy second"), ok);
        QCOMPARE(answer(controller, "config active_config"), QByteArray("copy"));
        const Configuration expected{
            "copy", "Bob", "copy of Second one", {}, state.configurations.at(2).data};
        QVERIFY(*find(controller, "copy") == expected);
        QVERIFY(controller.state().configurations.at(2) == state.configurations.at(2));
        QCOMPARE(answer(controller, "config desc \"may be changed\""), done);
    }

    void theDescriptionOfACloneIsCut()
    {
        ControllerState state = smallState();
        state.configurations[1].description = QByteArray(100, 'x');
        SimulatedController controller(state);
        QCOMPARE(answer(controller, "veltra2 config clone_config copy first"), ok);
        QCOMPARE(find(controller, "copy")->description, "copy of " + QByteArray(92, 'x'));
    }

    void namesForNewConfigurationsAreChecked_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray noName = "refused: not a name for a new configuration";
        QTest::newRow("empty") << QByteArray("") << noName;
        QTest::newRow("quotes") << QByteArray("'x'") << noName;
        QTest::newRow("umlaut") << QByteArray("\xfc") << noName;
        QTest::newRow("65 characters") << QByteArray(65, 'x') << noName;
        QTest::newRow("64 characters") << QByteArray(64, 'x') << ok;
        QTest::newRow("base") << QByteArray("__base") << noName;
        QTest::newRow("standard") << QByteArray("standard") << noName;
        QTest::newRow("Standard") << QByteArray("Standard") << noName;
        QTest::newRow("existing") << QByteArray("second")
                                  << QByteArray("refused: the configuration exists already");
    }

    void namesForNewConfigurationsAreChecked()
    {
        QFETCH(const QByteArray, name);
        QFETCH(const QByteArray, expected);
        SimulatedController creator(smallState());
        QCOMPARE(answer(creator, "veltra2 config new_config " + name), expected);
        SimulatedController cloner(smallState());
        QCOMPARE(answer(cloner, "veltra2 config clone_config " + name + " first"), expected);
        QCOMPARE(creator.state() == smallState(), expected != ok);
        QCOMPARE(cloner.state() == smallState(), expected != ok);
    }

    void aCloneNeedsItsSource()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "veltra2 config clone_config copy"), wrong);
        QCOMPARE(answer(controller, "veltra2 config clone_config copy nobody"),
                 QByteArray("refused: unknown configuration 'nobody'"));
        QCOMPARE(answer(controller, "veltra2 config clone_config copy first second"),
                 QByteArray("refused: unknown configuration 'first second'"));
        QVERIFY(controller.state() == smallState());
    }

    void aFullStoreTakesNoMore()
    {
        ControllerState state = smallState();
        const qint64 one = state.configurations.at(1).storedBytes();
        state.storeCapacity = state.usedBytes() + one;
        SimulatedController controller(state);
        QCOMPARE(answer(controller, "veltra2 config clone_config copy first"), ok);
        QCOMPARE(answer(controller, "config free_space"), QByteArray("0.000000"));
        const QByteArray full = "refused: the configuration store is full";
        QCOMPARE(answer(controller, "veltra2 config clone_config copy2 first"), full);
        QCOMPARE(answer(controller, "veltra2 config new_config new"), full);
        QCOMPARE(answer(controller, "config active_config"), QByteArray("copy"));
        QCOMPARE(answer(controller, "config number_of_configs"), QByteArray("4"));
    }

    void aDeletedConfigurationIsGone()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "veltra2 config delete_config second"), ok);
        QCOMPARE(answer(controller, "config number_of_configs"), QByteArray("2"));
        QCOMPARE(answer(controller, "veltra2 config delete_config second"),
                 QByteArray("refused: unknown configuration 'second'"));
        QCOMPARE(answer(controller, "config owner_of_config first"), QByteArray("\"Ann\""));
    }

    void afterDeletingTheActiveOneTheStandardOneIsActive()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "veltra2 config delete_config first"), ok);
        QCOMPARE(answer(controller, "config active_config"), QByteArray("standard"));
        QCOMPARE(answer(controller, "config config t02"), QByteArray("second"));
        QCOMPARE(answer(controller, "config desc_of_config second"), QByteArray("\"Second one\""));
    }

    void deletingAnotherOneLeavesTheActiveOne()
    {
        SimulatedController controller(smallState());
        QCOMPARE(answer(controller, "config active_config second"), done);
        QCOMPARE(answer(controller, "veltra2 config delete_config first"), ok);
        QCOMPARE(answer(controller, "config active_config"), QByteArray("second"));
        QCOMPARE(answer(controller, "config desc"), QByteArray("\"Second one\""));
    }

    void theStandardConfigurationIsNeverDeleted()
    {
        ControllerState state = smallState();
        state.configurations << Configuration{"Standard", {}, {}, {}, {}};
        SimulatedController controller(state);
        for (const QByteArray name : {"standard", "Standard"}) {
            QCOMPARE(answer(controller, "veltra2 config delete_config " + name),
                     QByteArray("refused: the standard configuration cannot be deleted"));
        }
        QVERIFY(controller.state() == state);
    }

    void anEmptyControllerAnswersAllTheSame()
    {
        ControllerState state = smallState();
        state.configurations.clear();
        SimulatedController controller(state);
        QCOMPARE(answer(controller, "config number_of_configs"), QByteArray("0"));
        for (const QByteArray command :
             {"config active_config", "config desc", "config desc \"x\"", "config owner \"x\"",
              "config is_changeable", "config new_password 'x'", "config new_password none",
              "config password 'x'"}) {
            QCOMPARE(answer(controller, command),
                     QByteArray("refused: no configuration is active"));
        }
        QCOMPARE(answer(controller, "veltra2 config new_config new"), ok);
        QCOMPARE(answer(controller, "veltra2 config delete_config new"), ok);
        QVERIFY(controller.state().configurations.isEmpty());
    }

    void tenThousandConfigurationsAreListed()
    {
        ControllerState state = smallState();
        for (int i = 4; i <= 10000; ++i) {
            const QByteArray number = QByteArray::number(i);
            state.configurations << Configuration{"c" + number, "o" + number, "d" + number, {}, {}};
        }
        SimulatedController controller(state);
        for (int i = 4; i <= 10000; ++i) {
            const QByteArray number = QByteArray::number(i);
            const QByteArray identifier =
                answer(controller, "config config t" + number.rightJustified(2, '0'));
            QCOMPARE(answer(controller, "config owner_of_config " + identifier),
                     "\"o" + number + '"');
        }
    }
};

VELTRA4_TEST(TestConfigurationCommands)
#include "tst_configurationcommands.moc"

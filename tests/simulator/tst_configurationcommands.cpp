#include "simulator/factorydata.h"
#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

class TestConfigurationCommands : public QObject
{
    Q_OBJECT

private slots:
    void slotsNameTheConfigurations()
    {
        expectAnswers(smallState(),
                      {"config number_of_configs -> 3", "config config t01 -> standard",
                       "config config t03 -> second"});
        for (const QByteArray slot :
             {"t00", "t04", "t1", "t001", "01", "T01", "t-1", "t", "t99999999999"}) {
            expectRefusals(smallState(), "no such slot", {"config config " + slot});
        }
    }

    void tenThousandConfigurationsAreListed()
    {
        ControllerState state = smallState();
        for (int i = 4; i <= 10000; ++i) {
            const QByteArray number = QByteArray::number(i);
            state.configurations << Configuration{"c" + number, "o" + number, {}, {}, {}};
        }
        expectAnswers(state,
                      {"config config t99 -> c99", "config config t100 -> c100",
                       "config config t10000 -> c10000", "config owner_of_config c99 -> \"o99\"",
                       "config owner_of_config c10000 -> \"o10000\""});
    }

    void theActiveConfigurationIsSaidAndSet()
    {
        expectAnswers(smallState(),
                      {"config active_config -> first", "config active_config second",
                       "config active_config -> second",
                       "config active_config nobody -> refused: unknown configuration 'nobody'",
                       "config active_config  -> refused: unknown configuration ''",
                       "config active_config -> second"});
    }

    void ownerAndDescriptionAreAnsweredInDoubleQuotes()
    {
        expectAnswers(smallState(),
                      {"config owner_of_config second -> \"Bob\"",
                       "config desc_of_config second -> \"Second one\"",
                       "config desc -> \"First one\""});
        expectRefusals(smallState(), "unknown configuration 'nobody'",
                       {"config owner_of_config nobody", "config desc_of_config nobody",
                        "config config_has_password nobody"});
    }

    void ownerAndDescriptionAreSetOnTheActiveConfiguration()
    {
        ControllerState expected = smallState();
        expected.configurations[1].owner = "J. D\xf6rfler";
        expected.configurations[1].description = "Hall 2 / left";
        QVERIFY(stateAfter(smallState(),
                           {"config owner \"J. D\xf6rfler\" ", "config desc \"Hall 2 / left\""})
                == expected);
        expected.configurations[1].owner = "";
        QVERIFY(stateAfter(expected, {"config owner \"J.\"", "config owner \"\""}) == expected);
    }

    void longTextsAreCut()
    {
        ControllerState expected = smallState();
        expected.configurations[1].owner = QByteArray(100, 'o');
        expected.configurations[1].description = QByteArray(100, 'd');
        expected.configurations << expected.configurations.at(1);
        expected.configurations[3].identifier = "copy";
        expected.configurations[3].description = "copy of " + QByteArray(92, 'd');
        expected.activeIdentifier = "copy";
        QVERIFY(stateAfter(smallState(),
                           {"config owner \"" + QByteArray(150, 'o') + '"',
                            "config desc \"" + QByteArray(150, 'd') + '"',
                            "veltra2 config clone_config copy first"})
                == expected);
    }

    void textsHaveToBeQuoted()
    {
        for (const QByteArray argument :
             {"", "text", "\"", "\"text", "text\"", "\"te\"xt\"", "\"text\" x", "'text'"}) {
            expectRefusals(smallState(), "wrong argument",
                           {"config desc " + argument, "config owner " + argument});
        }
    }

    void freeSpaceFollowsFromTheData()
    {
        ControllerState state = smallState();
        state.storeCapacity = state.usedBytes() * 4;
        expectAnswers(state, {"config free_space -> 0.750000"});
        for (const qint64 capacity : {state.usedBytes() - 1, qint64{0}}) {
            state.storeCapacity = capacity;
            expectAnswers(state, {"config free_space -> 0.000000"});
        }
    }

    void aNewConfigurationHasDefaultsAndIsActive()
    {
        ControllerState expected = smallState();
        expected.configurations << Configuration{
            "config2024", {}, "new configuration", {}, FactoryData::defaults()};
        expected.activeIdentifier = "config2024";
        QVERIFY(stateAfter(smallState(), {"veltra2 config new_config config2024"}) == expected);
    }

    void aCloneHasEverythingButThePasswordAndIsActive()
    {
        ControllerState state = smallState();
        state.configurations[2].password = SaltedHash::of("secret");
        ControllerState expected = state;
        expected.configurations << Configuration{
            "copy", "Bob", "copy of Second one", {}, state.configurations.at(2).data};
        expected.activeIdentifier = "copy";
        QVERIFY(stateAfter(state, {"veltra2 config clone_config copy second"}) == expected);
    }

    void namesForNewConfigurationsAreChecked()
    {
        for (const QByteArray &name :
             {QByteArray(), QByteArray("'x'"), QByteArray("\xfc"), QByteArray(65, 'x'),
              QByteArray("__base"), QByteArray("standard"), QByteArray("Standard")}) {
            expectRefusals(smallState(), "not a name for a new configuration",
                           {"veltra2 config new_config " + name,
                            "veltra2 config clone_config " + name + " first"});
        }
        expectRefusals(
            smallState(), "the configuration exists already",
            {"veltra2 config new_config second", "veltra2 config clone_config second first"});
        expectAnswers(smallState(), {"veltra2 config new_config " + QByteArray(64, 'x')});
    }

    void aCloneNeedsItsSource()
    {
        const QByteArray clone = "veltra2 config clone_config copy";
        expectRefusals(smallState(), "wrong argument", {clone});
        expectRefusals(smallState(), "unknown configuration 'nobody'", {clone + " nobody"});
        expectRefusals(smallState(), "unknown configuration 'first second'",
                       {clone + " first second"});
    }

    void aFullStoreTakesNoMore()
    {
        ControllerState state = smallState();
        state.storeCapacity = state.usedBytes() + state.configurations.at(1).storedBytes();
        const QByteArray full = " -> refused: the configuration store is full";
        expectAnswers(state,
                      {"veltra2 config clone_config copy first", "config free_space -> 0.000000",
                       "veltra2 config clone_config copy2 first" + full,
                       "veltra2 config new_config new" + full, "config active_config -> copy",
                       "config number_of_configs -> 4"});
    }

    void aDeletedConfigurationIsGone()
    {
        ControllerState expected = smallState();
        expected.configurations.remove(2);
        const QByteArray again =
            "veltra2 config delete_config second -> refused: unknown configuration 'second'";
        QVERIFY(stateAfter(smallState(), {"veltra2 config delete_config second", again})
                == expected);
    }

    void afterDeletingTheActiveOneTheStandardOneIsActive()
    {
        expectAnswers(smallState(),
                      {"veltra2 config delete_config first", "config active_config -> standard",
                       "config config t02 -> second",
                       "config desc_of_config second -> \"Second one\""});
    }

    void deletingAnotherOneLeavesTheActiveOne()
    {
        expectAnswers(smallState(),
                      {"config active_config second", "veltra2 config delete_config first",
                       "config active_config -> second", "config desc -> \"Second one\""});
    }

    void theStandardConfigurationIsNeverDeleted()
    {
        ControllerState state = smallState();
        state.configurations << Configuration{"Standard", {}, {}, {}, {}};
        expectRefusals(
            state, "the standard configuration cannot be deleted",
            {"veltra2 config delete_config standard", "veltra2 config delete_config Standard"});
    }

    void anEmptyControllerAnswersAllTheSame()
    {
        ControllerState state = smallState();
        state.configurations.clear();
        expectRefusals(state, "no configuration is active",
                       {"config active_config", "config desc", "config desc \"x\"",
                        "config owner \"x\"", "config is_changeable", "config new_password 'x'",
                        "config new_password none", "config password 'x'"});
        const ControllerState after =
            stateAfter(state,
                       {"config number_of_configs -> 0", "veltra2 config new_config new",
                        "veltra2 config delete_config new"});
        QVERIFY(after.configurations.isEmpty());
    }
};

VELTRA4_TEST(TestConfigurationCommands)
#include "tst_configurationcommands.moc"

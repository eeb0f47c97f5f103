#include "tests/endtoend/scene.h"
#include "tests/endtoend/table.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QLabel>
#include <QTableWidget>
#include <QTest>

using namespace Story;

namespace {

constexpr int activeRow = 6;
constexpr int standardRow = 7;
constexpr int fairRow = 8;
constexpr int rotorRow = 10;

QStringList sampleLines()
{
    return {"Acceptance test, length bar 1.5 m | metrology lab | yes",
            "Calibration hall, reference wand only | A. Lindqvist | no",
            "Calibration hall, six cameras | A. Lindqvist | no",
            "Cockpit mock-up, helmet and gloves | J. Pereira | no",
            "Cockpit mock-up, seat vibration | J. Pereira | no",
            "Robot cell 2, repeatability run | R. Okafor | no",
            "* Robot cell 2, tool centre point | R. Okafor | no",
            "Standard configuration | factory | no",
            "Trade fair demonstration | demo | no",
            "Treadmill, lower limbs 39 markers | gait laboratory | no",
            "Wind tunnel, rotor tips (slow) | M. Tanaka | no",
            "Wind tunnel, wing deflection 200 Hz | M. Tanaka | no"};
}

QStringList sampleLinesWithout(int row)
{
    QStringList lines = sampleLines();
    lines.removeAt(row);
    return lines;
}

Action seeLines(const QStringList &lines)
{
    return [lines](QDialog *list) { QCOMPARE(Table::lines(list), lines); };
}

Action seeActive(const QString &description)
{
    return [description](QDialog *list) {
        QCOMPARE(UserInput::textOf(list, "lineEdit_activeConfig"), description);
    };
}

Action seeEnabled(const char *button, bool isEnabled)
{
    return [button, isEnabled](QDialog *list) {
        QCOMPARE(UserInput::widgetNamed(list, button)->isEnabled(), isEnabled);
    };
}

Step deletionBox(const QString &description, const QString &owner,
                 QMessageBox::StandardButton answer)
{
    return box({QMessageBox::Warning, "Warning",
                QStringLiteral("You are about to delete the configuration '%1' owned by '%2'.")
                    .arg(description, owner),
                answer, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel});
}

ControllerState sampleWithActive(const QByteArray &identifier)
{
    ControllerState state = ControllerState::sample();
    state.activeIdentifier = identifier;
    return state;
}

ControllerState sampleWithout(const QByteArray &identifier)
{
    ControllerState state = ControllerState::sample();
    removeConfiguration(state, identifier);
    return state;
}

// Plays, and looks what became of the controller and what the host was told.
void playFor(const ControllerState &after, const QStringList &messages, const Steps &steps)
{
    Scene scene;
    scene.play(steps);
    QCOMPARE(scene.state(), after);
    QCOMPARE(scene.record.takeMessages(), messages);
}

void playForNothing(const Steps &steps)
{
    playFor(ControllerState::sample(), {}, steps);
}

} // namespace

class TestEndToEndList : public QObject
{
    Q_OBJECT

private slots:
    void theConfigurationsAreShownSortedWithTheActiveOneBold()
    {
        const Action seeRest = [](QDialog *list) {
            QCOMPARE(Table::in(list)->currentRow(), activeRow);
            QVERIFY(UserInput::widgetNamed(list, "label_error")->isHidden());
        };
        playForNothing(
            {onList({seeLines(sampleLines()), seeActive(Sample::activeText), seeRest, leave})});
    }

    void lookingChangesNothing()
    {
        playForNothing({onList({selectRow(Sample::standardText), selectRow(Sample::lockedText),
                                press(Qt::Key_Down), click("pushButton_exit")})});
    }

    void activatingMakesAnotherOneActive()
    {
        QStringList lines = sampleLines();
        lines[activeRow].remove(0, 2);
        lines[rotorRow].prepend("* ");
        playFor(
            sampleWithActive(Sample::rotor), {changeEvent()},
            {onList({selectRow(Sample::rotorText), click("pushButton_apply"), seeLines(lines),
                     seeActive(Sample::rotorText), seeEnabled("pushButton_apply", false), leave})});
    }

    void aLockedOneCanBeActivated()
    {
        playFor(sampleWithActive(Sample::locked), {changeEvent()},
                {onList({doubleClickRow(Sample::lockedText), see("* " + sampleLines().first()),
                         leave})});
    }

    void aRefusedActivationLeavesTheOldOneActive()
    {
        playFor(ControllerState::sample(), {errorMessage("Unable to change the configuration")},
                {fault("/config active_config \\w/"),
                 onList({selectRow(Sample::rotorText), click("pushButton_apply"),
                         seeLines(sampleLines()), leave})});
    }

    void deletingIsCancelled()
    {
        playForNothing({onList({selectRow(Sample::fairText), click("pushButton_delete"),
                                seeLines(sampleLines()), leave}),
                        deletionBox(Sample::fairText, "demo", QMessageBox::Cancel)});
    }

    void deletingIsConfirmed()
    {
        playFor(sampleWithout(Sample::fair), {changeEvent()},
                {onList({selectRow(Sample::fairText), click("pushButton_delete"),
                         seeLines(sampleLinesWithout(fairRow)), leave}),
                 deletionBox(Sample::fairText, "demo", QMessageBox::Ok)});
    }

    void deletingTheActiveOneMakesTheStandardOneActive()
    {
        ControllerState expected = sampleWithout(Sample::active);
        expected.activeIdentifier = Sample::standard;
        QStringList lines = sampleLines();
        lines[standardRow].prepend("* ");
        lines.removeAt(activeRow);
        playFor(expected, {changeEvent()},
                {onList({press(Qt::Key_Delete), // the active one is selected at first
                         seeLines(lines), seeActive(Sample::standardText), leave}),
                 deletionBox(Sample::activeText, "R. Okafor", QMessageBox::Ok)});
    }

    void whatMustStayCannotBeDeleted()
    {
        Actions actions;
        for (const QString &row : {Sample::lockedText, Sample::standardText}) {
            actions << selectRow(row) << seeEnabled("pushButton_delete", false)
                    << click("pushButton_delete") << press(Qt::Key_Delete)
                    << seeLines(sampleLines());
        }
        playForNothing({onList(actions << leave)});
    }

    void aFailedDeletionIsReported()
    {
        Scene scene;
        const Action lockElsewhere = [&scene](QDialog *) {
            scene.controller.execute("config active_config " + Sample::fair);
            scene.controller.execute("config new_password 'theirs'");
        };
        scene.play({onList({selectRow(Sample::fairText), lockElsewhere, click("pushButton_delete"),
                            see("* Trade fair demonstration | demo | yes"), leave}),
                    deletionBox(Sample::fairText, "demo", QMessageBox::Ok)});
        QVERIFY(hasConfiguration(scene.state(), Sample::fair));
        QCOMPARE(scene.record.takeMessages(),
                 QStringList({errorMessage("Unable to delete configuration"), changeEvent()}));
    }

    void aChangeMadeElsewhereIsSeenWhenTheListOpensAgain()
    {
        Scene scene;
        scene.play({onList({leave})});
        scene.play({execute("config desc \"A new name\""),
                    onList({see("* A new name | R. Okafor | no"), leave})});
    }

    void aFillingStoreIsToldOf()
    {
        ControllerState state = ControllerState::sample();
        const auto seeFilling = [](const char *percentage) {
            return [percentage](QDialog *list) {
                const auto *label = UserInput::named<QLabel>(list, "label_error");
                QVERIFY(label->isVisible());
                QCOMPARE(label->text(),
                         QStringLiteral("<b><font color=red>configuration store filled %1; please "
                                        "delete unnecessary configurations!</font></b>")
                             .arg(percentage));
            };
        };
        state.storeCapacity = state.usedBytes() * 10 / 9;
        Scene scene(state);
        scene.play({onList({seeFilling("90%"), seeEnabled("pushButton_new", true), leave})});
        state.storeCapacity = state.usedBytes();
        scene.controller.setState(state);
        scene.play({onList({seeFilling("100%"), seeEnabled("pushButton_new", false), leave})});
    }

    void aSilentControllerIsToldOf()
    {
        Scene scene;
        scene.channel.setSleep([](int) {});
        scene.channel.setLatency(3600 * 1000);
        scene.play({box({QMessageBox::Critical, "Command Error", "no contact to Controller"})});
        scene.channel.setLatency(0);
        scene.play({onList({seeLines(sampleLines()), leave})});
    }
};

VELTRA4_TEST(TestEndToEndList)
#include "tst_endtoendlist.moc"

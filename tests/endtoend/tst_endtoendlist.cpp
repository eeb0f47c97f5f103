#include "tests/endtoend/frontend.h"
#include "tests/endtoend/table.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QLabel>
#include <QTableWidget>
#include <QtTest>

#include <optional>

namespace {

ExpectedBox deletionBox(const QString &description, const QString &owner,
                        QMessageBox::StandardButton answer)
{
    return {QMessageBox::Warning,
            QStringLiteral("Warning"),
            QStringLiteral("You are about to delete the configuration '%1' owned by '%2'.")
                .arg(description, owner),
            answer,
            QMessageBox::Ok | QMessageBox::Cancel,
            QMessageBox::Cancel};
}

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

bool isEnabled(const QWidget *list, const char *button)
{
    return UserInput::widgetNamed(list, QString::fromLatin1(button))->isEnabled();
}

} // namespace

class TestEndToEndList : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_home.emplace(); }
    void cleanup() { m_home.reset(); }

    void theConfigurationsAreShownSortedWithTheActiveOneBold()
    {
        FrontEnd frontEnd;
        frontEnd.useList([](QDialog *list) {
            QCOMPARE(Table::lines(list), sampleLines());
            QCOMPARE(UserInput::textOf(list, "lineEdit_activeConfig"), Sample::activeText);
            QCOMPARE(Table::in(list)->currentRow(), 6);
            QVERIFY(UserInput::widgetNamed(list, QStringLiteral("label_error"))->isHidden());
        });
    }

    void lookingChangesNothing()
    {
        FrontEnd frontEnd;
        frontEnd.useList([](QDialog *list) {
            for (const char *description :
                 {"Standard configuration", "Acceptance test, length bar 1.5 m"}) {
                Table::click(list, QString::fromLatin1(description));
            }
            UserInput::press(list, Qt::Key_Down);
        });
        QCOMPARE(frontEnd.state(), ControllerState::sample());
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void theExitButtonClosesTheList()
    {
        FrontEnd frontEnd;
        frontEnd.openList([](QDialog *list) { UserInput::click(list, "pushButton_exit"); });
    }

    void activatingMakesAnotherOneActive()
    {
        FrontEnd frontEnd;
        frontEnd.useList([](QDialog *list) {
            Table::click(list, Sample::rotorText);
            UserInput::click(list, "pushButton_apply");
            QStringList lines = sampleLines();
            lines[6].remove(0, 2);
            lines[10].prepend(QStringLiteral("* "));
            QCOMPARE(Table::lines(list), lines);
            QCOMPARE(UserInput::textOf(list, "lineEdit_activeConfig"), Sample::rotorText);
            QVERIFY(!isEnabled(list, "pushButton_apply"));
        });
        ControllerState expected = ControllerState::sample();
        expected.activeIdentifier = Sample::rotor;
        QCOMPARE(frontEnd.state(), expected);
        QCOMPARE(frontEnd.record.takeMessages(), QStringList{changeEvent()});
    }

    void aLockedOneCanBeActivated()
    {
        FrontEnd frontEnd;
        frontEnd.useList([](QDialog *list) {
            Table::doubleClick(list, Sample::lockedText);
            QVERIFY(Table::lines(list).constFirst().startsWith(QLatin1String("* Acceptance")));
        });
        ControllerState expected = ControllerState::sample();
        expected.activeIdentifier = Sample::locked;
        QCOMPARE(frontEnd.state(), expected);
        QCOMPARE(frontEnd.record.takeMessages(), QStringList{changeEvent()});
    }

    void aRefusedActivationLeavesTheOldOneActive()
    {
        FrontEnd frontEnd;
        frontEnd.channel.faults().addMatching(QRegularExpression("config active_config \\w"));
        frontEnd.useList([](QDialog *list) {
            Table::click(list, Sample::rotorText);
            UserInput::click(list, "pushButton_apply");
            QCOMPARE(Table::lines(list), sampleLines());
        });
        QCOMPARE(frontEnd.state(), ControllerState::sample());
        QCOMPARE(frontEnd.record.takeMessages(),
                 QStringList{errorMessage("Unable to change the configuration")});
    }

    void deletingIsCancelled()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            Table::click(list, Sample::fairText);
            frontEnd.driver.expectBox(deletionBox(Sample::fairText, "demo", QMessageBox::Cancel));
            UserInput::click(list, "pushButton_delete");
            QCOMPARE(Table::lines(list), sampleLines());
        });
        QCOMPARE(frontEnd.state(), ControllerState::sample());
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void deletingIsConfirmed()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            Table::click(list, Sample::fairText);
            frontEnd.driver.expectBox(deletionBox(Sample::fairText, "demo", QMessageBox::Ok));
            UserInput::click(list, "pushButton_delete");
            QStringList lines = sampleLines();
            lines.removeAt(8);
            QCOMPARE(Table::lines(list), lines);
        });
        ControllerState expected = ControllerState::sample();
        removeConfiguration(expected, Sample::fair);
        QCOMPARE(frontEnd.state(), expected);
        QCOMPARE(frontEnd.record.takeMessages(), QStringList{changeEvent()});
    }

    void theDeleteKeyDeletes()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            Table::click(list, Sample::rotorText);
            frontEnd.driver.expectBox(deletionBox(Sample::rotorText, "M. Tanaka", QMessageBox::Ok));
            UserInput::press(list, Qt::Key_Delete);
            QStringList lines = sampleLines();
            lines.removeAt(10);
            QCOMPARE(Table::lines(list), lines);
        });
        ControllerState expected = ControllerState::sample();
        removeConfiguration(expected, Sample::rotor);
        QCOMPARE(frontEnd.state(), expected);
        QCOMPARE(frontEnd.record.takeMessages(), QStringList{changeEvent()});
    }

    void deletingTheActiveOneMakesTheStandardOneActive()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectBox(
                deletionBox(Sample::activeText, "R. Okafor", QMessageBox::Ok));
            UserInput::press(list, Qt::Key_Delete); // the active one is selected at first
            QStringList lines = sampleLines();
            lines.removeAt(6);
            lines[6].prepend(QStringLiteral("* "));
            QCOMPARE(Table::lines(list), lines);
            QCOMPARE(UserInput::textOf(list, "lineEdit_activeConfig"), Sample::standardText);
        });
        ControllerState expected = ControllerState::sample();
        removeConfiguration(expected, Sample::active);
        expected.activeIdentifier = Sample::standard;
        QCOMPARE(frontEnd.state(), expected);
    }

    void whatMustStayCannotBeDeleted_data()
    {
        QTest::addColumn<QString>("description");
        QTest::newRow("a locked one") << Sample::lockedText;
        QTest::newRow("the standard one") << Sample::standardText;
    }

    void whatMustStayCannotBeDeleted()
    {
        QFETCH(QString, description);
        FrontEnd frontEnd;
        frontEnd.useList([&description](QDialog *list) {
            Table::click(list, description);
            QVERIFY(!isEnabled(list, "pushButton_delete"));
            UserInput::click(list, "pushButton_delete");
            UserInput::press(list, Qt::Key_Delete);
            QCOMPARE(Table::lines(list), sampleLines());
        });
        QCOMPARE(frontEnd.state(), ControllerState::sample());
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void aFailedDeletionIsReported()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            Table::click(list, Sample::fairText);
            // Somebody else locks it while it is on the screen.
            frontEnd.controller.execute("config active_config " + Sample::fair);
            frontEnd.controller.execute("config new_password 'theirs'");
            frontEnd.driver.expectBox(deletionBox(Sample::fairText, "demo", QMessageBox::Ok));
            UserInput::click(list, "pushButton_delete");
            QCOMPARE(Table::lines(list).at(8),
                     QStringLiteral("* Trade fair demonstration | demo | yes"));
        });
        QVERIFY(hasConfiguration(frontEnd.state(), Sample::fair));
        QCOMPARE(frontEnd.record.takeMessages(),
                 QStringList({errorMessage("Unable to delete configuration"), changeEvent()}));
    }

    void aChangeMadeElsewhereIsSeenWhenTheListOpensAgain()
    {
        FrontEnd frontEnd;
        frontEnd.useList([](QDialog *) {});
        frontEnd.controller.execute("config desc \"A new name\"");
        frontEnd.useList([](QDialog *list) {
            QCOMPARE(Table::lines(list).constFirst(),
                     QStringLiteral("* A new name | R. Okafor | no"));
        });
    }

    void aNearlyFullStoreIsToldOf()
    {
        ControllerState state = ControllerState::sample();
        state.storeCapacity = state.usedBytes() * 10 / 9;
        FrontEnd frontEnd(state);
        frontEnd.useList([](QDialog *list) {
            const auto *label = UserInput::named<QLabel>(list, "label_error");
            QVERIFY(label->isVisible());
            QCOMPARE(
                label->text(),
                QStringLiteral("<b><font color=red>configuration store filled 90%; please delete "
                               "unnecessary configurations!</font></b>"));
            QVERIFY(isEnabled(list, "pushButton_new"));
        });
    }

    void aSilentControllerIsToldOf()
    {
        FrontEnd frontEnd;
        frontEnd.channel.setSleep([](int) {});
        frontEnd.channel.setLatency(3600 * 1000);
        frontEnd.driver.expectBox(
            {QMessageBox::Critical, "Command Error", "no contact to Controller"});
        frontEnd.triggerAction();
        frontEnd.channel.setLatency(0);
        frontEnd.useList([](QDialog *list) { QCOMPARE(Table::lines(list), sampleLines()); });
    }

private:
    std::optional<TemporaryHome> m_home;
};

VELTRA4_TEST(TestEndToEndList)
#include "tst_endtoendlist.moc"

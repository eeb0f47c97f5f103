#include "simulator/factorydata.h"
#include "tests/endtoend/scene.h"
#include "tests/endtoend/table.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QPushButton>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTest>

using namespace Story;

namespace {

const QByteArray rightPassword = QByteArrayLiteral("Zz-9_top");

Step warning(const QString &text)
{
    return box({QMessageBox::Warning, "Warning", text});
}

ControllerState withActive(const QByteArray &identifier)
{
    ControllerState state = ControllerState::sample();
    state.activeIdentifier = identifier;
    return state;
}

ControllerState withLockedActive()
{
    ControllerState state = withActive(Sample::fair);
    configurationIn(state, Sample::fair).password = SaltedHash::of(rightPassword);
    return state;
}

Action seeLockButton(const char *text)
{
    return [text](QDialog *list) {
        QCOMPARE(UserInput::named<QPushButton>(list, "pushButton_lock")->text(), text);
    };
}

// Tries passwords until one is right.
Step unlock(const QByteArrayList &passwords, const Actions &before = {})
{
    Actions actions = before;
    for (const QByteArray &password : passwords) {
        actions <<
            [](QDialog *dialog) { QCOMPARE(UserInput::textOf(dialog, "lineEdit_password"), ""); }
                << type("lineEdit_password", password) << click("pushButton_ok");
    }
    return onUnlock(actions);
}

} // namespace

class TestEndToEndSmallDialogs : public QObject
{
    Q_OBJECT

private slots:
    void aCloneHoldsTheDataOfTheActiveOne()
    {
        const QString description = "Robot cell 3, first run";
        Scene scene;
        scene.play({onList({click("pushButton_new"), see("* " + description + " | R. Okafor | no"),
                            [&description](QDialog *list) {
                                QCOMPARE(Table::lines(list).size(), 13);
                                QCOMPARE(Table::in(list)->currentRow(), 7);
                                QCOMPARE(UserInput::textOf(list, "lineEdit_activeConfig"),
                                         description);
                            },
                            leave}),
                    onNew({type("lineEdit_desc", description), type("lineEdit_owner", "R. Okafor"),
                           click("radioButton_clone"), click("pushButton_create")})});
        const QByteArray identifier = scene.state().configurations.constLast().identifier;
        QVERIFY(QRegularExpression("^config\\d{15,17}$").match(identifier).hasMatch());
        ControllerState expected = withActive(identifier);
        expected.configurations << Configuration{identifier, "R. Okafor", description.toLatin1(),
                                                 SaltedHash(),
                                                 configurationIn(expected, Sample::active).data};
        QCOMPARE(scene.state(), expected);
        QCOMPARE(scene.record.takeMessages(), QStringList{changeEvent()});
    }

    void defaultsHoldTheFactorysData()
    {
        Scene scene;
        scene.play({onList({click("pushButton_new"), see("* Hall 5: north |  | no"), leave}),
                    onNew({type("lineEdit_desc", "Hall 5: north"), click("radioButton_new"),
                           press(Qt::Key_Return)})});
        const Configuration &created = scene.state().configurations.constLast();
        QCOMPARE(created.data, FactoryData::defaults());
        QCOMPARE(scene.state().activeIdentifier, created.identifier);
    }

    // The store still has the room that the button asks for, but not enough for this clone.
    void whatDoesNotFitIsNotCreated()
    {
        ControllerState nearlyFull = ControllerState::sample();
        nearlyFull.storeCapacity = nearlyFull.usedBytes() + qint64{40} * 1024;
        Scene scene(nearlyFull);
        scene.play({onList({click("pushButton_new"), leave}),
                    onNew({type("lineEdit_desc", "too big"), click("radioButton_clone"),
                           click("pushButton_create")})});
        QCOMPARE(scene.state().activeIdentifier, Sample::active);
        QCOMPARE(scene.state().configurations.size(), nearlyFull.configurations.size());
    }

    void anEditedOneBecomesActive()
    {
        Scene scene;
        scene.play({onList({selectRow(Sample::fairText), click("pushButton_edit"),
                            see("* Trade fair demonstration, day 2 | demo team | no"), leave}),
                    onEdit({type("lineEdit_desc", ", day 2"), type("lineEdit_owner", " team"),
                            press(Qt::Key_Return)})});
        ControllerState expected = withActive(Sample::fair);
        configurationIn(expected, Sample::fair).description = "Trade fair demonstration, day 2";
        configurationIn(expected, Sample::fair).owner = "demo team";
        QCOMPARE(scene.state(), expected);
        QCOMPARE(scene.record.takeMessages(), QStringList{changeEvent()});
    }

    void whatIsCancelledChangesNothing()
    {
        Scene scene(withActive(Sample::fair));
        scene.play(
            {onList({click("pushButton_new"), click("pushButton_edit"), click("pushButton_lock"),
                     leave}),
             onNew({type("lineEdit_desc", "never"), press(Qt::Key_Escape)}),
             onEdit({type("lineEdit_desc", " changed"), click("pushButton_2")}),
             onLock({type("lineEdit_new_password", "one"),
                     type("lineEdit_new_password_repeat", "one"), click("pushButton_cancel")})});
        QCOMPARE(scene.state(), withActive(Sample::fair));
        QCOMPARE(scene.record.takeMessages(), QStringList());
    }

    void lockingLocksTheActiveOne()
    {
        Scene scene(withActive(Sample::fair));
        scene.play({onList({seeLockButton("L&ock"), click("pushButton_lock"),
                            see("* Trade fair demonstration | demo | yes"),
                            seeLockButton("Unl&ock"), leave}),
                    onLock({type("lineEdit_new_password", rightPassword),
                            type("lineEdit_new_password_repeat", rightPassword),
                            click("pushButton_ok")})});
        QVERIFY(configurationIn(scene.state(), Sample::fair).password.matches(rightPassword));
        QCOMPARE(scene.record.takeMessages(), QStringList{changeEvent()});
        QVERIFY(!scene.controller.execute("config desc \"changed\"").ok);
    }

    void onlyTheRightPasswordUnlocks()
    {
        Scene scene(withLockedActive());
        const Step invalid = warning("The password is invalid.");
        // The super password is none here.
        scene.play(
            {onList({seeLockButton("Unl&ock"), click("pushButton_lock"),
                     see("* Trade fair demonstration | demo | no"), seeLockButton("L&ock"), leave}),
             unlock({"zz-9_top", "Zz-9_to", "super", rightPassword}), invalid, invalid, invalid});
        QCOMPARE(scene.state(), withActive(Sample::fair));
        QCOMPARE(scene.record.takeMessages(), QStringList{changeEvent()});
    }

    void onlyTheRightSuperPasswordUnlocksAndIsWithdrawn()
    {
        Scene scene(withLockedActive());
        scene.play({onList({click("pushButton_lock"), see("* Trade fair demonstration | demo | no"),
                            leave}),
                    unlock({rightPassword, "super"}, {click("checkBox_use_super_password")}),
                    warning("The super password is invalid.")});
        QCOMPARE(scene.state(), withActive(Sample::fair));
        QCOMPARE(scene.record.takeMessages(), QStringList{changeEvent()});
        QVERIFY(scene.record.takeCommands().contains("config super_password '.'"));
    }

    void afterAWrongPasswordItStaysLocked()
    {
        Scene scene(withLockedActive());
        const ControllerState before = scene.state();
        scene.play({onList({click("pushButton_lock"),
                            see("* Trade fair demonstration | demo | yes"), leave}),
                    onUnlock({type("lineEdit_password", "wrong"), click("pushButton_ok"),
                              click("pushButton_cancel")}),
                    warning("The password is invalid.")});
        QCOMPARE(scene.state(), before);
        QCOMPARE(scene.record.takeMessages(), QStringList());
    }
};

VELTRA4_TEST(TestEndToEndSmallDialogs)
#include "tst_endtoendsmalldialogs.moc"

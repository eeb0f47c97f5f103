#include "simulator/factorydata.h"
#include "tests/endtoend/frontend.h"
#include "tests/endtoend/table.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableWidget>
#include <QtTest>

#include <optional>

namespace {

const QByteArray rightPassword = QByteArrayLiteral("Zz-9_top");

ExpectedBox warning(const QString &text)
{
    return {QMessageBox::Warning, QStringLiteral("Warning"), text};
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

QString buttonText(const QWidget *window, const char *button)
{
    return UserInput::named<QPushButton>(window, button)->text();
}

void fillIn(const QWidget *dialog, const QString &description, const QString &owner)
{
    UserInput::type(dialog, "lineEdit_desc", description);
    UserInput::type(dialog, "lineEdit_owner", owner);
}

void enterNewPassword(const QWidget *dialog, const QString &password, const QString &repetition)
{
    UserInput::type(dialog, "lineEdit_new_password", password);
    UserInput::type(dialog, "lineEdit_new_password_repeat", repetition);
    UserInput::click(dialog, "pushButton_ok");
}

void enterPassword(const QWidget *dialog, const QString &password)
{
    UserInput::type(dialog, "lineEdit_password", password);
    UserInput::click(dialog, "pushButton_ok");
}

} // namespace

class TestEndToEndSmallDialogs : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_home.emplace(); }
    void cleanup() { m_home.reset(); }

    // New
    void aCloneHoldsTheDataOfTheActiveOne()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("NewConfigurationDialog", [](QDialog *dialog) {
                fillIn(dialog, "Robot cell 3, first run", "R. Okafor");
                UserInput::click(dialog, "radioButton_clone");
                UserInput::click(dialog, "pushButton_create");
            });
            UserInput::click(list, "pushButton_new");
            QCOMPARE(Table::lines(list).size(), 13);
            QCOMPARE(Table::lines(list).at(7),
                     QStringLiteral("* Robot cell 3, first run | R. Okafor | no"));
            QCOMPARE(Table::in(list)->currentRow(), 7);
            QCOMPARE(UserInput::textOf(list, "lineEdit_activeConfig"),
                     QStringLiteral("Robot cell 3, first run"));
        });
        const Configuration created = frontEnd.state().configurations.constLast();
        QVERIFY(QRegularExpression("^config\\d{15,17}$")
                    .match(QString::fromLatin1(created.identifier))
                    .hasMatch());
        ControllerState expected = ControllerState::sample();
        expected.activeIdentifier = created.identifier;
        expected.configurations << Configuration{created.identifier, "R. Okafor",
                                                 "Robot cell 3, first run", SaltedHash(),
                                                 configurationIn(expected, Sample::active).data};
        QCOMPARE(frontEnd.state(), expected);
        QCOMPARE(frontEnd.record.takeMessages(), QStringList{changeEvent()});
    }

    void defaultsHoldTheFactorysData()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("NewConfigurationDialog", [](QDialog *dialog) {
                fillIn(dialog, "Hall 5: north", QString());
                UserInput::click(dialog, "radioButton_new");
                UserInput::press(dialog, Qt::Key_Return);
            });
            UserInput::click(list, "pushButton_new");
            QVERIFY(Table::lines(list).contains(QStringLiteral("* Hall 5: north |  | no")));
        });
        const Configuration &created = frontEnd.state().configurations.constLast();
        QCOMPARE(created.description, QByteArray("Hall 5: north"));
        QCOMPARE(created.owner, QByteArray());
        QCOMPARE(created.data, FactoryData::defaults());
        QCOMPARE(frontEnd.state().activeIdentifier, created.identifier);
    }

    void aCloneOfALockedOneIsNotLocked()
    {
        FrontEnd frontEnd(withActive(Sample::locked));
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("NewConfigurationDialog", [](QDialog *dialog) {
                fillIn(dialog, "Mine", "me");
                UserInput::click(dialog, "radioButton_clone");
                UserInput::click(dialog, "pushButton_create");
            });
            UserInput::click(list, "pushButton_new");
            QVERIFY(Table::lines(list).contains(QStringLiteral("* Mine | me | no")));
        });
        QVERIFY(configurationIn(frontEnd.state(), Sample::locked).isLocked());
    }

    void doubleQuotesCannotBeTyped()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("NewConfigurationDialog", [](QDialog *dialog) {
                fillIn(dialog, "The \"big\" hall", "\"me\"");
                UserInput::click(dialog, "pushButton_create");
            });
            UserInput::click(list, "pushButton_new");
            QVERIFY(Table::lines(list).contains(QStringLiteral("* The big hall | me | no")));
        });
        QCOMPARE(frontEnd.state().configurations.constLast().description,
                 QByteArray("The big hall"));
    }

    void withoutADescriptionNothingIsCreated()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("NewConfigurationDialog", [&frontEnd](QDialog *dialog) {
                UserInput::type(dialog, "lineEdit_owner", "me");
                frontEnd.driver.expectBox(warning("Please enter a configuration description."));
                UserInput::click(dialog, "pushButton_create");
                QCOMPARE(frontEnd.state(), ControllerState::sample());
                UserInput::type(dialog, "lineEdit_desc", "at last");
                UserInput::click(dialog, "pushButton_create");
            });
            UserInput::click(list, "pushButton_new");
            QVERIFY(Table::lines(list).contains(QStringLiteral("* at last | me | no")));
        });
    }

    void cancellingCreatesNothing()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("NewConfigurationDialog", [](QDialog *dialog) {
                fillIn(dialog, "never", "me");
                UserInput::press(dialog, Qt::Key_Escape);
            });
            UserInput::click(list, "pushButton_new");
        });
        QCOMPARE(frontEnd.state(), ControllerState::sample());
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void aFullStoreRefusesNewOnes()
    {
        ControllerState full = ControllerState::sample();
        full.storeCapacity = full.usedBytes();
        FrontEnd frontEnd(full);
        frontEnd.useList([](QDialog *list) {
            QVERIFY(!UserInput::widgetNamed(list, "pushButton_new")->isEnabled());
            QVERIFY(UserInput::named<QLabel>(list, "label_error")
                        ->text()
                        .contains("configuration store filled 100%"));
            UserInput::click(list, "pushButton_new");
        });
        QCOMPARE(frontEnd.state(), full);
    }

    // The store still has the room that the button asks for, but not enough for this clone.
    void whatDoesNotFitIsNotCreated()
    {
        ControllerState nearlyFull = ControllerState::sample();
        nearlyFull.storeCapacity = nearlyFull.usedBytes() + qint64{40} * 1024;
        FrontEnd frontEnd(nearlyFull);
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("NewConfigurationDialog", [](QDialog *dialog) {
                fillIn(dialog, "too big", "me");
                UserInput::click(dialog, "radioButton_clone");
                UserInput::click(dialog, "pushButton_create");
            });
            UserInput::click(list, "pushButton_new");
            QCOMPARE(Table::lines(list).size(), 12);
        });
        QCOMPARE(frontEnd.state().activeIdentifier, Sample::active);
    }

    // Edit
    void storedQuotesAreDroppedWhenEdited()
    {
        ControllerState state = ControllerState::sample();
        configurationIn(state, Sample::active).description = "Wing \"A\", left";
        configurationIn(state, Sample::active).owner = "\"Rick\" Okafor";
        FrontEnd frontEnd(state);
        frontEnd.useList([&frontEnd](QDialog *list) {
            QVERIFY(
                Table::lines(list).contains(QStringLiteral("* Wing A, left | Rick Okafor | no")));
            frontEnd.driver.expectDialog("EditConfigDialog", [](QDialog *dialog) {
                QCOMPARE(UserInput::textOf(dialog, "lineEdit_desc"),
                         QStringLiteral("Wing A, left"));
                QCOMPARE(UserInput::textOf(dialog, "lineEdit_owner"),
                         QStringLiteral("Rick Okafor"));
                QCOMPARE(UserInput::textOf(dialog, "lineEdit_configId"),
                         QString::fromLatin1(Sample::active));
                UserInput::type(dialog, "lineEdit_desc", " \"half\"");
                UserInput::click(dialog, "pushButton_ok");
            });
            UserInput::click(list, "pushButton_edit");
            QVERIFY(Table::lines(list).contains(
                QStringLiteral("* Wing A, left half | Rick Okafor | no")));
        });
        configurationIn(state, Sample::active).description = "Wing A, left half";
        configurationIn(state, Sample::active).owner = "Rick Okafor";
        QCOMPARE(frontEnd.state(), state);
        QCOMPARE(frontEnd.record.takeMessages(), QStringList{changeEvent()});
    }

    void anEditedOneBecomesActive()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            Table::click(list, Sample::fairText);
            frontEnd.driver.expectDialog("EditConfigDialog", [](QDialog *dialog) {
                UserInput::type(dialog, "lineEdit_owner", " team");
                UserInput::press(dialog, Qt::Key_Return);
            });
            UserInput::click(list, "pushButton_edit");
            QVERIFY(Table::lines(list).contains(
                QStringLiteral("* Trade fair demonstration | demo team | no")));
        });
        ControllerState expected = withActive(Sample::fair);
        configurationIn(expected, Sample::fair).owner = "demo team";
        QCOMPARE(frontEnd.state(), expected);
    }

    void aDoubleClickEdits()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("EditConfigDialog", [](QDialog *dialog) {
                UserInput::type(dialog, "lineEdit_desc", " 2");
                UserInput::click(dialog, "pushButton_ok");
            });
            Table::doubleClick(list, Sample::fairText);
            QVERIFY(Table::lines(list).contains(
                QStringLiteral("* Trade fair demonstration 2 | demo | no")));
        });
    }

    void cancellingAnEditChangesNothing()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            Table::click(list, Sample::fairText);
            frontEnd.driver.expectDialog("EditConfigDialog", [](QDialog *dialog) {
                UserInput::type(dialog, "lineEdit_desc", " changed");
                UserInput::click(dialog, "pushButton_2");
            });
            UserInput::click(list, "pushButton_edit");
        });
        QCOMPARE(frontEnd.state(), ControllerState::sample());
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void anEmptyDescriptionIsNotTaken()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("EditConfigDialog", [&frontEnd](QDialog *dialog) {
                UserInput::named<QWidget>(dialog, "lineEdit_desc")->setFocus();
                UserInput::press(dialog, Qt::Key_A, Qt::ControlModifier);
                UserInput::press(dialog, Qt::Key_Backspace);
                frontEnd.driver.expectBox(warning("Configuration description must not be empty."));
                UserInput::click(dialog, "pushButton_ok");
                UserInput::press(dialog, Qt::Key_Escape);
            });
            UserInput::click(list, "pushButton_edit");
        });
        QCOMPARE(frontEnd.state(), ControllerState::sample());
    }

    void aLockedOneIsNotEdited()
    {
        FrontEnd frontEnd;
        frontEnd.useList([](QDialog *list) {
            Table::click(list, Sample::lockedText);
            QVERIFY(!UserInput::widgetNamed(list, "pushButton_edit")->isEnabled());
            UserInput::click(list, "pushButton_edit");
        });
        QCOMPARE(frontEnd.state(), ControllerState::sample());
    }

    // Lock and unlock
    void lockingLocksTheActiveOne()
    {
        FrontEnd frontEnd(withActive(Sample::fair));
        frontEnd.useList([&frontEnd](QDialog *list) {
            QCOMPARE(buttonText(list, "pushButton_lock"), QStringLiteral("L&ock"));
            frontEnd.driver.expectDialog("LockConfigurationDialog", [](QDialog *dialog) {
                enterNewPassword(dialog, QString::fromLatin1(rightPassword),
                                 QString::fromLatin1(rightPassword));
            });
            UserInput::click(list, "pushButton_lock");
            QVERIFY(Table::lines(list).contains(
                QStringLiteral("* Trade fair demonstration | demo | yes")));
            QCOMPARE(buttonText(list, "pushButton_lock"), QStringLiteral("Unl&ock"));
            QVERIFY(!UserInput::widgetNamed(list, "pushButton_delete")->isEnabled());
        });
        QVERIFY(configurationIn(frontEnd.state(), Sample::fair).password.matches(rightPassword));
        QCOMPARE(frontEnd.record.takeMessages(), QStringList{changeEvent()});
        QVERIFY(!frontEnd.controller.execute("config desc \"changed\"").ok);
    }

    void differentPasswordsLockNothing()
    {
        FrontEnd frontEnd;
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("LockConfigurationDialog", [&frontEnd](QDialog *dialog) {
                frontEnd.driver.expectBox(warning("Password must not be empty."));
                UserInput::click(dialog, "pushButton_ok");
                frontEnd.driver.expectBox(warning("The entered passwords do not match."));
                enterNewPassword(dialog, "one", "two");
                UserInput::click(dialog, "pushButton_cancel");
            });
            UserInput::click(list, "pushButton_lock");
            QCOMPARE(buttonText(list, "pushButton_lock"), QStringLiteral("L&ock"));
        });
        QCOMPARE(frontEnd.state(), ControllerState::sample());
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void theRightPasswordUnlocks()
    {
        FrontEnd frontEnd(withLockedActive());
        frontEnd.useList([&frontEnd](QDialog *list) {
            QCOMPARE(buttonText(list, "pushButton_lock"), QStringLiteral("Unl&ock"));
            frontEnd.driver.expectDialog("UnlockConfigurationDialog", [](QDialog *dialog) {
                enterPassword(dialog, QString::fromLatin1(rightPassword));
            });
            UserInput::click(list, "pushButton_lock");
            QVERIFY(Table::lines(list).contains(
                QStringLiteral("* Trade fair demonstration | demo | no")));
            QCOMPARE(buttonText(list, "pushButton_lock"), QStringLiteral("L&ock"));
        });
        QCOMPARE(frontEnd.state(), withActive(Sample::fair));
        QCOMPARE(frontEnd.record.takeMessages(), QStringList{changeEvent()});
    }

    void aWrongPasswordUnlocksNothing()
    {
        FrontEnd frontEnd(withLockedActive());
        const ControllerState before = frontEnd.state();
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("UnlockConfigurationDialog", [&frontEnd](QDialog *dialog) {
                frontEnd.driver.expectBox(
                    warning("Please enter the password for this configuration."));
                UserInput::click(dialog, "pushButton_ok");
                // The super password is none here.
                for (const char *wrong : {"zz-9_top", "Zz-9_to", "super"}) {
                    frontEnd.driver.expectBox(warning("The password is invalid."));
                    enterPassword(dialog, QString::fromLatin1(wrong));
                    QCOMPARE(UserInput::textOf(dialog, "lineEdit_password"), QString());
                }
                UserInput::click(dialog, "pushButton_cancel");
            });
            UserInput::click(list, "pushButton_lock");
            QVERIFY(Table::lines(list).contains(
                QStringLiteral("* Trade fair demonstration | demo | yes")));
        });
        QCOMPARE(frontEnd.state(), before);
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void theSuperPasswordUnlocksAndIsWithdrawn()
    {
        FrontEnd frontEnd(withLockedActive());
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("UnlockConfigurationDialog", [](QDialog *dialog) {
                UserInput::click(dialog, "checkBox_use_super_password");
                enterPassword(dialog, "super");
            });
            UserInput::click(list, "pushButton_lock");
            QVERIFY(Table::lines(list).contains(
                QStringLiteral("* Trade fair demonstration | demo | no")));
        });
        QCOMPARE(frontEnd.state(), withActive(Sample::fair));
        QCOMPARE(frontEnd.record.takeMessages(), QStringList{changeEvent()});
        QVERIFY(frontEnd.record.takeCommands().contains("config super_password '.'"));
    }

    void aWrongSuperPasswordUnlocksNothing()
    {
        FrontEnd frontEnd(withLockedActive());
        const ControllerState before = frontEnd.state();
        frontEnd.useList([&frontEnd](QDialog *list) {
            frontEnd.driver.expectDialog("UnlockConfigurationDialog", [&frontEnd](QDialog *dialog) {
                UserInput::click(dialog, "checkBox_use_super_password");
                frontEnd.driver.expectBox(warning("The super password is invalid."));
                enterPassword(dialog, QString::fromLatin1(rightPassword));
                UserInput::press(dialog, Qt::Key_Escape);
            });
            UserInput::click(list, "pushButton_lock");
        });
        QCOMPARE(frontEnd.state(), before);
    }

    void onlyTheActiveOneCanBeUnlocked()
    {
        FrontEnd frontEnd;
        frontEnd.useList([](QDialog *list) {
            Table::click(list, Sample::lockedText);
            QVERIFY(!UserInput::widgetNamed(list, "pushButton_lock")->isEnabled());
            UserInput::click(list, "pushButton_lock");
        });
        QCOMPARE(frontEnd.state(), ControllerState::sample());
    }

private:
    std::optional<TemporaryHome> m_home;
};

VELTRA4_TEST(TestEndToEndSmallDialogs)
#include "tst_endtoendsmalldialogs.moc"

#include "tests/support/testmain.h"
#include "tests/support/userinput.h"
#include "tests/sweep/commonrules.h"
#include "tests/sweep/rehearsal.h"
#include "tests/sweep/stage.h"
#include "tests/sweep/sweep.h"

#include <QLineEdit>
#include <QTest>

namespace {

// None of the dialogs looks at how its commands fare; only the check of a password is examined.
constexpr Rule newRules[] = {
    {"config active_config"},
    {"veltra2 config new_config %s"},
    {"veltra2 config clone_config %s %s"},
    {"config new_password none"},
    {"config owner \"%s\" "},
    {"config desc \"%s\" "},
};

constexpr Rule editRules[] = {
    {"config owner_of_config %s"}, {"config desc_of_config %s"}, {"config active_config %s"},
    {"config owner \"%s\""},       {"config desc \"%s\""},
};

constexpr Rule lockRules[] = {
    {"config desc_of_config %s"},
    {"config new_password '%s'"},
};

constexpr Rule unlockRules[] = {
    {"config desc_of_config %s"},
    {"config password '%s'"},
    {"config super_password '%s'"},
    {"config is_changeable", "configuration cannot be checked.", Then::Ends},
    {"config new_password none"},
};

constexpr Box wrongPassword{QMessageBox::Warning, "Warning", "The password is invalid."};
constexpr Box wrongSuperPassword{QMessageBox::Warning, "Warning", "The super password is invalid."};

void retype(const QDialog *dialog, const char *lineEdit, const QString &text)
{
    UserInput::named<QLineEdit>(dialog, lineEdit)->clear();
    UserInput::type(dialog, lineEdit, text);
}

} // namespace

class TestSweepSmallDialogs : public QObject
{
    Q_OBJECT

private slots:
    void newEmpty_data() { Sweep::addRows(); }
    void newEmpty() { sweepNew(false); }
    void newClone_data() { Sweep::addRows(); }
    void newClone() { sweepNew(true); }

    void edit_data() { Sweep::addRows(); }

    // Owner and description go to whatever is active, which is another one if the edited one could
    // not be made so.
    void edit()
    {
        const auto perform = [](Stage &stage) {
            stage.onDialog("EditConfigDialog", [](QDialog *dialog) {
                retype(dialog, "lineEdit_desc", "Hall 5");
                retype(dialog, "lineEdit_owner", "me");
                UserInput::click(dialog, "pushButton_ok");
            });
            stage.startOnList("pushButton_edit", Sample::fairText);
        };
        const auto rehearse = [](Rehearsal &rehearsal) {
            rehearsal.follow(editRules);
            rehearsal.ask("config owner_of_config " + Sample::fair);
            rehearsal.ask("config desc_of_config " + Sample::fair);
            rehearsal.openWindow("EditConfigDialog");
            rehearsal.send("config active_config " + Sample::fair);
            rehearsal.send("config owner \"me\"");
            rehearsal.send("config desc \"Hall 5\"");
            rehearseChange(rehearsal);
        };
        Sweep::run({perform, rehearse, {Sample::fair, Sample::active}});
    }

    void lock_data() { Sweep::addRows(); }

    void lock()
    {
        const auto perform = [](Stage &stage) {
            stage.onDialog("LockConfigurationDialog", [](QDialog *dialog) {
                UserInput::type(dialog, "lineEdit_new_password", newPassword);
                UserInput::type(dialog, "lineEdit_new_password_repeat", newPassword);
                UserInput::click(dialog, "pushButton_ok");
            });
            stage.startOnList("pushButton_lock");
        };
        const auto rehearse = [](Rehearsal &rehearsal) {
            rehearsal.follow(lockRules);
            rehearsal.ask("config desc_of_config " + Sample::active);
            rehearsal.openWindow("LockConfigurationDialog");
            rehearsal.send(QByteArray("config new_password '") + newPassword + '\'');
            rehearseChange(rehearsal);
        };
        Sweep::run({perform, rehearse, {Sample::active}});
    }

    void unlock_data() { Sweep::addRows(); }
    void unlock() { sweepUnlock(false); }
    void unlockWithSuperPassword_data() { Sweep::addRows(); }
    void unlockWithSuperPassword() { sweepUnlock(true); }

    void cleanupTestCase() { Sweep::sayTotal(); }

private:
    // Owner and description go to whatever is active, which is the older one if nothing was
    // created.
    static void sweepNew(bool isClone)
    {
        const auto perform = [isClone](Stage &stage) {
            stage.onDialog("NewConfigurationDialog", [isClone](QDialog *dialog) {
                UserInput::type(dialog, "lineEdit_desc", "Hall 5");
                UserInput::type(dialog, "lineEdit_owner", "me");
                UserInput::click(dialog, isClone ? "radioButton_clone" : "radioButton_new");
                UserInput::click(dialog, "pushButton_create");
            });
            stage.startOnList("pushButton_new");
        };
        const auto rehearse = [isClone](Rehearsal &rehearsal) {
            rehearsal.follow(newRules);
            rehearsal.openWindow("NewConfigurationDialog");
            QByteArray active;
            rehearsal.ask("config active_config", &active);
            const QByteArray created = rehearsal.newIdentifier();
            rehearsal.sendStructural(isClone
                                         ? "veltra2 config clone_config " + created + ' ' + active
                                         : "veltra2 config new_config " + created);
            rehearsal.send("config new_password none");
            rehearsal.send("config owner \"me\" ");
            rehearsal.send("config desc \"Hall 5\" ");
            rehearseChange(rehearsal);
        };
        Sweep::run({perform, rehearse, {Sample::active}});
    }

    static void sweepUnlock(bool isSuper)
    {
        const auto perform = [isSuper](Stage &stage) {
            stage.onDialog("UnlockConfigurationDialog", [isSuper](QDialog *dialog) {
                if (isSuper) {
                    UserInput::click(dialog, "checkBox_use_super_password");
                }
                UserInput::type(dialog, "lineEdit_password", isSuper ? "super" : "lock");
                UserInput::click(dialog, "pushButton_ok");
            });
            stage.startOnList("pushButton_lock");
        };
        const auto rehearse = [isSuper](Rehearsal &rehearsal) {
            rehearsal.follow(unlockRules);
            rehearsal.ask("config desc_of_config " + Sample::locked);
            rehearsal.openWindow("UnlockConfigurationDialog");
            rehearsal.send(isSuper ? "config super_password 'super'" : "config password 'lock'");
            QByteArray isChangeable;
            if (rehearsal.ask("config is_changeable", &isChangeable)) {
                if (isChangeable == "yes") {
                    rehearsal.send("config new_password none");
                    rehearsal.announce();
                    if (isSuper) {
                        rehearsal.send("config super_password '.'");
                    }
                } else {
                    rehearsal.show(isSuper ? wrongSuperPassword : wrongPassword);
                }
            }
            rehearseRefresh(rehearsal);
        };
        ControllerState before = smallSample();
        before.activeIdentifier = Sample::locked;
        Sweep::run({perform, rehearse, {Sample::locked}, before});
    }
};

VELTRA4_TEST(TestSweepSmallDialogs)
#include "tst_sweepsmalldialogs.moc"

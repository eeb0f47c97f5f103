#include "tests/support/testmain.h"
#include "tests/sweep/commonrules.h"
#include "tests/sweep/rehearsal.h"
#include "tests/sweep/stage.h"
#include "tests/sweep/sweep.h"

#include <QTest>

namespace {

constexpr Rule activateRules[] = {
    {"config active_config %s", "Unable to change the configuration", Then::Ends},
    {"config active_config", "Unable to retrieve the active configuration"},
    {"system hostname", "Unable to get the system hostname"},
    {"config desc", "Unable to get configuration description"},
};

constexpr Rule deleteRules[] = {
    {"veltra2 config delete_config %s", "Unable to delete configuration"},
};

constexpr Box deleteQuestion{
    QMessageBox::Warning, "Warning",
    "You are about to delete the configuration 'Trade fair demonstration' owned by 'demo'."};

} // namespace

class TestSweepList : public QObject
{
    Q_OBJECT

private slots:
    void refresh_data() { Sweep::addRows(); }

    void refresh()
    {
        Sweep::run({[](Stage &stage) {
                        stage.begin();
                        stage.useList([](QDialog *) {});
                    },
                    [](Rehearsal &rehearsal) {
                        if (rehearseRefresh(rehearsal)) {
                            rehearsal.openWindow("ConfigurationDialog");
                        }
                    }});
    }

    void activate_data() { Sweep::addRows(); }

    void activate()
    {
        Sweep::run({[](Stage &stage) { stage.startOnList("pushButton_apply", Sample::fairText); },
                    [](Rehearsal &rehearsal) {
                        rehearsal.follow(activateRules);
                        if (!rehearsal.send("config active_config " + Sample::fair)) {
                            return;
                        }
                        rehearsal.ask("config active_config");
                        rehearsal.ask("system hostname");
                        rehearsal.ask("config desc");
                        rehearseChange(rehearsal);
                    }});
    }

    void deleteOne_data() { Sweep::addRows(); }

    void deleteOne()
    {
        Sweep::run({[](Stage &stage) { stage.startOnList("pushButton_delete", Sample::fairText); },
                    [](Rehearsal &rehearsal) {
                        rehearsal.follow(deleteRules);
                        rehearsal.show(deleteQuestion);
                        rehearsal.sendStructural("veltra2 config delete_config " + Sample::fair);
                        rehearseChange(rehearsal);
                    },
                    {Sample::fair}});
    }

    void cleanupTestCase() { Sweep::sayTotal(); }
};

VELTRA4_TEST(TestSweepList)
#include "tst_sweeplist.moc"

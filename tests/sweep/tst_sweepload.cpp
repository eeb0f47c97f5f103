#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"
#include "tests/sweep/commonrules.h"
#include "tests/sweep/rehearsal.h"
#include "tests/sweep/stage.h"
#include "tests/sweep/sweep.h"

#include <QTest>

#include <algorithm>

namespace {

constexpr Rule loadRules[] = {
    {"system upload cancel"},
    {"system upload %d %d %s"},
    {"system import available", "Error: Unable to get loaded configurations", Then::Ends},
    {"system import item i%02d"},
    {"veltra2 config delete_config %s"},
    {"system import 'config' '%s'", nullptr, Then::Ends},
};

constexpr Box loaded{QMessageBox::Information, "Load Configurations",
                     "Loading configuration successfully."};
constexpr Box notLoaded{QMessageBox::Information, "Load Configurations",
                        "Loading configuration unsuccessfully."};

constexpr char loadedName[] = "load.dat";

// The base item is never offered. One configuration is on the controller already, one is locked
// there and stays as it is, one is gone.
QByteArray archive()
{
    const ControllerState all = smallSample();
    return Archive::pack({TransferFiles::baseItem(all),
                          TransferFiles::item(configurationIn(all, Sample::active)),
                          TransferFiles::item(configurationIn(all, Sample::locked)),
                          TransferFiles::item(configurationIn(all, Sample::fair))});
}

ControllerState withoutFair()
{
    ControllerState state = smallSample();
    removeConfiguration(state, Sample::fair);
    return state;
}

void rehearseLoading(Rehearsal &rehearsal)
{
    rehearsal.follow(loadRules);
    rehearsal.openWindow("Load Configurations");
    rehearsal.send("system upload cancel");
    rehearseUpload(rehearsal, archive());
    QByteArrayList identifiers;
    switch (rehearseOffer(rehearsal, &identifiers)) {
    case Offer::None:
        return;
    case Offer::Unknown:
        rehearsal.report("Error: Configuration file can not be recognized");
        return;
    case Offer::Items:
        break;
    }
    identifiers.removeAll("__base");
    rehearsal.openWindow("ConfigLoadDlgClass");
    if (identifiers.isEmpty()) {
        return; // there is nothing to click
    }
    QByteArrayList wanted;
    for (const QByteArray &identifier : qAsConst(identifiers)) {
        if (identifier == Sample::locked) {
            continue;
        }
        if (hasConfiguration(withoutFair(), identifier)) {
            rehearsal.sendStructural("veltra2 config delete_config " + identifier);
        }
        wanted << identifier;
    }
    const bool isLoaded =
        std::all_of(wanted.cbegin(), wanted.cend(), [&rehearsal](const QByteArray &identifier) {
            return rehearsal.send("system import 'config' '" + identifier + '\'');
        });
    rehearsal.announce();
    rehearsal.show(isLoaded ? loaded : notLoaded);
}

} // namespace

class TestSweepLoad : public QObject
{
    Q_OBJECT

private slots:
    void load_data() { Sweep::addRows(); }

    void load()
    {
        Sweep::run({[](Stage &stage) {
                        stage.chooseFile(loadedName);
                        stage.onDialog("ConfigLoadDlgClass", [](QDialog *dialog) {
                            UserInput::click(dialog, "pushButton_load");
                        });
                        stage.startOnList("pushButton_load");
                    },
                    [](Rehearsal &rehearsal) {
                        rehearseLoading(rehearsal);
                        rehearseRefresh(rehearsal);
                    },
                    {Sample::active},
                    withoutFair(),
                    {{loadedName, archive()}}});
    }

    void cleanupTestCase() { Sweep::sayTotal(); }
};

VELTRA4_TEST(TestSweepLoad)
#include "tst_sweepload.moc"

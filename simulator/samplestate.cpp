#include "simulator/controllerstate.h"
#include "simulator/factorydata.h"

namespace {

constexpr int kibi = 1024;

struct SampleConfiguration
{
    const char *identifier;
    const char *owner;
    const char *description;
    int kibibytes;
};

constexpr SampleConfiguration sampleConfigurations[] = {
    {"standard", "factory", "Standard configuration", 16},
    {"config20230914102233417", "A. Lindqvist", "Calibration hall, six cameras", 72},
    {"config2023092015470155", "A. Lindqvist", "Calibration hall, reference wand only", 40},
    {"config20231106081559902", "R. Okafor", "Robot cell 2, tool centre point", 56},
    {"config20231106093020118", "R. Okafor", "Robot cell 2, repeatability run", 56},
    {"config20240118134502760", "M. Tanaka", "Wind tunnel, wing deflection 200 Hz", 88},
    {"config2024022909000127", "metrology lab", "Acceptance test, length bar 1.5 m", 24},
    {"config20240311164812333", "M. Tanaka", "Wind tunnel, rotor tips (slow)", 88},
    {"config20240422111111604", "J. Pereira", "Cockpit mock-up, helmet and gloves", 48},
    {"config20240517071843845", "J. Pereira", "Cockpit mock-up, seat vibration", 48},
    {"config2024060312000499", "gait laboratory", "Treadmill, lower limbs 39 markers", 64},
    {"config20240702145537281", "demo", "Trade fair demonstration", 32},
};

constexpr auto sampleLocked = "config2024022909000127";
constexpr auto sampleActive = "config20231106081559902";

QVector<Configuration> makeConfigurations()
{
    QVector<Configuration> configurations;
    quint32 seed = 100;
    for (const SampleConfiguration &sample : sampleConfigurations) {
        Configuration configuration;
        configuration.identifier = sample.identifier;
        configuration.owner = sample.owner;
        configuration.description = sample.description;
        configuration.data = FactoryData::bytes(sample.kibibytes * kibi, ++seed);
        if (configuration.identifier == sampleLocked) {
            configuration.password = SaltedHash::of("lock", FactoryData::bytes(16, 1));
        }
        configurations << configuration;
    }
    return configurations;
}

ControllerState makeSample()
{
    ControllerState state;
    state.hostName = "tracker-lab2";
    state.serial = "40217";
    state.model = "5";
    state.modelDescription = "Indoor Tracker 5";
    state.net = "192.168.40.17/24";
    state.domainName = "lab.example";
    state.nameServer = "192.168.40.1";
    state.ntpServer = "ntp.lab.example";
    state.storeCapacity = qint64{2048} * kibi;
    state.configurations = makeConfigurations();
    state.activeIdentifier = sampleActive;
    state.baseData = FactoryData::bytes(12 * kibi, 3);
    state.superPassword = SaltedHash::of("super", FactoryData::bytes(16, 2));
    state.slaves = {{"tracker-lab3", true, true, true},
                    {"tracker-lab4", true, true, true},
                    {"tracker-hall1", false, true, true},
                    {"tracker-hall2", false, true, false},
                    {"tracker-spare", false, false, true}};
    return state;
}

} // namespace

ControllerState ControllerState::sample()
{
    static const ControllerState made = makeSample(); // all these bytes take their time
    return made;
}

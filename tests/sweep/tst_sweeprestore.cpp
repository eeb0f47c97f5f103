#include "tests/support/testmain.h"
#include "tests/sweep/backuprules.h"
#include "tests/sweep/commonrules.h"
#include "tests/sweep/rehearsal.h"
#include "tests/sweep/stage.h"
#include "tests/sweep/sweep.h"

#include <QTest>

#include <algorithm>

namespace {

// Nothing is reported of any of these; a single box says that the restore failed.
constexpr Rule restoreRules[] = {
    {"system controller_embedded", nullptr, Then::Ends},
    {"system hostname %s", nullptr, Then::Ends},
    {"system net %s", nullptr, Then::Ends},
    {"system domainname %s", nullptr, Then::Ends},
    {"system nameserver %s", nullptr, Then::Ends},
    {"system ntp_server %s", nullptr, Then::Ends},
    {"config number_of_configs", nullptr, Then::Ends},
    {"config config t%02d", nullptr, Then::Ends},
    {"system upload cancel"},
    {"system upload %d %d %s", nullptr, Then::NextItem}, // no more chunks, but all the rest
    {"system import available", nullptr, Then::Ends},
    {"system import item i%02d"},
    {"veltra2 config delete_config %s", nullptr, Then::Ends},
    {"system import 'config' '%s'", nullptr, Then::Ends},
    {"config active_config %s"},
    {"cascade number_of_connected_slaves", nullptr, Then::Ends},
    {"cascade connected_slave d%02d", nullptr, Then::Ends},
    {"veltra2 cascade sub_slave %s", nullptr, Then::Ends},
    {"veltra2 cascade add_slave %s", nullptr, Then::Ends},
    {"veltra2 cascade add_scanned_slave %s", nullptr, Then::Ends},
    {"cascade connected_slave_available %s"},
};

constexpr Box overwriteQuestion{
    QMessageBox::Warning, "Confirmation",
    "Restoring this backup overwrites all settings and already existing configurations.\n\n"
    "Any previous settings will get lost!\n\nProceed?"};
constexpr Box networkQuestion{
    QMessageBox::Question, "Confirmation",
    "Hostname and ip settings can be restored. After reboot the XQU might not be reachable via "
    "network due to wrong network settings.\n\nRestore?"};
constexpr Box restored{QMessageBox::Information, "Success", "Backup restored!"};
constexpr Box incompleteCascade{
    QMessageBox::Information, "Success (incomplete cascade)",
    "Backup restored!\n\nNot all machines of the configured\ncascade could be reconnected. "
    "Please, see\nthe Events window for more details."};
constexpr Box notRestored{QMessageBox::Critical, "Invalid backup file",
                          "Error while restoring from backup (%1)."};

constexpr char restoredName[] = "backup.xml";
const QByteArray accepted = QByteArrayLiteral("veltra2 ok");

ControllerState backedUp()
{
    ControllerState state = smallSample();
    configurationIn(state, Sample::locked).password = SaltedHash();
    state.slaves = {{"slave-kept", true, true, true},
                    {"slave-lost", true, true, true},
                    {"slave-forgotten", true, true, true},
                    {"slave-foreign", false, true, true}};
    return state;
}

// Since then everything has changed; one configuration is new and no business of the restore.
ControllerState changed()
{
    ControllerState state = backedUp();
    state.hostName = "somebody-else";
    state.net = "dhcp";
    state.domainName = "nowhere.example";
    state.nameServer = "10.0.0.1";
    state.ntpServer = "10.0.0.2";
    state.baseData = "another base";
    removeConfiguration(state, Sample::fair);
    for (Configuration &configuration : state.configurations) {
        configuration.data = "overwritten";
    }
    state.configurations << Configuration{"config9", "me", "made later", SaltedHash(), "later"};
    state.activeIdentifier = Sample::standard;
    state.slaves[1].isConnected = false;
    state.slaves[2].isConnected = false;
    state.slaves[2].isScanned = false; // has to be found first
    state.slaves[3].isConnected = true;
    return state;
}

// An answer that is sent back: read as UTF-8, sent as Latin-1.
QByteArray sentBack(const QByteArray &answer)
{
    return QString::fromUtf8(answer).toLatin1();
}

// How a restore ends.
enum class Ending {
    Restored,
    Incomplete, ///< slaves are missing
    Failed,
    Lost ///< nobody says anything, but the list that is read afterwards may
};

/// The restore of one document.
class Restore
{
public:
    explicit Restore(Rehearsal &rehearsal)
        : m_rehearsal(rehearsal)
    {
    }

    Ending run()
    {
        bool isEmbedded = false;
        bool isEmbeddedStill = false; // only decides about a version that fits anyway
        if (!m_rehearsal.askTruth("system controller_embedded", &isEmbedded)
            || !m_rehearsal.askTruth("system controller_embedded", &isEmbeddedStill)) {
            return Ending::Lost;
        }
        if (isEmbedded) {
            m_rehearsal.show(networkQuestion);
            m_withNetwork = true;
        }
        bool isEmbeddedNow = false;
        if (!m_rehearsal.askTruth("system controller_embedded", &isEmbeddedNow)) {
            return Ending::Lost;
        }
        if ((isEmbeddedNow && !setNetwork())
            || !read("config number_of_configs", "config config t", &m_existing) || !importAll()) {
            return Ending::Failed;
        }
        const QByteArray active = m_document.activeConfig.toLatin1();
        if (m_items.contains(active)) {
            m_rehearsal.send("config active_config " + active);
        }
        m_rehearsal.announce();
        if (!read("cascade number_of_connected_slaves", "cascade connected_slave d", &m_connected)
            || !removeForeignSlaves() || !attachSlaves()) {
            return Ending::Failed;
        }
        return m_isComplete ? Ending::Restored : Ending::Incomplete;
    }

private:
    // What is compared and sent back later.
    bool read(const QByteArray &count, const char *each, QByteArrayList *names)
    {
        const bool isRead = m_rehearsal.askList(count, each, names);
        std::transform(names->begin(), names->end(), names->begin(), sentBack);
        return isRead;
    }

    bool setNetwork()
    {
        const auto set = [this](const char *setting, const QString &value) {
            return m_rehearsal.send(QByteArray("system ") + setting + ' ' + value.toLatin1());
        };
        return (!m_withNetwork || (set("hostname", m_document.name) && set("net", m_document.net)))
            && set("domainname", m_document.domain) && set("nameserver", m_document.nameServer)
            && set("ntp_server", m_document.ntpServer);
    }

    bool importAll()
    {
        m_rehearsal.send("system upload cancel");
        rehearseUpload(m_rehearsal, m_document.configData);
        if (rehearseOffer(m_rehearsal, &m_items) != Offer::Items) {
            return false;
        }
        std::transform(m_items.begin(), m_items.end(), m_items.begin(), sentBack);
        // The base first, so that the others fit on it.
        std::stable_partition(m_items.begin(), m_items.end(),
                              [](const QByteArray &item) { return item == "__base"; });
        return std::all_of(m_items.cbegin(), m_items.cend(),
                           [this](const QByteArray &item) { return importItem(item); });
    }

    bool importItem(const QByteArray &identifier)
    {
        QByteArray answer;
        if (m_existing.contains(identifier)
            && (!m_rehearsal.sendStructural("veltra2 config delete_config " + identifier, &answer)
                || answer != accepted)) {
            return false;
        }
        return m_rehearsal.send("system import 'config' '" + identifier + '\'');
    }

    bool removeForeignSlaves()
    {
        return std::all_of(
            m_connected.cbegin(), m_connected.cend(), [this](const QByteArray &slave) {
                QByteArray answer;
                return m_slaves.contains(slave)
                    || (m_rehearsal.sendStructural("veltra2 cascade sub_slave " + slave, &answer)
                        && answer == accepted);
            });
    }

    bool attachSlaves()
    {
        return std::all_of(m_slaves.cbegin(), m_slaves.cend(), [this](const QByteArray &slave) {
            const bool isAttached = m_connected.contains(slave) || attach(slave);
            if (isAttached) {
                check(slave);
            }
            return isAttached;
        });
    }

    bool attach(const QByteArray &slave)
    {
        QByteArray answer;
        if (!m_rehearsal.sendStructural("veltra2 cascade add_slave " + slave, &answer)) {
            return false;
        }
        return answer == accepted
            || (m_rehearsal.sendStructural("veltra2 cascade add_scanned_slave " + slave)
                && m_rehearsal.sendStructural("veltra2 cascade add_slave " + slave));
    }

    void check(const QByteArray &slave)
    {
        bool isAvailable = false;
        m_rehearsal.askTruth("cascade connected_slave_available " + slave, &isAvailable);
        if (!isAvailable) {
            m_rehearsal.report("unable to reconnect slave '" + QString::fromLatin1(slave) + '\'');
            m_isComplete = false;
        }
    }

    Rehearsal &m_rehearsal;
    const BackupContents m_document = BackupContents::of(backedUp());
    const QByteArrayList m_slaves{"slave-kept", "slave-lost", "slave-forgotten"};
    bool m_withNetwork = false;
    QByteArrayList m_existing;
    QByteArrayList m_items;
    QByteArrayList m_connected;
    bool m_isComplete = true;
};

void rehearseRestore(Rehearsal &rehearsal, const QString &path)
{
    rehearsal.follow(restoreRules);
    rehearsal.openWindow("Load Configurations");
    rehearsal.show(overwriteQuestion);
    switch (Restore(rehearsal).run()) {
    case Ending::Restored:
        rehearsal.show(restored);
        break;
    case Ending::Incomplete:
        rehearsal.show(incompleteCascade);
        break;
    case Ending::Failed:
        rehearsal.send("system upload cancel");
        rehearsal.show(notRestored, path);
        break;
    case Ending::Lost:
        break;
    }
}

} // namespace

class TestSweepRestore : public QObject
{
    Q_OBJECT

private slots:
    void restore_data() { Sweep::addRows(); }
    void restore() { sweep(changed()); }
    void restoreWithoutNetwork_data() { Sweep::addRowsOfVariant(); }

    // The network of a controller that is not embedded is none of its business.
    void restoreWithoutNetwork()
    {
        ControllerState state = changed();
        state.isEmbedded = false;
        sweep(state);
    }

    void cleanupTestCase() { Sweep::sayTotal(); }

private:
    static void sweep(const ControllerState &before)
    {
        QString path;
        Sweep::run({[&path](Stage &stage) {
                        path = stage.chooseFile(restoredName);
                        stage.startOnList("pushButton_load");
                    },
                    [&path](Rehearsal &rehearsal) {
                        rehearseRestore(rehearsal, path);
                        rehearseRefresh(rehearsal);
                    },
                    {Sample::standard, Sample::active, Sample::locked},
                    before,
                    {{restoredName, BackupContents::of(backedUp()).document()}}});
    }
};

VELTRA4_TEST(TestSweepRestore)
#include "tst_sweeprestore.moc"

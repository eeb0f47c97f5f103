#include "network/networkchannel.h"
#include "tests/endtoend/frontend.h"
#include "tests/endtoend/table.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/network/serverprocess.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QtTest>

#include <array>
#include <optional>

namespace {

/// What happens to the controller in the middle of an operation.
enum class Trouble {
    Kill,    ///< it dies; another takes its place when the operation is over
    Stop,    ///< it stands still until the operation is over
    Restart, ///< it dies, and another takes its place at once
    Slow     ///< it stands still until one command has timed out
};

// While the controller stands still, time passes faster.
constexpr double hurry = 0.01;

constexpr int patienceMs = 60000; // for what happens on its own, however busy the machine is

ExpectedBox noContactBox()
{
    return {QMessageBox::Critical, QStringLiteral("Command Error"),
            QStringLiteral("no contact to Controller")};
}

ExpectedBox saveBox(QMessageBox::Icon icon, const QString &text)
{
    return {icon, QStringLiteral("Save Configurations"), text};
}

ExpectedBox savedBox(const QString &path)
{
    return saveBox(QMessageBox::Information,
                   QStringLiteral("Configuration data successfully written to the file\n") + path);
}

ExpectedBox notSavedBox(const QString &path)
{
    return saveBox(QMessageBox::Critical,
                   QStringLiteral("Configuration data written to the file %1 failed!\n").arg(path));
}

ExpectedBox backedUpBox()
{
    return {QMessageBox::Information, QStringLiteral("Success"), QStringLiteral("Backup created!")};
}

ExpectedBox notBackedUpBox()
{
    return {QMessageBox::Critical, QStringLiteral("Invalid backup"),
            QStringLiteral("Error while receiving backup information!")};
}

ExpectedBox loadBox(const QString &outcome)
{
    return {QMessageBox::Information, QStringLiteral("Load Configurations"),
            QStringLiteral("Loading configuration %1.").arg(outcome)};
}

ExpectedBox restoreQuestion(QMessageBox::Icon icon, const QString &text)
{
    return {icon,
            QStringLiteral("Confirmation"),
            text,
            QMessageBox::Yes,
            QMessageBox::Yes | QMessageBox::No,
            QMessageBox::No};
}

ExpectedBox restoredBox()
{
    return {QMessageBox::Information, QStringLiteral("Success"),
            QStringLiteral("Backup restored!")};
}

ExpectedBox notRestoredBox(const QString &path)
{
    return {QMessageBox::Critical, QStringLiteral("Invalid backup file"),
            QStringLiteral("Error while restoring from backup (%1).").arg(path)};
}

// What a refresh posts that finds nobody.
QStringList refreshErrors()
{
    return {errorMessage(QStringLiteral("Unable to get free space of configuration store")),
            errorMessage(QStringLiteral("Unable to get number of configurations"))};
}

// The sample with less to transfer, but still many chunks of it.
ControllerState lightSample()
{
    constexpr int size = 4000;
    ControllerState state = ControllerState::sample();
    for (Configuration &configuration : state.configurations) {
        configuration.data.truncate(size);
    }
    return state;
}

// A restore wants no locked configuration.
ControllerState unlockedSample()
{
    ControllerState state = lightSample();
    configurationIn(state, Sample::locked).password = SaltedHash();
    return state;
}

// A front end that has the plug-in loaded and is connected to a controller in another process.
class Scene
{
public:
    explicit Scene(const ControllerState &state)
        : server(state)
        , channel(server.address())
        , host(channel)
    {
    }

    /// Lets @p trouble happen when the n-th command from now that fits @p pattern is answered.
    void expectTrouble(Trouble trouble, const QString &pattern, int n);
    /// The controller is there again, and known to be.
    void recover();
    /// Whether the controller can be reached until the operation is over.
    static bool isReachable(Trouble trouble)
    {
        return trouble == Trouble::Restart || trouble == Trouble::Slow;
    }

    void save(const QString &path, const QVector<ExpectedBox> &boxes);
    void backUp(const QString &path, const ExpectedBox &box);
    /// Chooses @p path to be loaded, where the load dialog does not open.
    void chooseToLoad(const QString &path, const QVector<ExpectedBox> &boxes);
    /// Chooses @p path to be loaded, and loads all that the dialog shows.
    void load(const QString &path, const QVector<ExpectedBox> &boxes);
    void restore(const QString &path, const QVector<ExpectedBox> &outcome);
    QStringList listLines();

    ServerProcess server;
    NetworkChannel channel;
    ModuleHost host;

private:
    void strike(Trouble trouble);
    void goOn();

    std::optional<Trouble> m_trouble; // there is at the moment
    int m_troubleCount = 0;
};

void Scene::expectTrouble(Trouble trouble, const QString &pattern, int n)
{
    host.record.onCommand = [this, trouble, expression = QRegularExpression(pattern),
                             left = n](const QByteArray &command) mutable {
        if (m_trouble == Trouble::Slow) {
            goOn();
        } else if (!m_trouble && expression.match(QString::fromLatin1(command)).hasMatch()
                   && --left == 0) {
            strike(trouble);
        }
    };
}

void Scene::strike(Trouble trouble)
{
    m_trouble = trouble;
    ++m_troubleCount;
    switch (trouble) {
    case Trouble::Kill:
        server.kill();
        break;
    case Trouble::Restart:
        server.kill();
        server.restart();
        break;
    case Trouble::Stop:
    case Trouble::Slow:
        server.stop();
        channel.setTimeScale(hurry);
        break;
    }
}

void Scene::recover()
{
    QCOMPARE(m_troubleCount, 1);
    host.record.onCommand = {};
    goOn();
    // It may still count as silent.
    std::array<char, LineChannel::replyCapacity> reply = {};
    QTRY_COMPARE(channel.queryString(reply.data(), "status active"), 0);
}

void Scene::goOn()
{
    if (m_trouble == Trouble::Kill) {
        server.restart();
    } else if (m_trouble == Trouble::Stop || m_trouble == Trouble::Slow) {
        server.resume();
        channel.setTimeScale(1);
    }
    m_trouble.reset();
}

void Scene::save(const QString &path, const QVector<ExpectedBox> &boxes)
{
    host.useList([&](QDialog *list) {
        host.driver.expectDialog("ConfigSaveDlgClass", [&](QDialog *dialog) {
            UserInput::click(dialog, "checkBox_allSettings");
            UserInput::click(dialog, "pushButton_clearSelection");
            Table::click(dialog, Sample::fairText, Qt::ControlModifier);
            host.driver.expectFileDialog("Save configuration(s)", path);
            for (const ExpectedBox &box : boxes) {
                host.driver.expectBox(box);
            }
            UserInput::click(dialog, "pushButton_save");
            UserInput::click(dialog, "pushButton_exit");
        });
        UserInput::click(list, "pushButton_save");
    });
}

void Scene::backUp(const QString &path, const ExpectedBox &box)
{
    host.useList([&](QDialog *list) {
        host.driver.expectDialog("ConfigSaveDlgClass", [&](QDialog *dialog) {
            host.driver.expectFileDialog("Backup all settings", path);
            host.driver.expectBox(box);
            UserInput::click(dialog, "pushButton_save"); // everything is chosen at first
            UserInput::click(dialog, "pushButton_exit");
        });
        UserInput::click(list, "pushButton_save");
    });
}

void Scene::chooseToLoad(const QString &path, const QVector<ExpectedBox> &boxes)
{
    host.useList([&](QDialog *list) {
        host.driver.expectFileDialog("Load Configurations", path);
        for (const ExpectedBox &box : boxes) {
            host.driver.expectBox(box);
        }
        UserInput::click(list, "pushButton_load");
    });
}

void Scene::load(const QString &path, const QVector<ExpectedBox> &boxes)
{
    host.useList([&](QDialog *list) {
        host.driver.expectFileDialog("Load Configurations", path);
        host.driver.expectDialog("ConfigLoadDlgClass", [&](QDialog *dialog) {
            for (const ExpectedBox &box : boxes) {
                host.driver.expectBox(box);
            }
            UserInput::click(dialog, "pushButton_load"); // all are selected at first
        });
        UserInput::click(list, "pushButton_load");
    });
}

void Scene::restore(const QString &path, const QVector<ExpectedBox> &outcome)
{
    const QVector<ExpectedBox> questions{
        restoreQuestion(
            QMessageBox::Warning,
            QStringLiteral("Restoring this backup overwrites all settings and already existing "
                           "configurations.\n\nAny previous settings will get lost!\n\nProceed?")),
        restoreQuestion(
            QMessageBox::Question,
            QStringLiteral("Hostname and ip settings can be restored. After reboot the XQU might "
                           "not be reachable via network due to wrong network "
                           "settings.\n\nRestore?"))};
    chooseToLoad(path, questions + outcome);
}

QStringList Scene::listLines()
{
    QStringList lines;
    host.useList([&lines](QDialog *list) { lines = Table::lines(list); });
    return lines;
}

// What was there is there still; what is left of an interrupted operation may have been added.
void verifyNothingIsMissing(const ControllerState &now, const ControllerState &before)
{
    for (const Configuration &configuration : before.configurations) {
        QVERIFY2(now.configurations.contains(configuration), configuration.identifier.constData());
    }
}

} // namespace

Q_DECLARE_METATYPE(Trouble)

class TestEndToEndNetwork : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_home.emplace(); }

    void cleanup()
    {
        m_home.reset();
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void refreshing_data() { troubles(); }

    void refreshing()
    {
        QFETCH(const Trouble, trouble);
        Scene scene(lightSample());
        const QStringList before = scene.listLines();
        QCOMPARE(before.size(), 12);
        QCOMPARE(scene.host.record.takeMessages(), QStringList());

        scene.expectTrouble(trouble, "^config desc_of_config ", 3);
        const QStringList during = scene.listLines();
        const QStringList messages = scene.host.record.takeMessages();
        QCOMPARE(during.size(), 12);
        if (trouble == Trouble::Restart) {
            QCOMPARE(messages, QStringList());
            QCOMPARE(during, before);
        } else if (trouble == Trouble::Slow) {
            QCOMPARE(messages,
                     QStringList{errorMessage("Unable to get whether configuration has pasword")});
        } else {
            QCOMPARE(messages.size(), 1 + 9 * 4); // all that was left to be asked
            scene.host.driver.expectBox(noContactBox());
            scene.host.triggerAction();
            QCOMPARE(scene.host.record.takeMessages(), refreshErrors());
        }

        scene.recover();
        QCOMPARE(scene.listLines(), before);
        QCOMPARE(scene.host.record.takeMessages(), QStringList());
        QCOMPARE(scene.server.state(), lightSample());
    }

    void saving_data() { troubles(); }

    void saving()
    {
        QFETCH(const Trouble, trouble);
        Scene scene(lightSample());
        scene.expectTrouble(trouble, "^system download [0-9]+$", 5);
        scene.save(path("broken.dat"), {notSavedBox(path("broken.dat"))});
        const QStringList messages = scene.host.record.takeMessages();
        if (Scene::isReachable(trouble)) {
            // The copy is gone, and the one that was active is so again.
            QCOMPARE(messages, QStringList());
            QCOMPARE(scene.server.state(), lightSample());
        } else {
            QCOMPARE(messages.size(), 2);
            QVERIFY2(messages.at(0).startsWith(errorMessage(
                         "Error save configuration: Cannot delete configuration config")),
                     qPrintable(messages.at(0)));
            QCOMPARE(messages.at(1),
                     errorMessage("Error save configuration: Cannot set active configuration '"
                                  + QString::fromLatin1(Sample::active) + '\''));
        }

        scene.recover();
        scene.save(path("whole.dat"), {savedBox(path("whole.dat"))});
        QCOMPARE(scene.host.record.takeMessages(), QStringList());
        verifyNothingIsMissing(scene.server.state(), lightSample());
        QVector<Archive::Item> items;
        QString error;
        QVERIFY2(Archive::unpack(TransferFiles::contentsOf(path("whole.dat")), &items, &error),
                 qPrintable(error));
        QCOMPARE(items.size(), 1);
        QCOMPARE(items.at(0).data, configurationIn(lightSample(), Sample::fair).data);
    }

    void backingUp_data() { troubles(); }

    void backingUp()
    {
        QFETCH(const Trouble, trouble);
        Scene scene(lightSample());
        scene.expectTrouble(trouble, "^system download [0-9]+$", 50);
        scene.backUp(path("broken.xml"), notBackedUpBox());
        QVERIFY(!QFileInfo::exists(path("broken.xml")));
        QCOMPARE(scene.host.record.takeMessages(), QStringList());

        scene.recover();
        scene.backUp(path("whole.xml"), backedUpBox());
        QVERIFY(QFileInfo::exists(path("whole.xml")));
        QCOMPARE(scene.host.record.takeMessages(), QStringList());
        QCOMPARE(scene.server.state(), lightSample());
    }

    void backingUpEveryDay()
    {
        Scene scene(lightSample());
        scene.host.tellVersion(HostVersion::current);
        scene.expectTrouble(Trouble::Kill, "^system download [0-9]+$", 50);
        QStringList messages;
        QTRY_VERIFY_WITH_TIMEOUT((messages += scene.host.record.takeMessages()).size() == 1,
                                 patienceMs);
        QCOMPARE(messages, QStringList{errorMessage("Error execute the automatic backup")});
        QCOMPARE(QDir(path(".ZOR/VELTRA4/v4.2.0/backup")).entryList(QDir::Files), QStringList());
        scene.recover();
        QCOMPARE(scene.listLines().size(), 12);
        QCOMPARE(scene.server.state(), lightSample());
    }

    void uploading_data() { troubles(); }

    void uploading()
    {
        QFETCH(const Trouble, trouble);
        ControllerState state = lightSample();
        const Configuration fair = configurationIn(state, Sample::fair);
        TransferFiles::write(path("one.dat"), Archive::pack({TransferFiles::item(fair)}));
        removeConfiguration(state, Sample::fair);
        Scene scene(state);
        state.configurations << fair; // as it is to be in the end

        scene.expectTrouble(trouble, "^system upload [0-9]+ ", 20);
        if (trouble == Trouble::Slow) {
            // The chunk was taken in spite of it, and nobody asked for the result.
            scene.load(path("one.dat"), {loadBox("successfully")});
            QCOMPARE(scene.host.record.takeMessages(), QStringList{changeEvent()});
            scene.recover();
        } else {
            const QStringList error{errorMessage("Error: Unable to get loaded configurations")};
            const bool isReachable = Scene::isReachable(trouble);
            scene.chooseToLoad(path("one.dat"),
                               isReachable ? QVector<ExpectedBox>()
                                           : QVector<ExpectedBox>{noContactBox()});
            QCOMPARE(scene.host.record.takeMessages(),
                     isReachable ? error : error + refreshErrors());
            scene.recover();
            scene.load(path("one.dat"), {loadBox("successfully")});
            QCOMPARE(scene.host.record.takeMessages(), QStringList{changeEvent()});
        }
        QCOMPARE(scene.server.state(), state);
    }

    void importing_data() { troubles(); }

    // What is to be replaced is deleted before; then the controller is not there.
    void importing()
    {
        QFETCH(const Trouble, trouble);
        const ControllerState before = lightSample();
        TransferFiles::write(
            path("two.dat"),
            Archive::pack({TransferFiles::item(configurationIn(before, Sample::fair)),
                           TransferFiles::item(configurationIn(before, Sample::rotor))}));
        Scene scene(before);
        scene.expectTrouble(trouble, "^veltra2 config delete_config ", 1);
        if (trouble == Trouble::Slow) {
            scene.load(path("two.dat"), {loadBox("successfully")});
            QCOMPARE(scene.host.record.takeMessages(), QStringList{changeEvent()});
            scene.recover();
        } else {
            const bool isReachable = Scene::isReachable(trouble);
            QVector<ExpectedBox> boxes{loadBox("unsuccessfully")};
            if (!isReachable) {
                boxes << noContactBox(); // from the list behind the dialog
            }
            scene.load(path("two.dat"), boxes);
            const QStringList event{changeEvent()};
            QCOMPARE(scene.host.record.takeMessages(),
                     isReachable ? event : event + refreshErrors());
            scene.recover();
            scene.load(path("two.dat"), {loadBox("successfully")});
        }
        const ControllerState after = scene.server.state();
        QCOMPARE(after.configurations.size(), before.configurations.size());
        verifyNothingIsMissing(after, before);
        QCOMPARE(after.activeIdentifier, before.activeIdentifier);
    }

    void restoring_data() { troubles(); }

    void restoring()
    {
        QFETCH(const Trouble, trouble);
        const ControllerState before = unlockedSample();
        Scene scene(before);
        scene.backUp(path("backup.xml"), backedUpBox());
        QCOMPARE(scene.channel.sendCommand("system net dhcp"), 0);
        std::array<char, LineChannel::replyCapacity> reply = {};
        QCOMPARE(scene.channel.sendCommandReply(reply.data(), "veltra2 config delete_config %s",
                                                Sample::fair.constData()),
                 0);
        scene.host.record.takeMessages();

        scene.expectTrouble(trouble, "^system import 'config'", 4);
        QVector<ExpectedBox> boxes{notRestoredBox(path("backup.xml"))};
        if (!Scene::isReachable(trouble)) {
            boxes << noContactBox();
        }
        scene.restore(path("backup.xml"), boxes);
        QCOMPARE(scene.host.record.takeMessages(),
                 Scene::isReachable(trouble) ? QStringList() : refreshErrors());
        QVERIFY(scene.server.state() != before);

        scene.recover();
        scene.restore(path("backup.xml"), {restoredBox()});
        QCOMPARE(scene.host.record.takeMessages(), QStringList{changeEvent()});
        QCOMPARE(scene.server.state(), before);
    }

private:
    static void troubles()
    {
        QTest::addColumn<Trouble>("trouble");
        QTest::newRow("killed") << Trouble::Kill;
        QTest::newRow("stopped") << Trouble::Stop;
        QTest::newRow("restarted") << Trouble::Restart;
        QTest::newRow("slow") << Trouble::Slow;
    }

    QString path(const QString &name) const { return m_home->filePath(name); }

    std::optional<TemporaryHome> m_home;
};

VELTRA4_TEST(TestEndToEndNetwork)
#include "tst_endtoendnetwork.moc"

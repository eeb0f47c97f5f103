#include "network/networkchannel.h"
#include "tests/endtoend/frontend.h"
#include "tests/network/serverprocess.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QTest>

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

// What a refresh that finds nobody shows, and what it posts.
const ExpectedBox noContactBox{QMessageBox::Critical, "Command Error", "no contact to Controller"};
const QStringList refreshErrors{errorMessage("Unable to get free space of configuration store"),
                                errorMessage("Unable to get number of configurations")};

ExpectedBox restoreQuestion(QMessageBox::Icon icon, const QString &text)
{
    return {
        icon,           "Confirmation", text, QMessageBox::Yes, QMessageBox::Yes | QMessageBox::No,
        QMessageBox::No};
}

// A front end that has the plug-in loaded and is connected to a controller in another process.
class Scene
{
public:
    Scene()
        : server(Sample::light())
        , channel(server.address())
        , host(channel)
    {
    }

    /// Lets @p trouble happen when the n-th command from now that fits @p pattern is answered.
    void expectTrouble(Trouble trouble, const QString &pattern, int n)
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

    /// The controller is there again, and known to be.
    void recover()
    {
        QCOMPARE(m_troubleCount, 1);
        host.record.onCommand = {};
        goOn();
        // It may still count as silent.
        std::array<char, LineChannel::replyCapacity> reply = {};
        QTRY_COMPARE(channel.queryString(reply.data(), "status active"), 0);
    }

    void backUp(const QString &path)
    {
        host.useList([&](QDialog *list) {
            host.driver.expectDialog("ConfigSaveDlgClass", [&](QDialog *dialog) {
                host.driver.expectFileDialog("Backup all settings", path);
                host.driver.expectBox({QMessageBox::Information, "Success", "Backup created!"});
                UserInput::click(dialog, "pushButton_save"); // everything is chosen at first
                UserInput::click(dialog, "pushButton_exit");
            });
            UserInput::click(list, "pushButton_save");
        });
    }

    void restore(const QString &path, const QVector<ExpectedBox> &outcome)
    {
        const QVector<ExpectedBox> questions{
            restoreQuestion(QMessageBox::Warning,
                            "Restoring this backup overwrites all settings and already existing "
                            "configurations.\n\nAny previous settings will get lost!\n\nProceed?"),
            restoreQuestion(QMessageBox::Question,
                            "Hostname and ip settings can be restored. After reboot the XQU might "
                            "not be reachable via network due to wrong network "
                            "settings.\n\nRestore?")};
        host.useList([&](QDialog *list) {
            host.driver.expectFileDialog("Load Configurations", path);
            for (const ExpectedBox &box : questions + outcome) {
                host.driver.expectBox(box);
            }
            UserInput::click(list, "pushButton_load");
        });
    }

    ServerProcess server;
    NetworkChannel channel;
    ModuleHost host;

private:
    void strike(Trouble trouble)
    {
        m_trouble = trouble;
        ++m_troubleCount;
        if (trouble == Trouble::Stop || trouble == Trouble::Slow) {
            server.stop();
            channel.setTimeScale(hurry);
            return;
        }
        server.kill();
        if (trouble == Trouble::Restart) {
            server.restart();
        }
    }

    void goOn()
    {
        if (m_trouble == Trouble::Kill) {
            server.restart();
        } else if (m_trouble == Trouble::Stop || m_trouble == Trouble::Slow) {
            server.resume();
            channel.setTimeScale(1);
        }
        m_trouble.reset();
    }

    std::optional<Trouble> m_trouble; // there is at the moment
    int m_troubleCount = 0;
};

} // namespace

Q_DECLARE_METATYPE(Trouble)

/// The longest operation by somebody at the screen, while something happens to the process of the
/// controller. What the plug-in makes of each command that fails is stated by the sweeps.
class TestEndToEndNetwork : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QVERIFY(!QGuiApplication::overrideCursor()); }

    void restoring_data() { troubles(); }

    void restoring()
    {
        QFETCH(const Trouble, trouble);
        const TemporaryHome home;
        const QString path = home.filePath("backup.xml");
        Scene scene;
        scene.backUp(path);
        QCOMPARE(scene.channel.sendCommand("system net dhcp"), 0);
        std::array<char, LineChannel::replyCapacity> reply = {};
        QCOMPARE(scene.channel.sendCommandReply(reply.data(), "veltra2 config delete_config %s",
                                                Sample::fair.constData()),
                 0);
        scene.host.record.takeMessages();

        scene.expectTrouble(trouble, "^system import 'config'", 4);
        const bool isReachable = trouble == Trouble::Restart || trouble == Trouble::Slow;
        QVector<ExpectedBox> boxes{{QMessageBox::Critical, "Invalid backup file",
                                    "Error while restoring from backup (" + path + ")."}};
        if (!isReachable) {
            boxes << noContactBox;
        }
        scene.restore(path, boxes);
        QCOMPARE(scene.host.record.takeMessages(), isReachable ? QStringList() : refreshErrors);
        QVERIFY(scene.server.state() != Sample::light());

        scene.recover();
        scene.restore(path, {{QMessageBox::Information, "Success", "Backup restored!"}});
        QCOMPARE(scene.host.record.takeMessages(), QStringList{changeEvent()});
        QCOMPARE(scene.server.state(), Sample::light());
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
};

VELTRA4_TEST(TestEndToEndNetwork)
#include "tst_endtoendnetwork.moc"

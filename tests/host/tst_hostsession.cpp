#include "host/hostsession.h"

#include "channel/replybuffer.h"
#include "host/hostoptions.h"
#include "host/simulatedlink.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QAbstractItemView>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTest>

class TestHostSession : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SimulatedLink> m_link;
    std::unique_ptr<HostSession> m_session;
    HostOptions m_options;

    void open() { m_session = std::make_unique<HostSession>(*m_link, m_options); }

    void load()
    {
        open();
        QString problem;
        QVERIFY2(m_session->load(&problem), qPrintable(problem));
    }

    void start()
    {
        load();
        m_session->start();
    }

    LineChannel &channel() { return m_link->moduleChannel(); }

    QString query(const char *command)
    {
        ReplyBuffer reply;
        return channel().queryString(reply.data(), "%s", command) == 0 ? reply.text() : "failed";
    }

    QStringList menuTitles()
    {
        QStringList titles;
        const QList<QAction *> actions = m_session->window().menuBar()->actions();
        for (const QAction *action : actions) {
            titles << action->text();
        }
        return titles;
    }

    QString label(const char *name)
    {
        return UserInput::named<QLabel>(&m_session->window(), name)->text();
    }

    // The cells of a log's columns, row by row.
    QStringList cells(const char *log, const QVector<int> &columns)
    {
        QCoreApplication::processEvents();
        const QAbstractItemModel *model =
            UserInput::named<QAbstractItemView>(&m_session->window(), log)->model();
        QStringList texts;
        for (int row = 0; row < model->rowCount(); ++row) {
            for (const int column : columns) {
                texts << model->index(row, column).data().toString();
            }
        }
        return texts;
    }

    // Where the probe leaves what it was given.
    QStringList events() { return cells("tableView_events", {4}); }

private slots:
    void init()
    {
        m_link = std::make_unique<SimulatedLink>();
        m_options = HostOptions();
        m_options.pluginFile = QCoreApplication::applicationDirPath() + "/probemodule.so";
    }

    void cleanup()
    {
        m_session.reset();
        m_link.reset();
    }

    void theModuleGetsItsPropertiesBeforeAndTheHostVersionAfterItsMenuEntries()
    {
        start();
        QCOMPARE(menuTitles(), QStringList({"&File", "V&iew", "&VELTRA4", "&Help"}));
        QCOMPARE(events(), QStringList({"model Indoor Tracker 5", "message Veltra2 v4.12.3"}));
    }

    void optionsReachTheModuleAndTheWindow()
    {
        m_options.systemModel = "Other";
        m_options.hostVersion = "v3.9";
        start();
        QCOMPARE(events(), QStringList({"model Other", "message Veltra2 v3.9"}));
        QCOMPARE(label("label_model"), "Other");
    }

    void anObservingModuleOffersNothing()
    {
        m_options.isObserver = true;
        start();
        QCOMPARE(menuTitles(), QStringList({"&File", "V&iew", "&Help"}));
    }

    void theModuleIsReleasedInTheEnd()
    {
        const auto &receiving = static_cast<const SimulatedChannel &>(channel());
        start();
        QCOMPARE(receiving.receiverCount(), 1);
        m_session.reset();
        QCOMPARE(receiving.receiverCount(), 0);
    }

    void theWindowIsThereBeforeTheFirstQuestionAndShowsThenWhoTheControllerIs()
    {
        const QList<QPair<const char *, QString>> labels{
            {"label_hostName", "tracker-lab2"},
            {"label_serial", "40217"},
            {"label_model", "Indoor Tracker 5"},
            {"label_ptVersion", "4.2.0"},
            {"label_interfaceVersion", "1.27.0"},
            {"label_activeDescription", "Robot cell 2, tool centre point"}};
        load();
        for (const auto &[name, text] : labels) {
            QCOMPARE(label(name), "\u2014");
        }
        m_session->start();
        for (const auto &[name, text] : labels) {
            QCOMPARE(label(name), text);
        }
    }

    void theActiveConfigurationIsReadAgainWhenAModuleAnnouncesAChange()
    {
        start();
        QCOMPARE(channel().sendCommand("config active_config %s", "standard"), 0);
        channel().postMessage("GlobalEvent", "ConfigurationModule", 1,
                              "ActiveConfigurationChanged");
        QVERIFY(label("label_activeConfiguration") != "standard");
        QCoreApplication::processEvents();
        QCOMPARE(label("label_activeConfiguration"), "standard");
    }

    void otherMessagesAreOnlyLogged()
    {
        open();
        const QSignalSpy shown(m_session.get(), &HostSession::identityShown);
        channel().postMessage("standard", "VELTRA4", 1, "ActiveConfigurationChanged");
        QCOMPARE(events(), QStringList("ActiveConfigurationChanged"));
        QCOMPARE(shown.count(), 0);
    }

    void commandsAreLoggedWithWhatBecameOfThem()
    {
        open();
        channel().setTimeout(0, 20000, 1);
        query("system hostname");
        channel().sendCommand("no such command");
        QCOMPARE(cells("tableView_commands", {1, 2, 3, 4}),
                 QStringList({"setTimeout", "0 20000 1", "", "", "queryString", "system hostname",
                              "tracker-lab2", "0", "sendCommand", "no such command", "",
                              "1 (unknown command)"}));
        QVERIFY(cells("tableView_commands", {5}).at(1).endsWith(" ms"));
    }

    void theStatusBarTellsTheAutomaticBackup()
    {
        open();
        query("status active");
        QCOMPARE(label("label_transfer"), "Automatic backup");
        QCoreApplication::processEvents(); // none was made
        QCOMPARE(label("label_transfer"), "");
        query("status active");
        channel().sendCommand("system download prepare 'config' 'standard'");
        const QString total = query("system download 1").trimmed().section(' ', 0, 0);
        QCOMPARE(label("label_transfer"), "Automatic backup: chunk 1 of " + total);
        QCoreApplication::processEvents(); // the module has returned to the event loop
        channel().sendCommand("system download cancel");
        QCOMPARE(label("label_transfer"), "Download cancelled");
    }

    void theStatusBarFollowsATransferWithoutTheEventLoop()
    {
        open();
        m_session->window().show();
        const auto *bar =
            UserInput::named<QProgressBar>(&m_session->window(), "progressBar_transfer");
        const QByteArray fullChunk(134, 'A');
        QCOMPARE(channel().sendCommand("system upload 4 1 %s", fullChunk.constData()), 0);
        QVERIFY(bar->isVisible());
        QCOMPARE(bar->value(), 25);
        QCOMPARE(label("label_transfer"), "Upload: chunk 1 of 4");
        channel().sendCommand("system upload cancel");
        QVERIFY(!bar->isVisible());
        QCOMPARE(label("label_transfer"), "Upload cancelled");
    }
};

VELTRA4_TEST(TestHostSession)
#include "tst_hostsession.moc"

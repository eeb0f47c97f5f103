#include "host/hostsession.h"

#include "host/hostoptions.h"
#include "host/simulatedlink.h"
#include "tests/support/testmain.h"

#include <QAbstractItemView>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QtTest>

class TestHostSession : public QObject
{
    Q_OBJECT

private:
    static HostOptions probe()
    {
        HostOptions options;
        options.pluginFile =
            QDir(QCoreApplication::applicationDirPath()).filePath("probemodule.so");
        return options;
    }

    static void start(HostSession &session)
    {
        QString problem;
        QVERIFY2(session.load(&problem), qPrintable(problem));
        session.start();
    }

    static QStringList menuTitles(HostSession &session)
    {
        QStringList titles;
        const QList<QAction *> actions = session.window().menuBar()->actions();
        for (const QAction *action : actions) {
            titles << action->text();
        }
        return titles;
    }

    static QString label(HostSession &session, const QString &name)
    {
        return session.window().findChild<QLabel *>(name)->text();
    }

    // The texts of the Events log, where the probe leaves what it was given.
    static QStringList events(HostSession &session)
    {
        QCoreApplication::processEvents();
        const auto *log = session.window().findChild<QAbstractItemView *>("tableView_events");
        QStringList texts;
        for (int row = 0; row < log->model()->rowCount(); ++row) {
            texts << log->model()->index(row, 4).data().toString();
        }
        return texts;
    }

private slots:
    void theModuleGetsItsPropertiesBeforeAndTheHostVersionAfterItsMenuEntries()
    {
        SimulatedLink link;
        HostSession session(link, probe());
        start(session);
        QCOMPARE(menuTitles(session), QStringList({"&File", "V&iew", "&VELTRA4", "&Help"}));
        QCOMPARE(events(session),
                 QStringList({"model Indoor Tracker 5", "message Veltra2 v4.12.3"}));
    }

    void optionsReachTheModule()
    {
        HostOptions options = probe();
        options.systemModel = "Other";
        options.hostVersion = "v3.9";
        SimulatedLink link;
        HostSession session(link, options);
        start(session);
        QCOMPARE(events(session), QStringList({"model Other", "message Veltra2 v3.9"}));
    }

    void anObservingModuleOffersNothing()
    {
        HostOptions options = probe();
        options.isObserver = true;
        SimulatedLink link;
        HostSession session(link, options);
        start(session);
        QCOMPARE(menuTitles(session), QStringList({"&File", "V&iew", "&Help"}));
    }

    void aModuleThatCannotBeLoadedIsReported()
    {
        HostOptions options;
        options.pluginFile = "nosuch.so";
        SimulatedLink link;
        HostSession session(link, options);
        QString problem;
        QVERIFY(!session.load(&problem));
        QVERIFY(problem.contains("nosuch.so"));
    }

    void theModuleIsReleasedInTheEnd()
    {
        SimulatedLink link;
        const auto &channel = static_cast<const SimulatedChannel &>(link.moduleChannel());
        {
            HostSession session(link, probe());
            start(session);
            QCOMPARE(channel.receiverCount(), 1);
        }
        QCOMPARE(channel.receiverCount(), 0);
    }

    void theWindowIsThereBeforeTheFirstQuestion()
    {
        SimulatedLink link;
        HostSession session(link, probe());
        QString problem;
        QVERIFY(session.load(&problem));
        for (const char *unknown : {"label_hostName", "label_model", "label_ptVersion",
                                    "label_interfaceVersion", "label_activeDescription"}) {
            QCOMPARE(label(session, unknown), QStringLiteral("\u2014"));
        }
        session.start();
        QCOMPARE(label(session, "label_ptVersion"), QStringLiteral("4.2.0"));
    }

    void theWindowShowsTheModelThatTheModuleIsTold()
    {
        HostOptions options = probe();
        options.systemModel = "Other";
        SimulatedLink link;
        HostSession session(link, options);
        start(session);
        QCOMPARE(label(session, "label_model"), QStringLiteral("Other"));
    }

    void theWindowShowsWhoTheControllerIs()
    {
        SimulatedLink link;
        HostSession session(link, probe());
        start(session);
        QCOMPARE(label(session, "label_hostName"), QStringLiteral("tracker-lab2"));
        QCOMPARE(label(session, "label_serial"), QStringLiteral("40217"));
        QCOMPARE(label(session, "label_interfaceVersion"), QStringLiteral("1.27.0"));
        QCOMPARE(label(session, "label_activeDescription"),
                 QStringLiteral("Robot cell 2, tool centre point"));
    }

    void theActiveConfigurationIsReadAgainWhenAModuleAnnouncesAChange()
    {
        SimulatedLink link;
        HostSession session(link, probe());
        start(session);
        QCOMPARE(link.moduleChannel().sendCommand("config active_config %s", "standard"), 0);
        link.moduleChannel().postMessage("GlobalEvent", "ConfigurationModule", 1,
                                         "ActiveConfigurationChanged");
        QVERIFY(label(session, "label_activeConfiguration") != QLatin1String("standard"));
        QCoreApplication::processEvents();
        QCOMPARE(label(session, "label_activeConfiguration"), QStringLiteral("standard"));
    }

    void otherMessagesAreOnlyLogged()
    {
        SimulatedLink link;
        HostSession session(link, probe());
        const QSignalSpy shown(&session, &HostSession::identityShown);
        link.moduleChannel().postMessage("standard", "VELTRA4", 1, "ActiveConfigurationChanged");
        QCOMPARE(events(session), QStringList("ActiveConfigurationChanged"));
        QCOMPARE(shown.count(), 0);
    }

    void commandsAreLoggedWithWhatBecameOfThem()
    {
        SimulatedLink link;
        HostSession session(link, probe());
        char reply[200] = "";
        link.moduleChannel().setTimeout(0, 20000, 1);
        link.moduleChannel().queryString(reply, "system hostname");
        link.moduleChannel().sendCommand("no such command");
        QCoreApplication::processEvents();
        const auto *log = session.window().findChild<QAbstractItemView *>("tableView_commands");
        const auto cell = [log](int row, int column) {
            return log->model()->index(row, column).data().toString();
        };
        QCOMPARE(log->model()->rowCount(), 3);
        QCOMPARE(cell(0, 1) + ' ' + cell(0, 2), QStringLiteral("setTimeout 0 20000 1"));
        QCOMPARE(cell(1, 1), QStringLiteral("queryString"));
        QCOMPARE(cell(1, 2), QStringLiteral("system hostname"));
        QCOMPARE(cell(1, 3), QStringLiteral("tracker-lab2"));
        QCOMPARE(cell(1, 4), QStringLiteral("0"));
        QVERIFY(cell(1, 5).endsWith(" ms"));
        QVERIFY2(cell(2, 4).startsWith("1 ("), qPrintable(cell(2, 4)));
    }

    void theStatusBarTellsTheAutomaticBackup()
    {
        SimulatedLink link;
        HostSession session(link, probe());
        session.window().show();
        char reply[200] = "";
        link.moduleChannel().queryString(reply, "status active");
        QCOMPARE(label(session, "label_transfer"), QStringLiteral("Automatic backup"));
        link.moduleChannel().sendCommand("system download prepare 'config' 'standard'");
        link.moduleChannel().queryString(reply, "system download 1");
        const QString total = QString(reply).trimmed().section(' ', 0, 0);
        QCOMPARE(label(session, "label_transfer"),
                 QStringLiteral("Automatic backup: chunk 1 of ") + total);
        // It is over when the module returns to the event loop.
        QCoreApplication::processEvents();
        link.moduleChannel().sendCommand("system download cancel");
        QCOMPARE(label(session, "label_transfer"), QStringLiteral("Download cancelled"));
    }

    void aBackupThatIsNotMadeLeavesNothingInTheStatusBar()
    {
        SimulatedLink link;
        HostSession session(link, probe());
        char reply[200] = "";
        link.moduleChannel().queryString(reply, "status active");
        QCoreApplication::processEvents();
        QCOMPARE(label(session, "label_transfer"), QString());
    }

    void theStatusBarFollowsATransferWithoutTheEventLoop()
    {
        SimulatedLink link;
        HostSession session(link, probe());
        session.window().show();
        const auto *bar = session.window().findChild<QProgressBar *>("progressBar_transfer");
        const QByteArray fullChunk(134, 'A');
        QCOMPARE(
            link.moduleChannel().sendCommand("system upload %d %d %s", 4, 1, fullChunk.constData()),
            0);
        QVERIFY(bar->isVisible());
        QCOMPARE(bar->value(), 25);
        QCOMPARE(label(session, "label_transfer"), QStringLiteral("Upload: chunk 1 of 4"));
        link.moduleChannel().sendCommand("system upload cancel");
        QVERIFY(!bar->isVisible());
        QCOMPARE(label(session, "label_transfer"), QStringLiteral("Upload cancelled"));
    }
};

VELTRA4_TEST(TestHostSession)
#include "tst_hostsession.moc"

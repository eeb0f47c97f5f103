#include "host/simulatedlink.h"

#include "host/channelmonitor.h"
#include "host/controlleridentity.h"
#include "simulator/statefile.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>
#include <QtTest>

class TestSimulatedLink : public QObject
{
    Q_OBJECT

private:
    static ControllerState stateIn(const QString &path)
    {
        ControllerState state;
        QString error;
        if (!StateFile::load(path, &state, &error)) {
            QTest::qFail(qPrintable(error), __FILE__, __LINE__);
        }
        return state;
    }

    QTemporaryDir m_folder;

private slots:
    void aMissingStateFileIsCreated()
    {
        const QString path = m_folder.filePath("new.json");
        SimulatedLink link;
        QString problem;
        QVERIFY(link.keepStateIn(path, &problem));
        QVERIFY(stateIn(path) == ControllerState::sample());
    }

    void theStateFileIsTakenUp()
    {
        const QString path = m_folder.filePath("old.json");
        ControllerState state = ControllerState::sample();
        state.hostName = "somewhere-else";
        QString problem;
        QVERIFY(StateFile::save(path, state, &problem));
        SimulatedLink link;
        QVERIFY(link.keepStateIn(path, &problem));
        QCOMPARE(readControllerIdentity(link.hostChannel()).hostName,
                 QStringLiteral("somewhere-else"));
    }

    void changesReachTheFileAtTheNextTurnOfTheEventLoop()
    {
        const QString path = m_folder.filePath("changing.json");
        SimulatedLink link;
        QString problem;
        QVERIFY(link.keepStateIn(path, &problem));
        QCOMPARE(link.moduleChannel().sendCommand("config active_config %s", "standard"), 0);
        QCoreApplication::processEvents();
        QCOMPARE(stateIn(path).activeIdentifier, QByteArray("standard"));
    }

    void changesReachTheFileInTheEndAtTheLatest()
    {
        const QString path = m_folder.filePath("ending.json");
        {
            SimulatedLink link;
            QString problem;
            QVERIFY(link.keepStateIn(path, &problem));
            QCOMPARE(link.moduleChannel().sendCommand("config active_config %s", "standard"), 0);
        }
        QCOMPARE(stateIn(path).activeIdentifier, QByteArray("standard"));
    }

    void unusableStateFilesAreRefused_data()
    {
        QTest::addColumn<QString>("path");
        const QString broken = m_folder.filePath("broken.json");
        QFile file(broken);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{");
        QTest::newRow("broken") << broken;
        QTest::newRow("in a missing folder") << m_folder.filePath("missing/state.json");
    }

    void unusableStateFilesAreRefused()
    {
        QFETCH(const QString, path);
        SimulatedLink link;
        QString problem;
        QVERIFY(!link.keepStateIn(path, &problem));
        QVERIFY2(problem.contains(path), qPrintable(problem));
    }

    void theHostsOwnQuestionsDisturbNothing()
    {
        SimulatedLink link;
        ChannelMonitor monitor;
        const QSignalSpy sent(&monitor, &ChannelMonitor::commandSent);
        link.moduleChannel().setObserver(&monitor);
        link.faults().addNth(1);
        readControllerIdentity(link.hostChannel());
        QCOMPARE(sent.count(), 0);
        char reply[200] = "";
        QVERIFY(link.moduleChannel().queryString(reply, "system hostname") != 0);
        QCOMPARE(sent.count(), 1);
    }

    void theIdentityOfASilentControllerIsEmpty()
    {
        SimulatedLink link;
        link.faults().addNth(1, {}, true);
        const ControllerIdentity identity = readControllerIdentity(link.moduleChannel());
        QCOMPARE(identity.hostName, QString());
        QCOMPARE(identity.activeConfiguration, QString());
        QCOMPARE(identity.activeDescription, QString());
    }
};

VELTRA4_TEST(TestSimulatedLink)
#include "tst_simulatedlink.moc"

#include "host/simulatedlink.h"

#include "host/channelmonitor.h"
#include "host/controlleridentity.h"
#include "simulator/statefile.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>
#include <QSignalSpy>
#include <QTest>

class TestSimulatedLink : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    std::unique_ptr<SimulatedLink> m_link;

    void keepState()
    {
        QString problem;
        QVERIFY2(m_link->keepStateIn(m_path, &problem), qPrintable(problem));
    }

    ControllerState kept() const
    {
        ControllerState state;
        QString error;
        if (!StateFile::load(m_path, &state, &error)) {
            QTest::qFail(qPrintable(error), __FILE__, __LINE__);
        }
        return state;
    }

    void activate(const char *identifier)
    {
        QCOMPARE(m_link->moduleChannel().sendCommand("config active_config %s", identifier), 0);
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath("state.json");
        m_link = std::make_unique<SimulatedLink>();
    }

    void cleanup() { m_link.reset(); }

    void aMissingStateFileIsCreated()
    {
        keepState();
        QVERIFY(kept() == ControllerState::sample());
    }

    void theStateFileIsTakenUp()
    {
        ControllerState state = ControllerState::sample();
        state.hostName = "somewhere-else";
        QString problem;
        QVERIFY(StateFile::save(m_path, state, &problem));
        keepState();
        QCOMPARE(readControllerIdentity(m_link->hostChannel()).hostName, "somewhere-else");
    }

    void changesReachTheFileAtTheNextTurnOfTheEventLoopOrInTheEnd()
    {
        keepState();
        activate("standard");
        QCoreApplication::processEvents();
        QCOMPARE(kept().activeIdentifier, "standard");
        const QByteArray another = kept().configurations.at(1).identifier;
        activate(another.constData());
        m_link.reset();
        QCOMPARE(kept().activeIdentifier, another);
    }

    void unusableStateFilesAreRefused()
    {
        for (const QString &path : {QString("/etc/passwd"), m_folder->filePath("missing/file")}) {
            QString problem;
            QVERIFY(!m_link->keepStateIn(path, &problem));
            QVERIFY2(problem.startsWith(path + ": "), qPrintable(problem));
        }
    }

    void theHostsOwnQuestionsDisturbNothing()
    {
        ChannelMonitor monitor;
        const QSignalSpy sent(&monitor, &ChannelMonitor::commandSent);
        m_link->moduleChannel().setObserver(&monitor);
        m_link->faults().addNth(1);
        readControllerIdentity(m_link->hostChannel());
        QCOMPARE(sent.count(), 0);
        QVERIFY(m_link->moduleChannel().sendCommand("system hostname") != 0);
        QCOMPARE(sent.count(), 1);
    }

    void theIdentityOfASilentControllerIsEmpty()
    {
        m_link->faults().addNth(1, {}, true);
        const ControllerIdentity identity = readControllerIdentity(m_link->moduleChannel());
        QCOMPARE(identity.hostName, "");
        QCOMPARE(identity.activeConfiguration, "");
        QCOMPARE(identity.activeDescription, "");
    }
};

VELTRA4_TEST(TestSimulatedLink)
#include "tst_simulatedlink.moc"

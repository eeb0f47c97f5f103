#include "host/channellogs.h"

#include "channel/replybuffer.h"
#include "host/channelmonitor.h"
#include "simulator/simulatedchannel.h"
#include "simulator/simulatedcontroller.h"
#include "tests/support/testmain.h"

#include <QTest>

/// What the Commands log shows of what passes a channel to a simulated controller.
class TestChannelLogs : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SimulatedController> m_controller;
    std::unique_ptr<SimulatedChannel> m_channel;
    std::unique_ptr<ChannelMonitor> m_monitor;
    std::unique_ptr<ChannelLogs> m_logs;

    // Downloads the active configuration. @return how many chunks it has
    int download()
    {
        m_channel->sendCommand("system download cancel");
        m_channel->sendCommand("system download prepare 'config' '%s'",
                               m_controller->state().activeIdentifier.constData());
        ReplyBuffer reply;
        m_channel->queryString(reply.data(), "system download 1");
        const int total = reply.text().trimmed().section(' ', 0, 0).toInt();
        for (int i = 2; i <= total; ++i) {
            m_channel->queryString(reply.data(), "system download %d", i);
        }
        return total;
    }

    void upload(int chunk)
    {
        const QByteArray text(134, 'A');
        m_channel->sendCommand("system upload 4 %d %s", chunk, text.constData());
    }

    QStringList column(int number) const
    {
        QCoreApplication::processEvents();
        QStringList texts;
        for (int row = 0; row < m_logs->commands()->rowCount(); ++row) {
            texts << m_logs->commands()->index(row, number).data().toString();
        }
        return texts;
    }
    QStringList commands() const { return column(2); }
    QStringList answers() const { return column(3); }

private slots:
    void init()
    {
        m_controller = std::make_unique<SimulatedController>();
        m_channel = std::make_unique<SimulatedChannel>(*m_controller);
        m_monitor = std::make_unique<ChannelMonitor>();
        m_logs = std::make_unique<ChannelLogs>(*m_monitor);
        m_channel->setObserver(m_monitor.get());
    }

    void cleanup()
    {
        m_logs.reset();
        m_channel.reset();
    }

    void aTransferIsOneRowThatCounts()
    {
        m_channel->sendCommand("system hostname");
        const int total = download();
        QVERIFY(total > 3);
        download();
        const QString chunks = QString("system download 1 \u2026 %1").arg(total);
        QCOMPARE(commands().size(), 1 + 3 + 3);
        QCOMPARE(commands().filter("download 1"), QStringList({chunks, chunks}));
        QCOMPARE(answers().at(3), QString("%1 of %1 chunks").arg(total));
    }

    void aChunkThatFailsStandsApart()
    {
        m_channel->faults().addMatching(QRegularExpression("download 3$"));
        const int total = download();
        QCOMPARE(commands().mid(2),
                 QStringList({"system download 1 \u2026 2", "system download 3",
                              QString("system download 4 \u2026 %1").arg(total)}));
        QCOMPARE(answers().at(2), QString("2 of %1 chunks").arg(total));
        QCOMPARE(column(4).mid(2), QStringList({"0", "3 (failed on purpose)", "0"}));
    }

    void anAnswerThatIsNoChunkStandsApart()
    {
        m_channel->faults().addMatching(QRegularExpression("download 2$"),
                                        {Fault::Kind::Answer, "nonsense", 0});
        download();
        QCOMPARE(commands().at(2), "system download 1");
        QCOMPARE(commands().at(3) + ' ' + answers().at(3), "system download 2 nonsense");
        QVERIFY(commands().at(4).startsWith("system download 3 \u2026 "));
    }

    void uploadsCountAsWellUntilATimeoutBetweenThem()
    {
        upload(1);
        upload(2);
        upload(3);
        m_channel->setTimeout(0, 1000, 0);
        upload(4);
        QCOMPARE(commands().mid(0, 2), QStringList({"system upload 4 1 \u2026 3", "0 1000 0"}));
        QCOMPARE(answers(), QStringList({"3 of 4 chunks", "", ""}));
    }

    void passwordsAreMasked()
    {
        m_channel->sendCommand("config new_password '%s'", "geheim");
        m_channel->sendCommand("config password '%s'", "geheim");
        m_channel->sendCommand("config super_password '%s'", "geheim");
        m_channel->sendCommand("config new_password none");
        m_channel->sendCommand("config config_has_password standard");
        QCOMPARE(commands(),
                 QStringList({"config new_password '***'", "config password '***'",
                              "config super_password '***'", "config new_password none",
                              "config config_has_password standard"}));
    }
};

VELTRA4_TEST(TestChannelLogs)
#include "tst_channellogs.moc"

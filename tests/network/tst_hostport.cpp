#include "network/hostport.h"

#include "tests/support/testmain.h"

#include <QtTest>

class TestHostPort : public QObject
{
    Q_OBJECT

private slots:
    void goodTextsAreRead_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("host");
        QTest::addColumn<int>("port");
        QTest::newRow("name") << "controller.example:4711"
                              << "controller.example" << 4711;
        QTest::newRow("short name") << "tracker-lab_2:1"
                                    << "tracker-lab_2" << 1;
        QTest::newRow("address") << "192.168.40.17:65535"
                                 << "192.168.40.17" << 65535;
        QTest::newRow("loopback") << "[::1]:4711"
                                  << "::1" << 4711;
        QTest::newRow("long address") << "[2001:db8::a0:1]:80"
                                      << "2001:db8::a0:1" << 80;
    }

    void goodTextsAreRead()
    {
        QFETCH(const QString, text);
        const std::optional<HostPort> address = HostPort::fromText(text);
        QVERIFY(address);
        QTEST(address->host, "host");
        QTEST(int(address->port), "port");
        QCOMPARE(address->toText(), text);
    }

    void otherTextsAreRefused_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"",
                                 ":",
                                 "host",
                                 "host:",
                                 ":4711",
                                 "host:0",
                                 "host:65536",
                                 "host:-1",
                                 "host:+1",
                                 "host:4711 ",
                                 "host:4711\n",
                                 " host:4711",
                                 "ho st:4711",
                                 "host:x",
                                 "host:1:2",
                                 "::1:4711",
                                 "[::1]",
                                 "[::1]4711",
                                 "[]:4711",
                                 "[host]:4711",
                                 "[192.168.40.17]:4711",
                                 "[:::::]:4711",
                                 "::1]:4711",
                                 "[::1:4711",
                                 "host:99999999999999999999"}) {
            QTest::newRow(text) << QString::fromLatin1(text);
        }
        QTest::newRow("long name") << QString(254, 'x') + ":4711";
    }

    void otherTextsAreRefused()
    {
        QFETCH(const QString, text);
        QVERIFY(!HostPort::fromText(text));
    }
};

VELTRA4_TEST(TestHostPort)
#include "tst_hostport.moc"

#include "network/hostport.h"

#include "tests/support/testmain.h"

#include <QTest>

class TestHostPort : public QObject
{
    Q_OBJECT

private slots:
    void goodTextsAreRead()
    {
        const QVector<HostPort> addresses{{"controller.example", 4711},
                                          {"tracker-lab_2", 1},
                                          {"192.168.40.17", 65535},
                                          {"::1", 4711},
                                          {"2001:db8::a0:1", 80}};
        const QStringList texts{"controller.example:4711", "tracker-lab_2:1", "192.168.40.17:65535",
                                "[::1]:4711", "[2001:db8::a0:1]:80"};
        for (int i = 0; i < texts.size(); ++i) {
            const std::optional<HostPort> address = HostPort::fromText(texts.at(i));
            QVERIFY2(address, qPrintable(texts.at(i)));
            QCOMPARE(address->host, addresses.at(i).host);
            QCOMPARE(address->port, addresses.at(i).port);
            QCOMPARE(address->toText(), texts.at(i));
        }
    }

    void otherTextsAreRefused()
    {
        QStringList texts = QStringLiteral("|:|host|host:|:4711|host:0|host:65536|host:-1|host:+1|"
                                           "host:4711 |host:4711\n| host:4711|ho st:4711|host:x|"
                                           "host:1:2|::1:4711|[::1]|[::1]4711|[]:4711|[host]:4711|"
                                           "[192.168.40.17]:4711|[:::::]:4711|::1]:4711|[::1:4711|"
                                           "host:99999999999999999999")
                                .split('|');
        texts << QString(254, 'x') + ":4711";
        for (const QString &text : qAsConst(texts)) {
            QVERIFY2(!HostPort::fromText(text), qPrintable(text));
        }
    }
};

VELTRA4_TEST(TestHostPort)
#include "tst_hostport.moc"

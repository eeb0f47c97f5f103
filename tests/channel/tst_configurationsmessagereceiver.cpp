#include "channel/configurationsmessagereceiver.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

// What one message made the receiver emit: versions and dates.
struct Emitted
{
    QStringList versions;
    QStringList dates;
};

Emitted emittedFor(const char *source, const char *text, int id = 1)
{
    ConfigurationsMessagereceiver receiver(nullptr);
    QSignalSpy versions(&receiver, &ConfigurationsMessagereceiver::sendModuleParentVersion);
    QSignalSpy dates(&receiver, &ConfigurationsMessagereceiver::receiveLastFeUpdateDate);
    MessageReceiver *asTheHostSeesIt = &receiver;
    const int result = asTheHostSeesIt->receiveMessage(id, source, text);
    Emitted emitted;
    if (result != 0) {
        emitted.versions << QStringLiteral("unexpected result %1").arg(result);
    }
    for (const QList<QVariant> &arguments : versions) {
        emitted.versions << arguments.first().toString();
    }
    for (const QList<QVariant> &arguments : dates) {
        emitted.dates << arguments.first().toString();
    }
    return emitted;
}

} // namespace

class TestConfigurationsMessagereceiver : public QObject
{
    Q_OBJECT

private slots:
    void theHostsVersionIsPassedOn()
    {
        const Emitted emitted = emittedFor("Veltra2", "v4.12.3");
        QCOMPARE(emitted.versions, QStringList("v4.12.3"));
        QCOMPARE(emitted.dates, QStringList());
    }

    void theDateOfTheLastUpdateIsPassedOn()
    {
        const Emitted emitted = emittedFor("LAST_FRONTEND_UPDATE", "2024-03-05");
        QCOMPARE(emitted.versions, QStringList());
        QCOMPARE(emitted.dates, QStringList("2024-03-05"));
    }

    void otherSourcesAreIgnored_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::newRow("lower case") << QByteArray("veltra2");
        QTest::newRow("upper case") << QByteArray("VELTRA2");
        QTest::newRow("blank after") << QByteArray("Veltra2 ");
        QTest::newRow("longer") << QByteArray("Veltra24");
        QTest::newRow("update in lower case") << QByteArray("last_frontend_update");
        QTest::newRow("another") << QByteArray("ServiceModule");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("absent") << QByteArray();
    }

    void otherSourcesAreIgnored()
    {
        QFETCH(const QByteArray, source);
        const Emitted emitted =
            emittedFor(source.isNull() ? nullptr : source.constData(), "v4.12.3");
        QCOMPARE(emitted.versions, QStringList());
        QCOMPARE(emitted.dates, QStringList());
    }

    void anAbsentTextIsEmpty()
    {
        QCOMPARE(emittedFor("Veltra2", nullptr).versions, QStringList(""));
        QCOMPARE(emittedFor("LAST_FRONTEND_UPDATE", nullptr).dates, QStringList(""));
    }

    void theNumberOfTheMessageDoesNotMatter()
    {
        for (const int id : {-1, 0, 1, 4711}) {
            QCOMPARE(emittedFor("Veltra2", "v4.12.3", id).versions, QStringList("v4.12.3"));
        }
    }

    void slotsRunInsideTheCall()
    {
        ConfigurationsMessagereceiver receiver(nullptr);
        QString received;
        connect(&receiver, &ConfigurationsMessagereceiver::sendModuleParentVersion, this,
                [&received](const QString &version) { received = version; });
        receiver.receiveMessage(0, "Veltra2", "v4.12.3");
        QCOMPARE(received, "v4.12.3");
    }
};

VELTRA4_TEST(TestConfigurationsMessagereceiver)
#include "tst_configurationsmessagereceiver.moc"

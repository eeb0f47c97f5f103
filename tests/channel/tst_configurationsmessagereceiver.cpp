#include "channel/configurationsmessagereceiver.h"
#include "tests/support/testmain.h"

#include <QTest>

namespace {

// What one message made the receiver emit.
QStringList emittedFor(const char *source, const char *text)
{
    QStringList emitted;
    ConfigurationsMessagereceiver receiver(nullptr);
    QObject::connect(&receiver, &ConfigurationsMessagereceiver::sendModuleParentVersion,
                     [&](const QString &version) { emitted << "version " + version; });
    QObject::connect(&receiver, &ConfigurationsMessagereceiver::receiveLastFeUpdateDate,
                     [&](const QString &date) { emitted << "date " + date; });
    MessageReceiver *asTheHostSeesIt = &receiver;
    const int result = asTheHostSeesIt->receiveMessage(1, source, text);
    if (result != 0) {
        emitted << QStringLiteral("unexpected result %1").arg(result);
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
        QCOMPARE(emittedFor("Veltra2", "v4.12.3"), QStringList("version v4.12.3"));
    }

    void theDateOfTheLastUpdateIsPassedOn()
    {
        QCOMPARE(emittedFor("LAST_FRONTEND_UPDATE", "2024-03-05"), QStringList("date 2024-03-05"));
    }

    void otherSourcesAreIgnored()
    {
        for (const char *source : {"veltra2", "VELTRA2", "Veltra2 ", "Veltra24", "Veltra",
                                   "last_frontend_update", "ServiceModule", ""}) {
            QVERIFY2(emittedFor(source, "v4.12.3").isEmpty(), source);
        }
        QCOMPARE(emittedFor(nullptr, "v4.12.3"), QStringList());
    }

    void anAbsentTextIsEmpty()
    {
        QCOMPARE(emittedFor("Veltra2", nullptr), QStringList("version "));
        QCOMPARE(emittedFor("LAST_FRONTEND_UPDATE", nullptr), QStringList("date "));
    }
};

VELTRA4_TEST(TestConfigurationsMessagereceiver)
#include "tst_configurationsmessagereceiver.moc"

#include "channel/answeredcount.h"
#include "channel/configurationsmessagereceiver.h"
#include "channel/controller.h"
#include "channel/replybuffer.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <functional>
#include <memory>
#include <stdexcept>

using Call = std::function<void(const Controller &controller)>;
Q_DECLARE_METATYPE(Call)

namespace {

const QString id = QStringLiteral("a");

/// Succeeds in telling a number, but does not write it.
class SilentHost final : public LineChannel
{
public:
    int setTimeout(int, int, int) override { return 0; }
    int queryDouble(double *, const char *, ...) override { return 0; }
    int postMessage(const char *, const char *, int, const char *) override { return 0; }
    int addMessageReceiver(const char *, MessageReceiver *) override { return 0; }
    int removeMessageReceiver(const char *, MessageReceiver *) override { return 0; }

private:
    int transact(Operation, const QByteArray &, QByteArray *) override { return 1; }
};

} // namespace

class TestController : public QObject
{
    Q_OBJECT

private slots:
    void answersArrive()
    {
        ScriptedChannel host;
        host.answer("config active_config", "alpha");
        host.answer("config number_of_configs", "3");
        host.answer("config free_space", "0.25");
        host.answer("system controller_embedded", "yes");
        const Controller controller(&host);
        ReplyBuffer reply;
        QVERIFY(controller.activeConfiguration(&reply));
        QCOMPARE(reply.text(), "alpha");
        QCOMPARE(controller.numberOfConfigurations(), std::optional(3));
        QCOMPARE(controller.freeSpace(), std::optional(0.25));
        QCOMPARE(controller.isEmbedded(), std::optional(true));
    }

    void whatFailsLeavesTheBufferAlone()
    {
        ScriptedChannel host;
        host.answer("config owner_of_config a", "before");
        const Controller controller(&host);
        ReplyBuffer reply;
        QVERIFY(controller.ownerOf(id, &reply));
        QVERIFY(!controller.ownerOf(QStringLiteral("b"), &reply));
        QCOMPARE(reply.text(), "before");
    }

    void aValueThatFailsIsNone()
    {
        ScriptedChannel host;
        const Controller controller(&host);
        QVERIFY(!controller.freeSpace());
        QVERIFY(!controller.isEmbedded());
        QVERIFY(!controller.numberOfConnectedSlaves());
    }

    void withoutAValueAllTheSpaceIsFree()
    {
        SilentHost silent;
        QCOMPARE(Controller(&silent).freeSpace(), std::optional(1.0));
    }

    void anAbsurdCountIsNone()
    {
        ScriptedChannel host;
        const Controller controller(&host);
        host.answer("config number_of_configs", QByteArray::number(maxAnsweredCount));
        QCOMPARE(controller.numberOfConfigurations(), std::optional(maxAnsweredCount));
        host.answer("config number_of_configs", QByteArray::number(maxAnsweredCount + 1));
        QVERIFY(!controller.numberOfConfigurations());
        host.answer("config number_of_configs", "-3");
        QCOMPARE(controller.numberOfConfigurations(), std::optional(-3));
    }

    void aStructuralCommandIsOkOrRefusedOrFails()
    {
        using Answer = Controller::Answer;
        ScriptedChannel host;
        const Controller controller(&host);
        host.answer("veltra2 config delete_config a", "veltra2 ok");
        QCOMPARE(controller.deleteConfiguration(id), Answer::Ok);
        for (const char *refusal : {"veltra2 ok ", "Veltra2 ok", "veltra2 error: locked", ""}) {
            host.answer("veltra2 config delete_config a", refusal);
            QCOMPARE(controller.deleteConfiguration(id), Answer::Refusal);
        }
        host.fail("veltra2 config delete_config a");
        QCOMPARE(controller.deleteConfiguration(id), Answer::None);
    }

    void textsAreSentAsLatin1()
    {
        ScriptedChannel host;
        Controller(&host).setOwner(QString::fromUtf8("100 %s K\u00fcche \u20ac"));
        QCOMPARE(
            host.trace(),
            QStringList(QString::fromUtf8("sendCommand config owner \"100 %s K\u00fcche ?\"")));
    }

    void withoutAChannelEverythingFails()
    {
        const Controller controller(nullptr);
        ConfigurationsMessagereceiver receiver(nullptr);
        controller.addMessageReceiver(&receiver);
        controller.removeMessageReceiver(&receiver);
        controller.setTimeout(20000, 1);
        controller.report(id);
        controller.announceActiveConfigurationChanged();
        ReplyBuffer reply;
        QVERIFY(!controller.activeConfiguration(&reply));
        QVERIFY(!controller.activate(id));
        QVERIFY(!controller.freeSpace());
        QCOMPARE(controller.deleteConfiguration(id), Controller::Answer::None);
        QVERIFY(controller.ownerSurvives([] {}));
    }

    void aFailureIsReported()
    {
        ScriptedChannel host;
        const Controller controller(&host);
        QVERIFY(controller.reportUnless(true, "not this"));
        QVERIFY(!controller.reportUnless(false, "this"));
        controller.report(QString::fromUtf8("K\u00fcche \u20ac"));
        QCOMPARE(host.trace(),
                 QStringList({"postMessage standard VELTRA4 1 this",
                              QString::fromUtf8("postMessage standard VELTRA4 1 K\u00fcche ?")}));
    }

    void theEventIsGlobal()
    {
        ScriptedChannel host;
        Controller(&host).announceActiveConfigurationChanged();
        QCOMPARE(host.trace(),
                 QStringList("postMessage GlobalEvent ConfigurationModule 1 "
                             "ActiveConfigurationChanged"));
    }

    void receiversAreAddedAndRemovedUnderTwoNames()
    {
        ScriptedChannel host;
        auto owner = std::make_unique<QObject>();
        const Controller controller(&host, owner.get());
        ConfigurationsMessagereceiver receiver(nullptr);
        controller.addMessageReceiver(&receiver);
        QCOMPARE(host.receivers().size(), 1);
        owner.reset();
        controller.removeMessageReceiver(&receiver);
        QVERIFY(host.receivers().isEmpty());
        QCOMPARE(host.trace(),
                 QStringList({"addMessageReceiver ConfigurationsModule",
                              "removeMessageReceiver ServiceModule"}));
    }

    void theCallThatCostsTheOwnerTheLifeThrows_data()
    {
        QTest::addColumn<Call>("call");
        using C = Controller;
        QTest::newRow("command") << Call([](const C &controller) { controller.activate(id); });
        QTest::newRow("query") << Call([](const C &controller) {
            ReplyBuffer reply;
            controller.hostname(&reply);
        });
        QTest::newRow("value") << Call(&Controller::isEmbedded);
        QTest::newRow("structural command")
            << Call([](const C &controller) { controller.removeSlave(id); });
        QTest::newRow("report") << Call([](const C &controller) { controller.report(id); });
        QTest::newRow("event") << Call(&Controller::announceActiveConfigurationChanged);
    }

    void theCallThatCostsTheOwnerTheLifeThrows()
    {
        QFETCH(const Call, call);
        ScriptedChannel host;
        auto owner = std::make_unique<QObject>();
        const Controller controller(&host, owner.get());
        call(controller);
        const auto destroy = [&owner] { owner.reset(); };
        for (const char *command : {"config active_config a", "system hostname",
                                    "system controller_embedded", "veltra2 cascade sub_slave a"}) {
            host.whenSent(command, destroy);
        }
        host.whenPosted("a", destroy);
        host.whenPosted("ActiveConfigurationChanged", destroy);
        QVERIFY_EXCEPTION_THROWN(call(controller), OwnerDestroyed);
    }

    void itMayDieWithItsOwner()
    {
        struct Owner : QObject
        {
            explicit Owner(IOManager *host)
                : controller(host, this)
            {
            }
            Controller controller;
        };
        ScriptedChannel host;
        auto *owner = new Owner(&host);
        host.whenSent("config new_password none", [owner] { delete owner; });
        bool isReached = false;
        QVERIFY(!owner->controller.ownerSurvives([&] {
            owner->controller.removePassword();
            isReached = true;
        }));
        QVERIFY(!isReached);
    }

    void tellsWhetherTheOwnerSurvives()
    {
        ScriptedChannel host;
        auto *owner = new QObject;
        const Controller controller(&host, owner);
        bool isRun = false;
        QVERIFY(controller.ownerSurvives([&isRun] { isRun = true; }));
        QVERIFY(isRun);
        QVERIFY(!controller.ownerSurvives([owner] { delete owner; }));
    }

    void otherFailuresPass()
    {
        const Controller controller(nullptr, this);
        QVERIFY_EXCEPTION_THROWN(
            controller.ownerSurvives([] { throw std::runtime_error("connection error"); }),
            std::runtime_error);
    }
};

VELTRA4_TEST(TestController)
#include "tst_controller.moc"

#include "tests/endtoend/operations.h"
#include "tests/support/testmain.h"

#include <QDirIterator>
#include <QTest>

namespace {

// Everything that a host's channel is given, by the operation it is given to. Hosts may go by
// these formats.
const QByteArrayList vocabulary{
    "queryInt config number_of_configs",
    "queryString config config t%02d",
    "queryString config active_config",
    "sendCommand config active_config %s",
    "queryString config owner_of_config %s",
    "queryString config desc_of_config %s",
    "queryString config config_has_password %s",
    "queryDouble config free_space",
    "queryString config desc",
    "sendCommand config desc \"%s\"",
    "sendCommand config desc \"%s\" ",
    "sendCommand config desc \"%s %s\"",
    "sendCommand config owner \"%s\"",
    "sendCommand config owner \"%s\" ",
    "sendCommand config new_password none",
    "sendCommand config new_password '%s'",
    "sendCommand config password '%s'",
    "sendCommand config super_password '%s'",
    "sendCommand config super_password '.'",
    "queryString config is_changeable",
    "sendCommandReply veltra2 config new_config config%s",
    "sendCommandReply veltra2 config clone_config config%s %s",
    "sendCommandReply veltra2 config clone_config %s %s",
    "sendCommandReply veltra2 config delete_config %s",
    "sendCommandReply veltra2 cascade add_slave %s",
    "sendCommandReply veltra2 cascade add_scanned_slave %s",
    "sendCommandReply veltra2 cascade sub_slave %s",
    "queryInt cascade number_of_connected_slaves",
    "queryString cascade connected_slave d%02d",
    "queryBool cascade connected_slave_available %s",
    "queryString status active",
    "queryString system hostname",
    "sendCommand system hostname %s",
    "queryString system controller_serial",
    "queryString system model",
    "queryString system model_description",
    "queryBool system controller_embedded",
    "queryString system net",
    "sendCommand system net %s",
    "queryString system domainname",
    "sendCommand system domainname %s",
    "queryString system nameserver",
    "sendCommand system nameserver %s",
    "queryString system ntp_server",
    "sendCommand system ntp_server %s",
    "sendCommand system download prepare 'config' '%s'",
    "sendCommand system download prepare 'config' '__base'",
    "queryString system download available",
    "queryString system download %d",
    "sendCommand system download cancel",
    "sendCommand system upload %d %d %s",
    "sendCommand system upload cancel",
    "queryString system import available",
    "queryString system import item i%02d",
    "sendCommand system import 'config' '%s'",
};

// The format as a string literal.
QByteArray literal(QByteArray entry)
{
    entry.remove(0, entry.indexOf(' ') + 1);
    return '"' + entry.replace('"', "\\\"") + '"';
}

QByteArray sourcesOfThePlugIn()
{
    QByteArray sources;
    for (const char *folder :
         {"channel", "widgets", "backup", "transfer", "dialogs", "module", "resources"}) {
        QDirIterator files(QStringLiteral(VELTRA4_SOURCE_PATH "/") + QLatin1String(folder),
                           {"*.cpp", "*.h"}, QDir::Files);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly)) {
                sources += file.readAll();
            }
        }
    }
    return sources;
}

} // namespace

/// The words in which the plug-in speaks to the controller.
class TestEndToEndCommands : public QObject
{
    Q_OBJECT

private slots:
    // Over everything that users and hosts do.
    void theHostIsGivenTheFormatsAsTheyAre()
    {
        QSet<QByteArray> formats;
        const auto operations = allOperations();
        for (const Operation &operation : operations) {
            Scene scene(smallState());
            operation.prepare(scene);
            operation.play(scene);
            scene.driver.verify();
            formats.unite(scene.record.formats());
        }
        const auto expected = QSet<QByteArray>(vocabulary.cbegin(), vocabulary.cend());
        QCOMPARE(QSet<QByteArray>(formats).subtract(expected).values(), QByteArrayList());
        QCOMPARE(QSet<QByteArray>(expected).subtract(formats).values(), QByteArrayList());
    }

    void eachIsWrittenDownOnce_data()
    {
        QTest::addColumn<QByteArray>("format");
        for (const QByteArray &entry : vocabulary) {
            QTest::newRow(entry) << literal(entry);
        }
    }

    void eachIsWrittenDownOnce()
    {
        static const QByteArray sources = sourcesOfThePlugIn();
        QFETCH(const QByteArray, format);
        QCOMPARE(sources.count(format), 1);
    }
};

VELTRA4_TEST(TestEndToEndCommands)
#include "tst_endtoendcommands.moc"

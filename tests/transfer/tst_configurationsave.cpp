#include "channel/controller.h"
#include "channel/transferencoding.h"
#include "tests/support/faultyrun.h"
#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/configurationsave.h"

#include <QDate>
#include <QDir>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <fstream>
#include <memory>
#include <optional>
#include <string>

using namespace TransferTesting;

namespace {

const char cancelText[] =
    "Error save configuration: Cannot send command (1) download. Download canceled";
const char prepareText[] = "Error save configuration: Cannot prepare configuration for download. "
                           "Export aborted.";

QString reported(const QString &text)
{
    return ScriptedChannel::reported("Error save configuration: " + text);
}

// The trace with what changes from run to run replaced: copies are numbered, today is a word.
QStringList normalised(const QStringList &trace)
{
    static const QRegularExpression newIdentifier(QStringLiteral("\\bconfig\\d{15,17}\\b"));
    const QString today = QDate::currentDate().toString(QStringLiteral("dd-MM-yyyy"));
    QStringList copies;
    QStringList lines;
    for (QString line : trace) {
        line.replace(today, QStringLiteral("TODAY"));
        for (auto match = newIdentifier.match(line); match.hasMatch();
             match = newIdentifier.match(line)) {
            if (!copies.contains(match.captured())) {
                copies << match.captured();
            }
            line.replace(match.captured(),
                         QStringLiteral("COPY%1").arg(copies.indexOf(match.captured()) + 1));
        }
        lines << line;
    }
    return lines;
}

// What the rules say about a save of two configurations in two chunks.
struct FaultySave : FaultyRun
{
    FaultySave(int failingCommand, bool laterOnesFail)
        : FaultyRun(failingCommand, laterOnesFail)
    {
        save();
    }

    std::optional<ExpectedBox> box;
    int cursorsLeft = 0;

private:
    void save()
    {
        QString active = "first";
        if (!succeeds("queryString config active_config")) {
            trace << reported("Cannot get active config");
            active.clear();
        }
        if (!succeeds("sendCommand system download cancel")) {
            trace << ScriptedChannel::reported(cancelText);
            cursorsLeft = 1;
            return;
        }
        for (int i = 0; i < 2; ++i) {
            if (!addsToDownload(i)) {
                trace << ScriptedChannel::reported(prepareText);
                expect(QMessageBox::Critical,
                       "Cannot prepare configuration for download.\nExport aborted.");
                return;
            }
        }
        if (!succeeds("queryString system download available")) {
            expect(QMessageBox::Critical, "Configuration data can not be recognized.");
        } else if (succeeds("queryString system download 1")
                   && succeeds("queryString system download 2")) {
            expect(QMessageBox::Information,
                   "Configuration data successfully written to the file\nFILE");
        } else {
            expect(QMessageBox::Critical, "Configuration data written to the file FILE failed!\n");
        }
        for (const char *copy : {"COPY1", "COPY2"}) {
            if (!succeeds(QString("sendCommandReply veltra2 config delete_config %1").arg(copy))) {
                trace << reported(QString("Cannot delete configuration %1.").arg(copy));
            }
        }
        trace << "setTimeout 0 20000 0";
        if (!succeeds("sendCommand config active_config " + active)) {
            trace << reported(QString("Cannot set active configuration '%1'").arg(active));
        }
    }

    // False only if the configuration cannot be prepared.
    bool addsToDownload(int i)
    {
        const QString copy = QString("COPY%1").arg(i + 1);
        trace << "setTimeout 0 20000 1";
        if (!succeeds("sendCommandReply veltra2 config clone_config " + copy
                      + (i == 0 ? " first" : " second"))) {
            trace << reported(QString("Cannot clone configuration number %1").arg(i));
            return true;
        }
        if (!succeeds("queryString config desc")) {
            trace << reported("Cannot get configuration description");
            return true;
        }
        if (!succeeds("sendCommand config desc \"Lab TODAY\"")) {
            trace << reported("Cannot set configuration description");
            return true;
        }
        trace << "setTimeout 0 20000 1";
        return succeeds("sendCommand system download prepare 'config' '" + copy + "'");
    }

    void expect(QMessageBox::Icon icon, const QString &text)
    {
        box.emplace();
        box->icon = icon;
        box->text = text;
    }
};

} // namespace

class TestConfigurationSave : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_channel = std::make_unique<ScriptedChannel>();
        m_channel->answer("config active_config", "first");
        m_channel->answer("config desc", "\"copy of Lab 01-02-2020\"");
        m_channel->answer("system download available", "yes");
        m_channel->answer("system download 1", "2 '" + TransferEncoding::encode("one ") + '\'');
        m_channel->answer("system download 2", "2 '" + TransferEncoding::encode("two") + '\'');
        m_dialog = std::make_unique<QWidget>();
        m_driver = std::make_unique<ModalDriver>();
    }

    void cleanup()
    {
        m_driver.reset();
        m_dialog.reset();
        m_channel.reset();
        m_folder.reset();
        QCOMPARE(takeCursors(), 0);
    }

    void savesTheConfigurationsInOrder()
    {
        expectSuccess();
        save();
        QCOMPARE(normalised(m_channel->trace()),
                 QStringList({"queryString config active_config",
                              "sendCommand system download cancel",
                              "setTimeout 0 20000 1",
                              "sendCommandReply veltra2 config clone_config COPY1 first",
                              "queryString config desc",
                              "sendCommand config desc \"Lab TODAY\"",
                              "setTimeout 0 20000 1",
                              "sendCommand system download prepare 'config' 'COPY1'",
                              "setTimeout 0 20000 1",
                              "sendCommandReply veltra2 config clone_config COPY2 second",
                              "queryString config desc",
                              "sendCommand config desc \"Lab TODAY\"",
                              "setTimeout 0 20000 1",
                              "sendCommand system download prepare 'config' 'COPY2'",
                              "queryString system download available",
                              "queryString system download 1",
                              "queryString system download 2",
                              "sendCommandReply veltra2 config delete_config COPY1",
                              "sendCommandReply veltra2 config delete_config COPY2",
                              "setTimeout 0 20000 0",
                              "sendCommand config active_config first"}));
        QCOMPARE(contentsOf(fileName()), QByteArray("one two"));
    }

    void everySingleCommandMayFail_data()
    {
        QTest::addColumn<bool>("lasting");
        QTest::newRow("once") << false;
        QTest::newRow("from then on") << true;
    }

    void everySingleCommandMayFail()
    {
        QFETCH(const bool, lasting);
        int failAt = 0;
        for (bool isFaultMet = true; isFaultMet;) {
            cleanup();
            init();
            const FaultySave rules(++failAt, lasting);
            isFaultMet = rules.isFaultMet;
            if (rules.box) {
                QString text = rules.box->text;
                expectBox(rules.box->icon, text.replace("FILE", fileName()));
            }
            m_channel->failNth(failAt, lasting);
            save();
            m_driver->verify();
            QCOMPARE(normalised(m_channel->trace()), rules.trace);
            QCOMPARE(takeCursors(), rules.cursorsLeft);
        }
        QCOMPARE(failAt - 1, 16);
    }

    void aSkippedConfigurationIsMissingButTheSaveSucceeds()
    {
        m_channel->failNth(3); // the first clone
        expectSuccess();
        save();
        QVERIFY(m_channel->trace().contains(reported("Cannot clone configuration number 0")));
        QCOMPARE(m_channel->trace().filter("prepare").size(), 1);
        QCOMPARE(contentsOf(fileName()), QByteArray("one two"));
    }

    void theDescriptionIsDated_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("command");
        QTest::newRow("copy") << QByteArray("\"copy of Lab\"")
                              << "sendCommand config desc \"Lab TODAY\"";
        QTest::newRow("glued date")
            << QByteArray("Lab01-02-2020") << "sendCommand config desc \"Lab00-00-0000 TODAY\"";
        QTest::newRow("empty") << QByteArray("\"\"") << "sendCommand config desc \" TODAY\"";
        QTest::newRow("per cent signs")
            << QByteArray("\"100% %s %1 %n\"") << "sendCommand config desc \"100% %s %1 %n TODAY\"";
        QTest::newRow("a stamp of today")
            << QByteArray("\"Lab ") + QDate::currentDate().toString("dd-MM-yyyy").toLatin1() + '"'
            << "sendCommand config desc \"Lab TODAY\"";
    }

    void theDescriptionIsDated()
    {
        QFETCH(const QByteArray, answer);
        QFETCH(const QString, command);
        m_channel->answer("config desc", answer);
        expectSuccess();
        save({"first"});
        QCOMPARE(normalised(m_channel->trace()).filter("sendCommand config desc"),
                 QStringList(command));
    }

    void aDescriptionGoesBackByteForByte()
    {
        const QByteArray bytes = "Pr\xc3\xbc"
                                 "fung \xe4\xff";
        m_channel->answer("config desc", '"' + bytes + '"');
        expectSuccess();
        save({"first"});
        QCOMPARE(
            normalised(m_channel->trace()).filter("sendCommand config desc"),
            QStringList("sendCommand config desc \"" + QString::fromLatin1(bytes) + " TODAY\""));
    }

    void onlyAnExactYesCountsAsAvailable_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("no") << QByteArray("no");
        QTest::newRow("capital letter") << QByteArray("Yes");
        QTest::newRow("trailing blank") << QByteArray("yes ");
        QTest::newRow("leading blank") << QByteArray(" yes");
        QTest::newRow("in quotes") << QByteArray("\"yes\"");
        QTest::newRow("a number") << QByteArray("1");
        QTest::newRow("empty") << QByteArray("");
    }

    void onlyAnExactYesCountsAsAvailable()
    {
        QFETCH(const QByteArray, answer);
        m_channel->answer("system download available", answer);
        expectBox(QMessageBox::Critical, "Configuration data can not be recognized.");
        save({"first"});
        QCOMPARE(normalised(m_channel->trace()).mid(8),
                 QStringList({"queryString system download available",
                              "sendCommandReply veltra2 config delete_config COPY1",
                              "setTimeout 0 20000 0", "sendCommand config active_config first"}));
        QVERIFY(!QFile::exists(fileName()));
    }

    void anAnswerThatCannotBeReadFailsTheSave()
    {
        m_channel->answer("system download 2", "nonsense");
        expectFailure();
        save({"first"});
        QCOMPARE(normalised(m_channel->trace()).mid(9),
                 QStringList({"queryString system download 1", "queryString system download 2",
                              ScriptedChannel::reported("invalid return: nonsense"),
                              "sendCommandReply veltra2 config delete_config COPY1",
                              "setTimeout 0 20000 0", "sendCommand config active_config first"}));
    }

    void aFullDiskFailsTheSave()
    {
        expectFailure();
        {
            const FileSizeLimit full(5);
            save({"first"});
        }
        QCOMPARE(normalised(m_channel->trace()).mid(10),
                 QStringList({"queryString system download 2",
                              ScriptedChannel::reported("unable to write data"),
                              "sendCommandReply veltra2 config delete_config COPY1",
                              "setTimeout 0 20000 0", "sendCommand config active_config first"}));
    }

    void thePreviousFileIsKeptOnceBeforeAnythingIsSent()
    {
        const QString backupName = fileName() + ".bak";
        writeFile(fileName(), "previous");
        writeFile(backupName, "the one before");
        bool isKept = false;
        m_channel->whenSent("config active_config", [&] {
            isKept = !QFile::exists(fileName()) && contentsOf(backupName) == "previous";
        });
        expectSuccess();
        save();
        QVERIFY(isKept);
        QCOMPARE(contentsOf(fileName()), QByteArray("one two"));
        QCOMPARE(contentsOf(backupName), QByteArray("previous"));
    }

    // Which is none in UTF-8: QFile would look for another.
    void aNameBeyondAsciiIsTheSameForAllThatTouchesTheFile()
    {
        const QString name = m_folder->filePath(QString::fromUtf8("pr\u00fc.dat"));
        const std::string bytes = name.toLatin1().toStdString();
        for (const bool isSecond : {false, true}) {
            expectBox(QMessageBox::Information,
                      "Configuration data successfully written to the file\n" + name);
            saveConfigurations(Controller(m_channel.get()), {"first"}, name, m_dialog.get());
            QVERIFY(std::ifstream(bytes).good());
            QCOMPARE(std::ifstream(bytes + ".bak").good(), isSecond);
        }
    }

    void aPreviousFileThatCannotBeRenamedIsLeftAlone()
    {
        writeFile(fileName(), "previous");
        QVERIFY(QDir(m_folder->path()).mkdir("cal.dat.bak"));
        expectFailure();
        save({"first"});
        QCOMPARE(normalised(m_channel->trace()).mid(8),
                 QStringList({"queryString system download available",
                              ScriptedChannel::reported("file already exists"),
                              "sendCommandReply veltra2 config delete_config COPY1",
                              "setTimeout 0 20000 0", "sendCommand config active_config first"}));
        QCOMPARE(contentsOf(fileName()), QByteArray("previous"));
    }

    void theWaitCursorLastsUntilTheBox_data()
    {
        QTest::addColumn<int>("failAt");
        QTest::newRow("success") << 0;
        QTest::newRow("a copy cannot be prepared") << 6;
        QTest::newRow("nothing available") << 11;
        QTest::newRow("no data") << 12;
    }

    void theWaitCursorLastsUntilTheBox()
    {
        QFETCH(const int, failAt);
        m_channel->failNth(failAt);
        bool isWaitingAtFirst = false;
        m_channel->whenSent("config active_config", [&] { isWaitingAtFirst = isWaiting(); });
        bool isWaitingWithin = false;
        m_channel->whenSent("config desc", [&] { isWaitingWithin = isWaiting(); });
        bool isRestored = false;
        m_driver->expectDialog(QString(), [&isRestored](QDialog *box) {
            isRestored = QGuiApplication::overrideCursor() == nullptr;
            box->accept();
        });
        save();
        QVERIFY(isWaitingAtFirst);
        QVERIFY(isWaitingWithin);
        QVERIFY(isRestored);
    }

    void theWaitCursorStaysWhenTheDownloadCannotBeCancelled()
    {
        m_channel->fail("system download cancel");
        save();
        QVERIFY(isWaiting());
        QCOMPARE(takeCursors(), 1);
    }

    void theDialogMayVanishWhileTheBoxIsOpen()
    {
        m_driver->expectDialog(QString(), [this](QDialog *) { m_dialog.reset(); });
        save();
        QVERIFY(!m_dialog);
        QCOMPARE(takeCursors(), 0);
    }

private:
    QString fileName() const { return m_folder->filePath("cal.dat"); }

    void save(const QStringList &identifiers = {"first", "second"})
    {
        saveConfigurations(Controller(m_channel.get()), identifiers, fileName(), m_dialog.get());
    }

    void expectBox(QMessageBox::Icon icon, const QString &text)
    {
        ExpectedBox box;
        box.icon = icon;
        box.title = "Save Configurations";
        box.text = text;
        box.parent = m_dialog.get();
        m_driver->expectBox(box);
    }

    void expectSuccess()
    {
        expectBox(QMessageBox::Information,
                  "Configuration data successfully written to the file\n" + fileName());
    }

    void expectFailure()
    {
        expectBox(QMessageBox::Critical,
                  "Configuration data written to the file " + fileName() + " failed!\n");
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ScriptedChannel> m_channel;
    std::unique_ptr<QWidget> m_dialog;
    std::unique_ptr<ModalDriver> m_driver;
};

VELTRA4_TEST(TestConfigurationSave)
#include "tst_configurationsave.moc"

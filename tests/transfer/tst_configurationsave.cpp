#include "channel/controller.h"
#include "channel/transferencoding.h"
#include "tests/support/faultyrun.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transferstage.h"
#include "transfer/configurationsave.h"

#include <QDate>
#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include <cstdio>
#include <optional>

using namespace TransferTesting;

namespace {

const char cancelText[] =
    "Error save configuration: Cannot send command (1) download. Download canceled";
const char prepareText[] = "Error save configuration: Cannot prepare configuration for download. "
                           "Export aborted.";

const char unrecognizedText[] = "Configuration data can not be recognized.";
const char successText[] = "Configuration data successfully written to the file\nFILE";
const char failureText[] = "Configuration data written to the file FILE failed!\n";

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
            expect(QMessageBox::Critical, unrecognizedText);
        } else if (succeeds("queryString system download 1")
                   && succeeds("queryString system download 2")) {
            expect(QMessageBox::Information, successText);
        } else {
            expect(QMessageBox::Critical, failureText);
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

// A controller with the configurations "first", which is active, and "second". What is downloaded
// is "one two", in two chunks.
struct SaveStage : TransferStage
{
    SaveStage()
    {
        channel.answer("config active_config", "first");
        channel.answer("config desc", "\"copy of Lab 01-02-2020\"");
        channel.answer("system download available", "yes");
        channel.answer("system download 1", "2 '" + TransferEncoding::encode("one ") + '\'');
        channel.answer("system download 2", "2 '" + TransferEncoding::encode("two") + '\'');
    }

    QString fileName() const { return path("cal.dat"); }
    QStringList trace() const { return normalised(channel.trace()); }

    void save(const QStringList &identifiers = {"first"}, const QString &name = "cal.dat")
    {
        saveConfigurations(Controller(&channel), identifiers, path(name), dialog);
    }

    /// Expects the box of this text, in which FILE stands for the file's name.
    void expectBox(QMessageBox::Icon icon, QString text, const QString &name = "cal.dat")
    {
        driver.expectBox(
            okBox(icon, "Save Configurations", text.replace("FILE", path(name)), dialog));
    }
    void expectSuccess(const QString &name = "cal.dat")
    {
        expectBox(QMessageBox::Information, successText, name);
    }
    void expectFailure() { expectBox(QMessageBox::Critical, failureText); }
};

// What is sent after the download of a single configuration.
const QStringList lastCommands{"sendCommandReply veltra2 config delete_config COPY1",
                               "setTimeout 0 20000 0", "sendCommand config active_config first"};

} // namespace

class TestConfigurationSave : public QObject
{
    Q_OBJECT

private slots:
    void savesTheConfigurationsInOrder()
    {
        SaveStage f;
        f.expectSuccess();
        f.save({"first", "second"});
        QCOMPARE(f.trace(), FaultySave(0, false).trace);
        QCOMPARE(contentsOf(f.fileName()), QByteArray("one two"));
    }

    void anyCommandMayFail() { commandsFail(false); }
    void allCommandsFromAnyOneOnMayFail() { commandsFail(true); }

    // Byte for byte but for the date.
    void theDescriptionIsDated()
    {
        SaveStage f;
        f.channel.answer("config desc", "\"copy of 100% %s %1 %n \xc3\xbc\xe4\xff 01-02-2020\"");
        f.expectSuccess();
        f.save();
        QCOMPARE(f.trace().filter("sendCommand config desc"),
                 QStringList(QString::fromLatin1(
                     "sendCommand config desc \"100% %s %1 %n \xc3\xbc\xe4\xff TODAY\"")));
    }

    void onlyAnExactYesCountsAsAvailable()
    {
        for (const char *answer : {"no", "Yes", "yes ", " yes", "\"yes\"", "1", ""}) {
            SaveStage f;
            f.channel.answer("system download available", answer);
            f.expectBox(QMessageBox::Critical, unrecognizedText);
            f.save();
            QCOMPARE(f.trace().mid(8),
                     QStringList("queryString system download available") + lastCommands);
            QVERIFY2(!QFile::exists(f.fileName()), answer);
        }
    }

    void thePreviousFileIsKeptOnceBeforeAnythingIsSent()
    {
        SaveStage f;
        const QString backupName = f.fileName() + ".bak";
        writeFile(f.fileName(), "previous");
        writeFile(backupName, "the one before");
        bool isKept = false;
        f.channel.whenSent("config active_config", [&] {
            isKept = !QFile::exists(f.fileName()) && contentsOf(backupName) == "previous";
        });
        f.expectSuccess();
        f.save();
        QVERIFY(isKept);
        QCOMPARE(contentsOf(f.fileName()), QByteArray("one two"));
        QCOMPARE(contentsOf(backupName), QByteArray("previous"));
    }

    // Which is none in UTF-8: QFile would look for another.
    void aNameBeyondAsciiIsTheSameForAllThatTouchesTheFile()
    {
        SaveStage f;
        const QString name = QString::fromUtf8("pr\u00fc.dat");
        for (int i = 0; i < 2; ++i) {
            f.expectSuccess(name);
            f.save({"first"}, name);
        }
        const QByteArray nameOnDisk = f.path(name).toLatin1();
        QCOMPARE(std::remove(nameOnDisk.constData()), 0);
        QCOMPARE(std::remove((nameOnDisk + ".bak").constData()), 0);
    }

    void aPreviousFileThatCannotBeRenamedIsLeftAlone()
    {
        SaveStage f;
        writeFile(f.fileName(), "previous");
        QVERIFY(QDir(f.folder.path()).mkdir("cal.dat.bak"));
        f.expectFailure();
        f.save();
        QCOMPARE(f.trace().mid(8),
                 QStringList({"queryString system download available",
                              ScriptedChannel::reported("file already exists")})
                     + lastCommands);
        QCOMPARE(contentsOf(f.fileName()), QByteArray("previous"));
    }

    void theWaitCursorIsShownFromTheFirstCommandOn()
    {
        SaveStage f;
        f.noteCursorAt("config active_config");
        f.noteCursorAt("config active_config first");
        f.expectSuccess();
        f.save();
        QCOMPARE(f.cursors, QList<bool>({true, true}));
    }

    void theDialogMayVanishWhileTheBoxIsOpen()
    {
        SaveStage f;
        f.expectDestruction();
        f.save();
        QVERIFY(!f.parent);
    }

private:
    static void commandsFail(bool lasting)
    {
        int failAt = 0;
        for (bool isFaultMet = true; isFaultMet;) {
            const FaultySave rules(++failAt, lasting);
            isFaultMet = rules.isFaultMet;
            SaveStage f;
            if (rules.box) {
                f.expectBox(rules.box->icon, rules.box->text);
            }
            f.channel.failNth(failAt, lasting);
            f.save({"first", "second"});
            QCOMPARE(f.trace(), rules.trace);
            QCOMPARE(takeCursors(), rules.cursorsLeft);
        }
        QCOMPARE(failAt - 1, 16);
    }
};

VELTRA4_TEST(TestConfigurationSave)
#include "tst_configurationsave.moc"

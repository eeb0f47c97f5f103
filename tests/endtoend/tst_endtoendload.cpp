#include "tests/endtoend/frontend.h"
#include "tests/endtoend/table.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QAbstractButton>
#include <QFile>
#include <QTableWidget>
#include <QtTest>

#include <optional>
#include <random>

#include <unistd.h>

namespace {

ExpectedBox loadBox(const QString &text)
{
    return {QMessageBox::Information, QStringLiteral("Load Configurations"), text};
}

ExpectedBox loadedBox()
{
    return loadBox(QStringLiteral("Loading configuration successfully."));
}

// What the simulated controller packs of these configurations of the sample.
QByteArray archiveOf(const QByteArrayList &identifiers)
{
    const ControllerState sample = ControllerState::sample();
    QVector<Archive::Item> items;
    for (const QByteArray &identifier : identifiers) {
        items << TransferFiles::item(configurationIn(sample, identifier));
    }
    return Archive::pack(items);
}

QByteArray intactArchive()
{
    return archiveOf({Sample::fair, Sample::rotor});
}

QByteArray noise(int size)
{
    std::mt19937 generator(20240702);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes) {
        byte = static_cast<char>(generator());
    }
    return bytes;
}

} // namespace

class TestEndToEndLoad : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_home.emplace(); }

    void cleanup()
    {
        m_home.reset();
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void whatWasSavedAndDeletedComesBack()
    {
        const QString path = m_home->filePath("round trip.dat");
        FrontEnd frontEnd;
        QStringList savedLines;
        frontEnd.useList([&](QDialog *list) {
            // Save two.
            frontEnd.driver.expectDialog("ConfigSaveDlgClass", [&](QDialog *dialog) {
                UserInput::click(dialog, "checkBox_allSettings");
                UserInput::click(dialog, "pushButton_clearSelection");
                Table::click(dialog, Sample::fairText, Qt::ControlModifier);
                Table::click(dialog, Sample::rotorText, Qt::ControlModifier);
                frontEnd.driver.expectFileDialog("Save configuration(s)", path);
                frontEnd.driver.expectBox(
                    {QMessageBox::Information, "Save Configurations",
                     QStringLiteral("Configuration data successfully written to the file\n")
                         + path});
                UserInput::click(dialog, "pushButton_save");
                UserInput::click(dialog, "pushButton_exit");
            });
            UserInput::click(list, "pushButton_save");

            // Delete them and change another.
            for (const QString &description : {Sample::fairText, Sample::rotorText}) {
                Table::click(list, description);
                frontEnd.driver.expectDialog(QString(), [](QDialog *box) {
                    qobject_cast<QMessageBox *>(box)->button(QMessageBox::Ok)->click();
                });
                UserInput::click(list, "pushButton_delete");
            }
            QCOMPARE(Table::lines(list).size(), 10);
            frontEnd.driver.expectDialog("EditConfigDialog", [](QDialog *dialog) {
                UserInput::type(dialog, "lineEdit_desc", " changed");
                UserInput::click(dialog, "pushButton_ok");
            });
            Table::doubleClick(list, Sample::activeText);
        });
        const ControllerState between = frontEnd.state();
        frontEnd.record.takeMessages();

        load(frontEnd, path, [&](QDialog *dialog) {
            savedLines = Table::lines(dialog);
            frontEnd.driver.expectBox(loadedBox());
            UserInput::click(dialog, "pushButton_load"); // all are selected at first
        });
        QCOMPARE(savedLines.size(), 2);
        QCOMPARE(frontEnd.record.takeMessages(), QStringList{changeEvent()});

        // What was saved are copies under identifiers of their own, with the date; the data is the
        // same.
        const ControllerState sample = ControllerState::sample();
        const ControllerState &after = frontEnd.state();
        QCOMPARE(after.configurations.size(), 12);
        QCOMPARE(after.configurations.mid(0, 10), between.configurations);
        const Configuration &rotor = after.configurations.at(10);
        const Configuration &fair = after.configurations.at(11);
        QCOMPARE(rotor.data, configurationIn(sample, Sample::rotor).data);
        QCOMPARE(rotor.owner, configurationIn(sample, Sample::rotor).owner);
        QCOMPARE(fair.data, configurationIn(sample, Sample::fair).data);
        QVERIFY(fair.description.startsWith(configurationIn(sample, Sample::fair).description));
        QCOMPARE(after.activeIdentifier, Sample::active);
    }

    void changedOnesAreReplaced()
    {
        const QString path = TransferFiles::write(m_home->filePath("some.dat"), intactArchive());
        ControllerState state = ControllerState::sample();
        configurationIn(state, Sample::fair).data = "changed";
        configurationIn(state, Sample::fair).owner = "somebody else";
        removeConfiguration(state, Sample::rotor);
        FrontEnd frontEnd(state);
        load(frontEnd, path, [&frontEnd](QDialog *dialog) {
            QCOMPARE(UserInput::textOf(dialog, "lineEdit_path").section('/', -1),
                     QString("some.dat"));
            frontEnd.driver.expectBox(loadedBox());
            UserInput::click(dialog, "pushButton_load");
        });
        // What comes back gets new slots at the end.
        const Configuration fair = configurationIn(ControllerState::sample(), Sample::fair);
        const Configuration rotor = configurationIn(ControllerState::sample(), Sample::rotor);
        removeConfiguration(state, Sample::fair);
        state.configurations << fair << rotor;
        QCOMPARE(frontEnd.state(), state);
    }

    void onlyWhatIsSelectedIsLoaded()
    {
        const QString path = TransferFiles::write(m_home->filePath("some.dat"), intactArchive());
        ControllerState state = ControllerState::sample();
        removeConfiguration(state, Sample::fair);
        removeConfiguration(state, Sample::rotor);
        FrontEnd frontEnd(state);
        load(frontEnd, path, [&frontEnd](QDialog *dialog) {
            UserInput::click(dialog, "pushButton_clearSelection");
            Table::click(dialog, Sample::rotorText, Qt::ControlModifier);
            frontEnd.driver.expectBox(loadedBox());
            UserInput::click(dialog, "pushButton_load");
        });
        state.configurations << configurationIn(ControllerState::sample(), Sample::rotor);
        QCOMPARE(frontEnd.state(), state);
    }

    void aLockedOneIsShownAsSuchAndNotLoaded()
    {
        const QString path =
            TransferFiles::write(m_home->filePath("locked.dat"),
                                 archiveOf({Sample::fair, Sample::locked, Sample::rotor}));
        ControllerState state = ControllerState::sample();
        configurationIn(state, Sample::locked).data = "theirs";
        removeConfiguration(state, Sample::fair);
        removeConfiguration(state, Sample::rotor);
        FrontEnd frontEnd(state);
        load(frontEnd, path, [&frontEnd](QDialog *dialog) {
            const QStringList lines = Table::lines(dialog);
            QVERIFY(lines.at(1).startsWith(Sample::lockedText));
            QVERIFY(lines.at(1).endsWith(QLatin1String(" | locked")));
            QVERIFY(lines.at(0).endsWith(QLatin1String(" | ")));
            Table::click(dialog, Sample::lockedText, Qt::ControlModifier); // without effect
            frontEnd.driver.expectBox(loadedBox());
            UserInput::click(dialog, "pushButton_load");
        });
        state.configurations << configurationIn(ControllerState::sample(), Sample::fair)
                             << configurationIn(ControllerState::sample(), Sample::rotor);
        QCOMPARE(frontEnd.state(), state);
    }

    void whenAllAreLockedNothingIsLoaded()
    {
        const QString path =
            TransferFiles::write(m_home->filePath("locked.dat"), archiveOf({Sample::locked}));
        FrontEnd frontEnd;
        load(frontEnd, path, [](QDialog *dialog) {
            QVERIFY(Table::lines(dialog).constFirst().endsWith(QLatin1String(" | locked")));
            QVERIFY(!UserInput::widgetNamed(dialog, "pushButton_load")->isEnabled());
            UserInput::click(dialog, "pushButton_exit");
        });
        QCOMPARE(frontEnd.state(), ControllerState::sample());
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void aFullStoreIsToldOf()
    {
        const QString path = TransferFiles::write(m_home->filePath("some.dat"), intactArchive());
        ControllerState full = ControllerState::sample();
        removeConfiguration(full, Sample::fair);
        full.storeCapacity = full.usedBytes();
        FrontEnd frontEnd(full);
        load(frontEnd, path, [&frontEnd](QDialog *dialog) {
            UserInput::click(dialog, "pushButton_clearSelection");
            Table::click(dialog, Sample::fairText, Qt::ControlModifier);
            frontEnd.driver.expectBox(loadBox("Loading configuration unsuccessfully."));
            UserInput::click(dialog, "pushButton_load");
        });
        QCOMPARE(frontEnd.state(), full);
    }

    void leavingTheDialogLoadsNothing()
    {
        const QString path = TransferFiles::write(m_home->filePath("some.dat"), intactArchive());
        FrontEnd frontEnd;
        load(frontEnd, path, [](QDialog *dialog) { UserInput::press(dialog, Qt::Key_Escape); });
        QCOMPARE(frontEnd.state(), ControllerState::sample());
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void cancellingTheChooserLoadsNothing()
    {
        FrontEnd frontEnd;
        refuse(frontEnd, QString());
        QCOMPARE(frontEnd.state(), ControllerState::sample());
        QCOMPARE(frontEnd.record.takeMessages(), QStringList());
    }

    void theBaseConfigurationIsNotOffered()
    {
        const ControllerState sample = ControllerState::sample();
        const QString path = TransferFiles::write(
            m_home->filePath("base.dat"),
            Archive::pack({{"__base", {}, "base configuration", "another base"},
                           TransferFiles::item(configurationIn(sample, Sample::fair))}));
        FrontEnd frontEnd;
        load(frontEnd, path, [](QDialog *dialog) {
            QCOMPARE(Table::lines(dialog).size(), 1);
            UserInput::click(dialog, "pushButton_exit");
        });
        QCOMPARE(frontEnd.state(), sample);
    }

    void aDamagedFileIsRefused_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QStringList>("messages");
        const QStringList unloadable{errorMessage("Error: Unable to load configurations")};
        const QStringList unanswered{errorMessage("Error: Unable to get loaded configurations")};
        const QStringList unknown{errorMessage("Error: Configuration file can not be recognized")};

        QTest::newRow("empty") << QByteArray() << unloadable;
        const QByteArray intact = intactArchive();
        for (const int size : {1, 7}) {
            QTest::addRow("cut to %d bytes", size) << intact.left(size) << unknown;
        }
        for (const int size : {8, 11, 12, 13, 14, 99, 100, 101, 1000, 1024, int(intact.size() / 2),
                               int(intact.size()) - 32, int(intact.size()) - 1}) {
            QTest::addRow("cut to %d bytes", size) << intact.left(size) << unanswered;
        }
        QTest::newRow("one byte more") << intact + '\0' << unanswered;
        QTest::newRow("changed as a text is")
            << QByteArray(intact).replace("\r\n", "\n") << unknown;
        QTest::newRow("noise") << noise(1024 * 1024) << unknown;
        QTest::newRow("zeros") << QByteArray(100000, '\0') << unknown;
        QTest::newRow("another document")
            << QByteArray("<?xml version=\"1.0\"?><html/>") << unknown;
    }

    void aDamagedFileIsRefused()
    {
        QFETCH(QByteArray, contents);
        QFETCH(QStringList, messages);
        refuseDamaged(contents, messages);
    }

    void anyFlippedBitIsFound()
    {
        const QByteArray intact = intactArchive();
        // All of the head with the first item's texts, then here and there.
        for (int byte = 0; byte < intact.size(); byte += byte < 110 ? 1 : 9973) {
            QByteArray contents = intact;
            contents[byte] = static_cast<char>(contents.at(byte) ^ (1 << (byte % 8)));
            const bool isMagic = byte < 8;
            refuseDamaged(contents,
                          {isMagic ? errorMessage("Error: Configuration file can not be recognized")
                                   : errorMessage("Error: Unable to get loaded configurations")});
            if (QTest::currentTestFailed()) {
                QFAIL(qPrintable(QStringLiteral("the flipped bit is in byte %1").arg(byte)));
            }
        }
    }

    void aFileThatCannotBeReadIsRefused()
    {
        if (geteuid() == 0) {
            QSKIP("nothing is closed to the super user");
        }
        const QString path = TransferFiles::write(m_home->filePath("closed.dat"), intactArchive());
        QVERIFY(QFile::setPermissions(path, {}));
        FrontEnd frontEnd;
        refuse(frontEnd, path);
        QCOMPARE(frontEnd.record.takeMessages(),
                 QStringList({errorMessage("file cannot be opened for reading"),
                              errorMessage("Error: Unable to load configurations")}));
        QCOMPARE(frontEnd.state(), ControllerState::sample());
    }

    void aFileThatDisappearsIsRefused()
    {
        const QString path = TransferFiles::write(m_home->filePath("gone.dat"), intactArchive());
        FrontEnd frontEnd;
        frontEnd.record.onCommand = [&path](const QByteArray &command) {
            if (command == "system upload cancel") {
                QFile::remove(path);
            }
        };
        refuse(frontEnd, path);
        QCOMPARE(frontEnd.record.takeMessages(),
                 QStringList({errorMessage("file cannot be opened for reading"),
                              errorMessage("Error: Unable to load configurations")}));
        QCOMPARE(frontEnd.state(), ControllerState::sample());
    }

    // The result of a single chunk does not count, but the controller offers nothing in the end.
    void aFailedChunkIsNoticed()
    {
        const QString path = TransferFiles::write(m_home->filePath("some.dat"), intactArchive());
        FrontEnd frontEnd;
        QString error;
        QVERIFY(frontEnd.channel.faults().add("/^system upload \\d+ /#30", &error));
        refuse(frontEnd, path);
        QCOMPARE(frontEnd.record.takeMessages(),
                 QStringList{errorMessage("Error: Unable to get loaded configurations")});
        QCOMPARE(frontEnd.state(), ControllerState::sample());
    }

private:
    // Opens the load dialog on @p path and runs @p action on it.
    static void load(FrontEnd &frontEnd, const QString &path,
                     const std::function<void(QDialog *dialog)> &action)
    {
        frontEnd.useList([&](QDialog *list) {
            frontEnd.driver.expectFileDialog("Load Configurations", path);
            frontEnd.driver.expectDialog("ConfigLoadDlgClass", action);
            UserInput::click(list, "pushButton_load");
        });
    }

    // The same where the file is refused before the dialog opens.
    static void refuse(FrontEnd &frontEnd, const QString &path)
    {
        frontEnd.useList([&](QDialog *list) {
            frontEnd.driver.expectFileDialog("Load Configurations", path);
            UserInput::click(list, "pushButton_load");
        });
    }

    void refuseDamaged(const QByteArray &contents, const QStringList &messages)
    {
        const QString path = TransferFiles::write(m_home->filePath("damaged.dat"), contents);
        FrontEnd frontEnd;
        refuse(frontEnd, path);
        QCOMPARE(frontEnd.record.takeMessages(), messages);
        QCOMPARE(frontEnd.state(), ControllerState::sample());
    }

    std::optional<TemporaryHome> m_home;
};

VELTRA4_TEST(TestEndToEndLoad)
#include "tst_endtoendload.moc"

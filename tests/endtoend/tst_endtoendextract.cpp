#include "tests/endtoend/frontend.h"
#include "tests/endtoend/table.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"
#include "tests/tool/toolrun.h"

#include <QAbstractButton>
#include <QFileInfo>
#include <QtTest>

#include <algorithm>
#include <memory>
#include <optional>

namespace {

constexpr int patienceMs = 60000; // for what happens on its own, however busy the machine is

// Of a list of configurations: all but the identified one.
QVector<Configuration> without(const QByteArray &identifier, QVector<Configuration> configurations)
{
    configurations.erase(std::remove_if(configurations.begin(), configurations.end(),
                                        [&identifier](const Configuration &configuration) {
                                            return configuration.identifier == identifier;
                                        }),
                         configurations.end());
    return configurations;
}

} // namespace

/// From "I have deleted a configuration by mistake" to having it back, in the steps of the
/// operators' guide.
class TestEndToEndExtract : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_home.emplace();
        m_frontEnd = std::make_unique<FrontEnd>();
        m_file = m_home->filePath("found.dat");
        makeAutomaticBackup();
    }

    void cleanup()
    {
        m_frontEnd.reset();
        m_home.reset();
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void aDeletedConfigurationComesBack()
    {
        m_frontEnd->useList([this](QDialog *list) {
            removeOne(list, Sample::fairText);
            removeOne(list, Sample::rotorText);
            changeOne(list, Sample::activeText, " changed");
        });
        const ControllerState between = m_frontEnd->state();
        QVERIFY(!hasConfiguration(between, Sample::fair));

        extractNewest();
        loadOne(Sample::fairText);

        ControllerState expected = between;
        expected.configurations << configurationIn(ControllerState::sample(), Sample::fair);
        QCOMPARE(m_frontEnd->state(), expected);
    }

    void aChangedConfigurationBecomesWhatItWas()
    {
        m_frontEnd->useList([this](QDialog *list) {
            changeOne(list, Sample::rotorText, " no more");
            changeOne(list, Sample::fairText, " that nobody visits");
        });
        const ControllerState between = m_frontEnd->state();

        extractNewest();
        loadOne(Sample::rotorText);

        // What comes back gets a new slot at the end.
        ControllerState expected = between;
        expected.configurations = without(Sample::rotor, between.configurations);
        expected.configurations << configurationIn(ControllerState::sample(), Sample::rotor);
        QCOMPARE(m_frontEnd->state(), expected);
    }

    void aBackupIsOfferedInFull()
    {
        extractNewest();
        QStringList offered;
        m_frontEnd->useList([&](QDialog *list) {
            m_frontEnd->driver.expectFileDialog("Load Configurations", m_file);
            m_frontEnd->driver.expectDialog("ConfigLoadDlgClass", [&offered](QDialog *dialog) {
                offered = Table::lines(dialog);
                UserInput::click(dialog, "pushButton_exit");
            });
            UserInput::click(list, "pushButton_load");
        });
        QStringList stored;
        for (const Configuration &one : m_frontEnd->state().configurations) {
            stored << QStringList{QString::fromLatin1(one.description),
                                  QString::fromLatin1(one.owner),
                                  QString::fromLatin1(one.identifier),
                                  one.isLocked() ? QString("locked") : QString()}
                          .join(" | ");
        }
        QCOMPARE(offered, stored);
        QCOMPARE(m_frontEnd->state(), ControllerState::sample());
    }

private:
    void makeAutomaticBackup()
    {
        m_frontEnd->tellVersion(HostVersion::current);
        QTRY_VERIFY_WITH_TIMEOUT(Tool::run({"verify"}).exitCode == 0, patienceMs);
    }

    void removeOne(QDialog *list, const QString &description)
    {
        Table::click(list, description);
        m_frontEnd->driver.expectDialog(QString(), [](QDialog *box) {
            qobject_cast<QMessageBox *>(box)->button(QMessageBox::Ok)->click();
        });
        UserInput::click(list, "pushButton_delete");
    }

    void changeOne(QDialog *list, const QString &description, const QString &addition)
    {
        m_frontEnd->driver.expectDialog("EditConfigDialog", [&addition](QDialog *dialog) {
            UserInput::type(dialog, "lineEdit_desc", addition);
            UserInput::click(dialog, "pushButton_ok");
        });
        Table::doubleClick(list, description);
    }

    void extractNewest()
    {
        const QString controller = QString::fromLatin1(m_frontEnd->state().hostName);
        const Tool::Run listed = Tool::run({"list", "--controller", controller, "--json"});
        QCOMPARE(listed.exitCode, 0);
        const QString newest = listed.array().first().toObject()["file"].toString();
        const Tool::Run extracted = Tool::run({"extract", newest, m_file});
        QVERIFY2(extracted.exitCode == 0, qPrintable(extracted.complaint));
    }

    void loadOne(const QString &description)
    {
        m_frontEnd->useList([&](QDialog *list) {
            m_frontEnd->driver.expectFileDialog("Load Configurations", m_file);
            m_frontEnd->driver.expectDialog("ConfigLoadDlgClass", [&](QDialog *dialog) {
                UserInput::click(dialog, "pushButton_clearSelection");
                Table::click(dialog, description, Qt::ControlModifier);
                m_frontEnd->driver.expectBox({QMessageBox::Information, "Load Configurations",
                                              "Loading configuration successfully."});
                UserInput::click(dialog, "pushButton_load");
            });
            UserInput::click(list, "pushButton_load");
        });
    }

    std::optional<TemporaryHome> m_home;
    std::unique_ptr<FrontEnd> m_frontEnd;
    QString m_file; ///< that is extracted
};

VELTRA4_TEST(TestEndToEndExtract)
#include "tst_endtoendextract.moc"

#include "tests/endtoend/scene.h"
#include "tests/endtoend/table.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTest>

#include <memory>

using namespace Story;

namespace {

// Of the sample; what comes back gets a new slot at the end.
ControllerState withSampleAtEnd(ControllerState state, const QByteArray &identifier)
{
    if (hasConfiguration(state, identifier)) {
        removeConfiguration(state, identifier);
    }
    state.configurations << configurationIn(ControllerState::sample(), identifier);
    return state;
}

Step change(const QString &addition)
{
    return onEdit({type("lineEdit_desc", addition), click("pushButton_ok")});
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
        m_scene = std::make_unique<Scene>();
        m_scene->tellVersion(HostVersion::current);
        QTRY_VERIFY_WITH_TIMEOUT(Tool::run({"verify"}).exitCode == 0, patienceMs);
    }

    void cleanup()
    {
        m_scene.reset();
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void aDeletedConfigurationComesBack()
    {
        m_scene->play({onList({selectRow(Sample::fairText), click("pushButton_delete"),
                               selectRow(Sample::rotorText), click("pushButton_delete"),
                               doubleClickRow(Sample::activeText), leave}),
                       answer(QMessageBox::Ok), answer(QMessageBox::Ok), change(" changed")});
        const ControllerState between = m_scene->state();
        QVERIFY(!hasConfiguration(between, Sample::fair));
        extractNewest();
        loadOne(Sample::fairText);
        QCOMPARE(m_scene->state(), withSampleAtEnd(between, Sample::fair));
    }

    void aChangedConfigurationBecomesWhatItWas()
    {
        m_scene->play(
            {onList({doubleClickRow(Sample::rotorText), doubleClickRow(Sample::fairText), leave}),
             change(" no more"), change(" that nobody visits")});
        const ControllerState between = m_scene->state();
        extractNewest();
        loadOne(Sample::rotorText);
        QCOMPARE(m_scene->state(), withSampleAtEnd(between, Sample::rotor));
    }

    void aBackupIsOfferedInFull()
    {
        extractNewest();
        QStringList stored;
        for (const Configuration &one : m_scene->state().configurations) {
            stored << QStringList{one.description, one.owner, one.identifier,
                                  one.isLocked() ? "locked" : ""}
                          .join(" | ");
        }
        const auto seeAll = [&stored](QDialog *dialog) { QCOMPARE(Table::lines(dialog), stored); };
        m_scene->play(load("found.dat", {onLoad({seeAll, click("pushButton_exit")})}));
        QCOMPARE(m_scene->state(), ControllerState::sample());
    }

private:
    void extractNewest()
    {
        const QString controller = QString::fromLatin1(m_scene->state().hostName);
        const Tool::Run listed = Tool::run({"list", "--controller", controller, "--json"});
        QCOMPARE(listed.exitCode, 0);
        const QString newest = listed.array().first().toObject()["file"].toString();
        const Tool::Run extracted = Tool::run({"extract", newest, m_scene->filePath("found.dat")});
        QVERIFY2(extracted.exitCode == 0, qPrintable(extracted.complaint));
    }

    void loadOne(const QString &description)
    {
        m_scene->play(
            load("found.dat",
                 {onLoad({selectOnly({description}), click("pushButton_load")}), loadedBox()}));
    }

    std::unique_ptr<Scene> m_scene;
};

VELTRA4_TEST(TestEndToEndExtract)
#include "tst_endtoendextract.moc"

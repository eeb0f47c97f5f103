#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QtTest>

class TestToolFitness : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhetherItFits_data()
    {
        QTest::addColumn<QStringList>("controller");
        QTest::addColumn<QString>("misfit"); // empty if it fits
        const QString wrongModel =
            "It does not fit the model \"model 5\": it is of the model \"Model 5\".";
        const QString oldTracking =
            "It does not fit tracking software %1: it wants v4.2.1 or newer.";
        QTest::newRow("all the same")
            << QStringList{"--model", "Model 5", "--tracking", "4.2.1", "--firmware", "v3.5"} << "";
        QTest::newRow("all newer") << QStringList{"--tracking", "4.10", "--firmware", "4"} << "";
        QTest::newRow("another model") << QStringList{"--model", "model 5"} << wrongModel;
        QTest::newRow("older tracking")
            << QStringList{"--tracking", "4.2.0"} << oldTracking.arg("v4.2.0");
        QTest::newRow("a place that is not given")
            << QStringList{"--tracking", "4.2"} << oldTracking.arg("v4.2");
        QTest::newRow("older firmware")
            << QStringList{"--firmware", "3.4.9"}
            << "It does not fit an embedded controller's firmware v3.4.9: it wants v3.5 or newer.";
    }

    void tellsWhetherItFits()
    {
        QFETCH(const QStringList, controller);
        QFETCH(const QString, misfit);
        const Tool::Run run = Tool::run(QStringList{"verify", m_backup} + controller);
        QCOMPARE(run.exitCode, misfit.isEmpty() ? 0 : 1);
        QCOMPARE(run.complaint, misfit.isEmpty() ? QString() : m_backup + ": " + misfit + '\n');
        const Tool::Run forPrograms =
            Tool::run(QStringList{"verify", "--json", m_backup} + controller);
        QCOMPARE(forPrograms.object()["misfits"].toArray(),
                 misfit.isEmpty() ? QJsonArray() : QJsonArray{misfit});
    }

private:
    const Tool::Folder m_folder;
    const QString m_backup = m_folder.make("a.xml", SampleBackup::document());
};

VELTRA4_TEST(TestToolFitness)
#include "tst_toolfitness.moc"

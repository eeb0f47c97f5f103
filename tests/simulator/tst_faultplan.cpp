#include "simulator/faultplan.h"
#include "tests/support/testmain.h"

#include <QTest>

namespace {

// The faults of five commands: "." for none, "F" for a failure, otherwise the answer or the delay.
QString outcomes(FaultPlan &plan)
{
    QStringList texts;
    for (const QByteArray command : {"config desc", "system download 1", "config owner \"a/b=c\"",
                                     "system download 2", "system download 3"}) {
        const std::optional<Fault> fault = plan.next(command);
        if (!fault) {
            texts << ".";
        } else if (fault->kind == Fault::Kind::Fail) {
            texts << "F";
        } else if (fault->kind == Fault::Kind::Answer) {
            texts << QString::fromLatin1(fault->answer);
        } else {
            texts << QString::number(fault->milliseconds);
        }
    }
    return texts.join(' ');
}

} // namespace

class TestFaultPlan : public QObject
{
    Q_OBJECT

private slots:
    void rulesSelectCommands()
    {
        const QVector<QPair<QString, QString>> rules{
            {"3", ". . F . ."},
            {"3+", ". . F F F"},
            {"6", ". . . . ."},
            {"2=-1", ". -1 . . ."},
            {"2=", ".  . . ."},
            {"1~250", "250 . . . ."},
            {"config desc", "F . . . ."},
            {"config *", "F . F . ."},
            {"system download ?", ". F . F F"},
            {"*\"a*c\"", ". . F . ."}, // passes a slash
            {"system download [12]", ". . . . ."},
            {"system*#2", ". . . F ."},
            {"system*#2+=x", ". . . x x"},
            {"/download [13]$/", ". F . . F"},
            {"/^s/#3~9", ". . . . 9"},
            {"/b=c/=~", ". . ~ . ."},
            {"1=a%FF%25", QString::fromLatin1("a\xff% . . . .")},
            {"1=yes ", "yes  . . . ."}};
        for (const auto &[rule, expected] : rules) {
            FaultPlan plan;
            QString error;
            QVERIFY2(plan.add(rule, &error), qPrintable(error));
            QCOMPARE(rule + ": " + outcomes(plan), rule + ": " + expected);
        }
    }

    void unreadableRulesAreRefused()
    {
        const auto expectRefusal = [](const QString &rule, const QString &error) {
            FaultPlan plan;
            QString found;
            QVERIFY2(!plan.add(rule, &found), qPrintable(rule));
            QCOMPARE(found, error);
            QCOMPARE(outcomes(plan), ". . . . .");
        };
        for (const QString rule : {"", "0", "config*#0"}) {
            expectRefusal(rule, '"' + rule + "\" selects no command");
        }
        expectRefusal("=x", "\"\" selects no command");
        expectRefusal("1~", "\"\" is no number of milliseconds");
        expectRefusal("1~-5", "\"-5\" is no number of milliseconds");
        for (const QString rule : {"%%%", "config", "confg *", "config number_of_configs *",
                                   "config owner_of_config", " 3", "/delete_config", "/^confg /"}) {
            expectRefusal(rule, '"' + rule + "\" fits no command of the controller");
        }
        expectRefusal("%%%#2+~5", "\"%%%\" fits no command of the controller");
        expectRefusal("/(/", "\"/(/\" is no pattern: missing closing parenthesis");
    }

    void rulesThatMayFitAreTaken()
    {
        for (const char *rule :
             {"*", "?*", "config owner \"*", "config owner ?", "* t07", "config config t??",
              "system download 5", "/^config d/", "/^config owner_of_config config2024/", "/%%%/",
              "/^nowhere|config/"}) {
            QString error;
            QVERIFY2(FaultPlan().add(rule, &error), rule);
        }
    }

    void theHelpsRulesAreTaken()
    {
        const QString help = FaultPlan::ruleHelp();
        FaultPlan plan;
        QString error;
        for (const char *rule : {"3", "3+", "config *", "config *#3", "config *#3+"}) {
            QVERIFY2(help.contains('"' + QString(rule) + '"'), rule);
            QVERIFY2(plan.add(rule, &error), qPrintable(error));
        }
    }

    void countingBeginsWhenTheRuleIsAdded()
    {
        FaultPlan plan;
        outcomes(plan);
        plan.addNth(2);
        QCOMPARE(outcomes(plan), QString(". F . . ."));
        QCOMPARE(outcomes(plan), ". . . . .");
        plan.addNth(4, {}, true);
        QCOMPARE(outcomes(plan), QString(". . . F F"));
        QCOMPARE(outcomes(plan), QString("F F F F F"));
        plan.clear();
        QCOMPARE(outcomes(plan), ". . . . .");
    }

    void theFirstRuleThatTakesACommandWins()
    {
        FaultPlan plan;
        QString error;
        QVERIFY(plan.add("2=second", &error));
        QVERIFY(plan.add("*=every", &error));
        QCOMPARE(outcomes(plan), QString("every second every every every"));
    }

    void faultsAreCounted()
    {
        FaultPlan plan;
        QCOMPARE(plan.faultCount(), 0);
        plan.addMatching(QRegularExpression("download"));
        outcomes(plan);
        QCOMPARE(plan.faultCount(), 3);
    }

    void patternsCountTheirOwnCommands()
    {
        FaultPlan plan;
        plan.addMatching(QRegularExpression("^config"), {Fault::Kind::Answer, "x", 0}, 2, false);
        QCOMPARE(outcomes(plan), QString(". . x . ."));
    }
};

VELTRA4_TEST(TestFaultPlan)
#include "tst_faultplan.moc"

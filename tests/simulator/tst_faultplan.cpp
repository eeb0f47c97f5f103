#include "simulator/faultplan.h"
#include "tests/support/testmain.h"

#include <QtTest>

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
    void rulesSelectCommands_data()
    {
        QTest::addColumn<QString>("rule");
        QTest::addColumn<QString>("expected");
        QTest::newRow("n-th") << "3"
                              << ". . F . .";
        QTest::newRow("n-th and later") << "3+"
                                        << ". . F F F";
        QTest::newRow("beyond") << "6"
                                << ". . . . .";
        QTest::newRow("n-th answered") << "2=-1"
                                       << ". -1 . . .";
        QTest::newRow("n-th answered empty") << "2="
                                             << ".  . . .";
        QTest::newRow("n-th delayed") << "1~250"
                                      << "250 . . . .";
        QTest::newRow("whole command") << "config desc"
                                       << "F . . . .";
        QTest::newRow("asterisk") << "config *"
                                  << "F . F . .";
        QTest::newRow("question mark") << "system download ?"
                                       << ". F . F F";
        QTest::newRow("asterisk passes a slash") << "*\"a*c\""
                                                 << ". . F . .";
        QTest::newRow("no other wildcard") << "system download [12]"
                                           << ". . . . .";
        QTest::newRow("second that fits") << "system*#2"
                                          << ". . . F .";
        QTest::newRow("second that fits and later") << "system*#2+=x"
                                                    << ". . . x x";
        QTest::newRow("regular expression") << "/download [13]$/"
                                            << ". F . . F";
        QTest::newRow("regular expression, counted") << "/^s/#3~9"
                                                     << ". . . . 9";
        QTest::newRow("regular expression with sign") << "/b=c/=~"
                                                      << ". . ~ . .";
        QTest::newRow("percent-encoded") << "1=a%FF%25" << QString::fromLatin1("a\xff% . . . .");
        QTest::newRow("blanks stay") << "1=yes "
                                     << "yes  . . . .";
    }

    void rulesSelectCommands()
    {
        QFETCH(const QString, rule);
        QFETCH(const QString, expected);
        FaultPlan plan;
        QString error;
        QVERIFY2(plan.add(rule, &error), qPrintable(error));
        QCOMPARE(outcomes(plan), expected);
    }

    void unreadableRulesAreRefused_data()
    {
        QTest::addColumn<QString>("rule");
        QTest::addColumn<QString>("error");
        QTest::newRow("nothing") << ""
                                 << "\"\" selects no command";
        QTest::newRow("only an answer") << "=x"
                                        << "\"\" selects no command";
        QTest::newRow("zeroth") << "0"
                                << "\"0\" selects no command";
        QTest::newRow("zeroth that fits") << "config*#0"
                                          << "\"config*#0\" selects no command";
        QTest::newRow("no delay") << "1~"
                                  << "\"\" is no number of milliseconds";
        QTest::newRow("negative delay") << "1~-5"
                                        << "\"-5\" is no number of milliseconds";
        const auto fitsNothing = [](const char *name, const QString &rule) {
            QTest::newRow(name) << rule
                                << QString("\"%1\" fits no command of the controller").arg(rule);
        };
        fitsNothing("no command at all", "%%%");
        fitsNothing("a command's beginning only", "config");
        fitsNothing("a misspelt command", "confg *");
        fitsNothing("an argument where none is taken", "config number_of_configs *");
        fitsNothing("a command without its argument", "config owner_of_config");
        fitsNothing("a blank before a number", " 3");
        fitsNothing("an expression without its end", "/delete_config");
        fitsNothing("a misspelt beginning", "/^confg /");
        QTest::newRow("counted, and no command") << "%%%#2+~5"
                                                 << "\"%%%\" fits no command of the controller";
        QTest::newRow("bad expression") << "/(/"
                                        << "\"/(/\" is no pattern: missing closing parenthesis";
    }

    void unreadableRulesAreRefused()
    {
        QFETCH(const QString, rule);
        QFETCH(const QString, error);
        FaultPlan plan;
        QString found;
        QVERIFY(!plan.add(rule, &found));
        QCOMPARE(found, error);
        QCOMPARE(outcomes(plan), QString(". . . . ."));
    }

    void rulesThatMayFitAreTaken_data()
    {
        QTest::addColumn<QString>("rule");
        for (const char *rule :
             {"*", "?*", "config owner \"*", "config owner ?", "* t07", "config config t??",
              "system download 5", "/^config d/", "/^config owner_of_config config2024/", "/%%%/",
              "/^nowhere|config/"}) {
            QTest::newRow(rule) << QString(rule);
        }
    }

    void rulesThatMayFitAreTaken()
    {
        QFETCH(const QString, rule);
        FaultPlan plan;
        QString error;
        QVERIFY2(plan.add(rule, &error), qPrintable(error));
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
        QCOMPARE(outcomes(plan), QString(". . . . ."));
        plan.addNth(4, {}, true);
        QCOMPARE(outcomes(plan), QString(". . . F F"));
        QCOMPARE(outcomes(plan), QString("F F F F F"));
        plan.clear();
        QCOMPARE(outcomes(plan), QString(". . . . ."));
    }

    void theFirstRuleThatTakesACommandWins()
    {
        FaultPlan plan;
        QString error;
        QVERIFY(plan.add("2=second", &error));
        QVERIFY(plan.add("*=every", &error));
        QCOMPARE(outcomes(plan), QString("every second every every every"));
    }

    void anEmptyPlanDoesNothing()
    {
        FaultPlan plan;
        QCOMPARE(outcomes(plan), QString(". . . . ."));
        QCOMPARE(plan.faultCount(), 0);
    }

    void faultsAreCounted()
    {
        FaultPlan plan;
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

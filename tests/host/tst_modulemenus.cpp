#include "host/modulemenus.h"

#include "hostapi/modulemenuentry.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

class TestModuleMenus : public QObject
{
    Q_OBJECT

private:
    static QStringList texts(const QWidget *container)
    {
        QStringList texts;
        const QList<QAction *> actions = container->actions();
        for (const QAction *action : actions) {
            texts << action->text();
        }
        return texts;
    }

    // Places an action of that text in the menu "&VELTRA4".
    static void place(QMenuBar &bar, const QString &text, int position)
    {
        ModuleMenuEntry entry;
        entry.action = new QAction(text, &bar);
        entry.actionPosition = position;
        entry.menuTitle = "&VELTRA4";
        entry.menuPosition = 100;
        ModuleMenus::place(&bar, entry);
    }

private slots:
    void aMissingMenuIsCreatedWhereItAsksToBe()
    {
        QMenuBar bar;
        ModuleMenus::menu(&bar, "&Help", 1000);
        ModuleMenus::menu(&bar, "&File", 0);
        place(bar, "&Configurations", 30);
        QCOMPARE(texts(&bar), QStringList({"&File", "&VELTRA4", "&Help"}));
        QCOMPARE(texts(bar.actions().at(1)->menu()), QStringList("&Configurations"));
    }

    void actionsStandInAnExistingMenuInOrderOfTheirPositions()
    {
        QMenuBar bar;
        place(bar, "late", 40);
        place(bar, "early", -5);
        place(bar, "middle", 30);
        place(bar, "also middle", 30);
        QCOMPARE(texts(&bar), QStringList("&VELTRA4"));
        QCOMPARE(texts(bar.actions().at(0)->menu()),
                 QStringList({"early", "middle", "also middle", "late"}));
    }

    void anEntryWithoutActionIsIgnored()
    {
        QMenuBar bar;
        ModuleMenus::place(&bar, ModuleMenuEntry());
        QCOMPARE(texts(&bar), QStringList());
    }
};

VELTRA4_TEST(TestModuleMenus)
#include "tst_modulemenus.moc"

#include "host/modulemenus.h"

#include "hostapi/modulemenuentry.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QtTest>

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

    static void place(QMenuBar &bar, QAction &action, int position,
                      const QString &menuTitle = QStringLiteral("&VELTRA4"), int menuPosition = 100)
    {
        ModuleMenuEntry entry;
        entry.action = &action;
        entry.actionPosition = position;
        entry.menuTitle = menuTitle;
        entry.menuPosition = menuPosition;
        ModuleMenus::place(&bar, entry);
    }

private slots:
    void aMissingMenuIsCreatedWhereItAsksToBe()
    {
        QMenuBar bar;
        ModuleMenus::menu(&bar, "&Help", 1000);
        ModuleMenus::menu(&bar, "&File", 0);
        QAction action("&Configurations");
        place(bar, action, 30);
        QCOMPARE(texts(&bar), QStringList({"&File", "&VELTRA4", "&Help"}));
        QCOMPARE(texts(bar.actions().at(1)->menu()), QStringList("&Configurations"));
    }

    void anExistingMenuIsUsed()
    {
        QMenuBar bar;
        QAction first("first");
        QAction second("second");
        place(bar, first, 30);
        place(bar, second, 40);
        QCOMPARE(texts(&bar), QStringList("&VELTRA4"));
        QCOMPARE(texts(bar.actions().at(0)->menu()), QStringList({"first", "second"}));
    }

    void actionsStandInOrderOfTheirPositions()
    {
        QMenuBar bar;
        QAction late("late");
        QAction early("early");
        QAction middle("middle");
        QAction alsoMiddle("also middle");
        place(bar, late, 40);
        place(bar, early, -5);
        place(bar, middle, 30);
        place(bar, alsoMiddle, 30);
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

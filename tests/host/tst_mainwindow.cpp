#include "host/mainwindow.h"

#include "host/channellogs.h"
#include "host/channelmonitor.h"
#include "host/controlleridentity.h"
#include "host/identitypanel.h"
#include "tests/support/modaldriver.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QAction>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QTemporaryDir>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

class TestMainWindow : public QObject
{
    Q_OBJECT

private:
    ChannelMonitor m_monitor;
    ChannelLogs m_logs{m_monitor};
    std::unique_ptr<MainWindow> m_window;
    QDockWidget *m_events = nullptr;
    QDockWidget *m_commands = nullptr;

    void makeWindow()
    {
        m_window = std::make_unique<MainWindow>(m_logs.events(), m_logs.commands());
        m_events = m_window->findChild<QDockWidget *>("dock_events");
        m_commands = m_window->findChild<QDockWidget *>("dock_commands");
    }

    void grow(int width, int height) const
    {
        m_window->resize(m_window->size() + QSize(width, height));
        QCoreApplication::processEvents();
    }

    QString focus() const { return UserInput::focusOf(m_window.get()); }

private slots:
    void init()
    {
        makeWindow();
        m_window->takePreferredSize();
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void cleanup() { m_window.reset(); }

    void appearsBeforeAnybodyIsTold()
    {
        makeWindow();
        QSignalSpy appeared(m_window.get(), &MainWindow::appeared);
        m_window->show();
        QCOMPARE(appeared.count(), 0);
        QVERIFY(appeared.wait());
        m_window->repaint();
        QCoreApplication::processEvents();
        QCOMPARE(appeared.count(), 1);
    }

    void theDocksGetWhatTheWindowGrows()
    {
        const QSize panel = m_window->centralWidget()->size();
        const int eventsWidth = m_events->width();
        const int commandsHeight = m_commands->height();
        grow(300, 200);
        QCOMPARE(m_window->centralWidget()->size(), panel);
        QCOMPARE(m_events->width(), eventsWidth + 300);
        QCOMPARE(m_commands->height(), commandsHeight + 200);
        grow(-300, -200);
        QCOMPARE(m_window->centralWidget()->size(), panel);
        QCOMPARE(m_commands->size().width(), m_window->width());

        m_window->resizeDocks({m_events}, {m_events->width() - 100}, Qt::Horizontal);
        QCoreApplication::processEvents();
        const QSize wider = m_window->centralWidget()->size(); // as the user wants it
        QVERIFY(wider.width() > panel.width());
        grow(300, 200);
        QCOMPARE(m_window->centralWidget()->size(), wider);
    }

    void longTextsOfTheControllerLeaveTheEventsTheirWidth()
    {
        const QSize panel = m_window->centralWidget()->size();
        const int eventsWidth = m_events->width();
        ControllerIdentity identity;
        identity.hostName = QString(60, 'h');
        identity.activeDescription = QString(100, 'W');
        m_window->identityPanel()->showIdentity(identity);
        QCoreApplication::processEvents();
        QCOMPARE(m_window->centralWidget()->size(), panel);
        QCOMPARE(m_events->width(), eventsWidth);
    }

    void fitsTheScreenAlsoWithALargeFont()
    {
        const QFont ordinary = QApplication::font();
        QFont large = ordinary;
        large.setPointSize(18);
        QApplication::setFont(large);
        makeWindow();
        const QSize least = m_window->minimumSizeHint();
        const QSize first = m_window->size();
        QApplication::setFont(ordinary);
        // 1280 x 800 pixels at 150 %.
        QVERIFY2(least.width() <= 853 && least.height() <= 533,
                 qPrintable(QString("%1 x %2").arg(least.width()).arg(least.height())));
        const QSize space = m_window->screen()->availableSize();
        QVERIFY(first.width() <= space.width() && first.height() < space.height());
    }

    void tabLeavesTheTables()
    {
        QCOMPARE(focus(), "tableView_commands");
        QStringList visited;
        for (int i = 0; i < 4; ++i) {
            QTest::keyClick(m_window->focusWidget(), Qt::Key_Tab);
            visited << focus();
        }
        visited.sort();
        QCOMPARE(visited,
                 QStringList({"lineEdit_commands_filter", "lineEdit_events_filter",
                              "tableView_commands", "tableView_events"}));
    }

    void bothLogsCanBeSavedFromTheMenu()
    {
        const QTemporaryDir folder;
        const QList<QAction *> entries =
            m_window->menuBar()->actions().constFirst()->menu()->actions();
        for (const QString text : {"Save Events\u2026", "Save Commands\u2026"}) {
            const auto entry = std::find_if(entries.begin(), entries.end(), [&](QAction *action) {
                return action->text() == text;
            });
            QVERIFY2(entry != entries.end(), qPrintable(text));
            ModalDriver driver;
            driver.expectFileDialog("Save Log", folder.filePath(text));
            (*entry)->trigger();
            driver.verify();
            QVERIFY(QFile::exists(folder.filePath(text)));
        }
    }

    void eachDockHasAShortcut()
    {
        QTest::keyClick(m_window.get(), Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(focus(), "tableView_events");
        m_commands->hide();
        QTest::keyClick(m_window.get(), Qt::Key_2, Qt::ControlModifier);
        QVERIFY(m_commands->isVisible());
        QCOMPARE(focus(), "tableView_commands");
    }
};

VELTRA4_TEST(TestMainWindow)
#include "tst_mainwindow.moc"

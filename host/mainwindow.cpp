#include "host/mainwindow.h"

#include "host/growingdocks.h"
#include "host/identitypanel.h"
#include "host/logview.h"
#include "host/modulemenus.h"
#include "host/panelarea.h"
#include "host/transferstatus.h"

#include <QCoreApplication>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>

namespace {

// Modules place their menus relative to these.
constexpr int fileMenuPosition = 0;
constexpr int viewMenuPosition = 50;
constexpr int helpMenuPosition = 1000;

// In average characters and lines, so that a large font has as much to read as a small one.
constexpr QSize preferredSize(168, 45);

} // namespace

MainWindow::MainWindow(LogModel *events, LogModel *commands)
    : m_identityPanel(new IdentityPanel)
    , m_transferStatus(new TransferStatus(this))
{
    setObjectName(QStringLiteral("MainWindow"));
    setWindowTitle(tr("VELTRA4 development host"));
    setCentralWidget(new PanelArea(m_identityPanel));
    m_eventsDock =
        addDock(Qt::RightDockWidgetArea, tr("Events"),
                new LogView(events, QStringLiteral("events"), tr("Nothing has been posted yet.")),
                QStringLiteral("Ctrl+1"));
    auto *commandsLog =
        new LogView(commands, QStringLiteral("commands"), tr("No command has been sent yet."));
    m_commandsDock =
        addDock(Qt::BottomDockWidgetArea, tr("Commands"), commandsLog, QStringLiteral("Ctrl+2"));
    commandsLog->focusTable();
    addMenus();
    statusBar()->addPermanentWidget(m_transferStatus);
    new GrowingDocks(this, m_eventsDock, m_commandsDock);
    takeSize(sizeForContents().boundedTo(spaceOnScreen()));
}

void MainWindow::takePreferredSize()
{
    takeSize(sizeForContents());
}

void MainWindow::paintEvent(QPaintEvent *event)
{
    QMainWindow::paintEvent(event);
    if (!m_hasAppeared) {
        m_hasAppeared = true;
        QTimer::singleShot(0, this, &MainWindow::appeared);
    }
}

QDockWidget *MainWindow::addDock(Qt::DockWidgetArea area, const QString &title, LogView *log,
                                 const QString &shortcut)
{
    auto *dock = new QDockWidget(title, this);
    dock->setObjectName(QStringLiteral("dock_") + title.toLower());
    dock->setWidget(log);
    addDockWidget(area, dock);

    QMenu *view = ModuleMenus::menu(menuBar(), tr("V&iew"), viewMenuPosition);
    view->addAction(dock->toggleViewAction());
    const auto goThere = [dock, log] {
        dock->show();
        dock->raise();
        dock->activateWindow(); // it may float
        log->focusTable();
    };
    view->addAction(tr("Go to %1").arg(title), this, goThere, QKeySequence(shortcut));
    ModuleMenus::menu(menuBar(), tr("&File"), fileMenuPosition)
        ->addAction(tr("Save %1\u2026").arg(title), log, &LogView::save);
    return dock;
}

void MainWindow::addMenus()
{
    QMenu *file = ModuleMenus::menu(menuBar(), tr("&File"), fileMenuPosition);
    file->addSeparator();
    QAction *quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
    QMenu *help = ModuleMenus::menu(menuBar(), tr("&Help"), helpMenuPosition);
    help->addAction(tr("&About"), this, &MainWindow::about);
}

QSize MainWindow::sizeForContents() const
{
    return {preferredSize.width() * fontMetrics().averageCharWidth(),
            preferredSize.height() * fontMetrics().height()};
}

// Less what the window manager puts around it.
QSize MainWindow::spaceOnScreen() const
{
    return screen()->availableSize() - QSize(0, style()->pixelMetric(QStyle::PM_TitleBarHeight));
}

void MainWindow::takeSize(const QSize &size)
{
    resize(size);
    resizeDocks({m_eventsDock}, {width() * 2 / 3}, Qt::Horizontal);
    resizeDocks({m_commandsDock}, {height() / 2}, Qt::Vertical);
}

void MainWindow::about()
{
    QMessageBox::about(
        this, tr("About"),
        tr("VELTRA4 development host %1\n\nShows modules of the front end against a simulated "
           "controller.")
            .arg(QCoreApplication::applicationVersion()));
}

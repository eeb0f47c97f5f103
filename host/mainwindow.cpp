#include "host/mainwindow.h"

#include "host/identitypanel.h"
#include "host/logview.h"
#include "host/modulemenus.h"
#include "host/transferstatus.h"

#include <QCoreApplication>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>

namespace {

// Modules place their menus relative to these.
constexpr int fileMenuPosition = 0;
constexpr int viewMenuPosition = 50;
constexpr int helpMenuPosition = 1000;

// In average characters and lines, so that a large font has as much to read as a small one.
constexpr QSize preferredSize(168, 45);

} // namespace

MainWindow::MainWindow(LogModel *events, LogModel *commands)
    : m_identityPanel(new IdentityPanel(this))
    , m_transferStatus(new TransferStatus(this))
{
    setObjectName(QStringLiteral("MainWindow"));
    setWindowTitle(tr("VELTRA4 development host"));
    setCentralWidget(m_identityPanel);
    addMenus();
    addDock(Qt::RightDockWidgetArea, tr("Events"),
            new LogView(events, QStringLiteral("events"), tr("Nothing has been posted yet.")));
    auto *commandsView =
        new LogView(commands, QStringLiteral("commands"), tr("No command has been sent yet."));
    addDock(Qt::BottomDockWidgetArea, tr("Commands"), commandsView);
    commandsView->setFocus();
    statusBar()->addPermanentWidget(m_transferStatus);
    takePreferredSize();
    resize(size().boundedTo(screen()->availableSize()));
}

void MainWindow::addDock(Qt::DockWidgetArea area, const QString &title, QWidget *content)
{
    auto *dock = new QDockWidget(title, this);
    dock->setObjectName(QStringLiteral("dock_") + title.toLower());
    dock->setWidget(content);
    addDockWidget(area, dock);
    ModuleMenus::menu(menuBar(), tr("V&iew"), viewMenuPosition)
        ->addAction(dock->toggleViewAction());
}

void MainWindow::addMenus()
{
    QMenu *file = ModuleMenus::menu(menuBar(), tr("&File"), fileMenuPosition);
    QAction *quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
    QMenu *help = ModuleMenus::menu(menuBar(), tr("&Help"), helpMenuPosition);
    help->addAction(tr("&About"), this, &MainWindow::about);
}

void MainWindow::takePreferredSize()
{
    resize(preferredSize.width() * fontMetrics().averageCharWidth(),
           preferredSize.height() * fontMetrics().height());
    const QList<QDockWidget *> docks = findChildren<QDockWidget *>();
    resizeDocks({docks.constFirst()}, {width() * 2 / 3}, Qt::Horizontal);
    resizeDocks({docks.constLast()}, {height() / 2}, Qt::Vertical);
}

void MainWindow::about()
{
    QMessageBox::about(
        this, tr("About"),
        tr("VELTRA4 development host %1\n\nShows modules of the front end against a simulated "
           "controller.")
            .arg(QCoreApplication::applicationVersion()));
}

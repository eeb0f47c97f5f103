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
#include <QResizeEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>

#include <algorithm>

namespace {

// Modules place their menus relative to these.
constexpr int fileMenuPosition = 0;
constexpr int viewMenuPosition = 50;
constexpr int helpMenuPosition = 1000;

// In average characters and lines, so that a large font has as much to read as a small one.
constexpr QSize preferredSize(168, 45);

/// Gives a panel the height that there is; it scrolls where that is too little.
class PanelArea : public QScrollArea
{
public:
    explicit PanelArea(QWidget *panel)
    {
        setFrameShape(NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setWidgetResizable(true);
        setWidget(panel);
    }

    QSize minimumSizeHint() const override
    {
        const int scrollBar = verticalScrollBar()->sizeHint().width();
        return {widget()->minimumSizeHint().width() + scrollBar,
                QScrollArea::minimumSizeHint().height()};
    }
};

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
    centralWidget()->installEventFilter(this);
    takeSize(sizeForContents().boundedTo(spaceOnScreen()));
}

void MainWindow::takePreferredSize()
{
    takeSize(sizeForContents());
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    const bool isWindowUnchanged = size() == m_size;
    if (watched == centralWidget() && event->type() == QEvent::Resize && isWindowUnchanged) {
        m_panelSize = centralWidget()->size(); // the user has moved the border to a dock
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::paintEvent(QPaintEvent *event)
{
    QMainWindow::paintEvent(event);
    if (!m_hasAppeared) {
        m_hasAppeared = true;
        QTimer::singleShot(0, this, &MainWindow::appeared);
    }
}

// The layout has given the panel all that the window has grown, where the docks have use for it.
void MainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    m_size = event->size();
    if (m_panelSize.isValid()) {
        const QSize excess = centralWidget()->size() - m_panelSize;
        resizeDocks({m_eventsDock}, {std::max(1, m_eventsDock->width() + excess.width())},
                    Qt::Horizontal);
        resizeDocks({m_commandsDock}, {std::max(1, m_commandsDock->height() + excess.height())},
                    Qt::Vertical);
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
    m_panelSize = {};
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

#include "host/logtable.h"

#include "host/logtext.h"

#include <QAction>
#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace {

// Columns line up in it, and it is as large as everything else.
QFont logFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(QGuiApplication::font().pointSizeF());
    return font;
}

} // namespace

LogTable::LogTable(QWidget *parent)
    : QTableView(parent)
{
    setFont(logFont());
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setAlternatingRowColors(true);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + fontMetrics().height() / 4);
    horizontalHeader()->setHighlightSections(false);

    auto *copyAction = new QAction(tr("&Copy"), this);
    copyAction->setObjectName(QStringLiteral("action_copy"));
    copyAction->setShortcut(QKeySequence::Copy);
    copyAction->setShortcutContext(Qt::WidgetShortcut);
    connect(copyAction, &QAction::triggered, this, &LogTable::copy);
    addAction(copyAction);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void LogTable::setModel(QAbstractItemModel *model)
{
    // Before the view hears of it: it follows the current row away from one that is removed.
    connect(model, &QAbstractItemModel::rowsAboutToBeInserted, this, &LogTable::noteWhetherAtEnd);
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &LogTable::noteWhetherAtEnd);
    QTableView::setModel(model);
    connect(model, &QAbstractItemModel::rowsInserted, this, &LogTable::stayAtEnd);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &LogTable::stayAtEnd);
}

void LogTable::setEmptyText(const QString &text)
{
    m_emptyText = text;
    viewport()->update();
}

void LogTable::setElasticColumn(int column)
{
    m_elasticColumn = column;
    m_leastWidth = columnWidth(column);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int resized) {
        if (resized != m_elasticColumn) {
            stretchElasticColumn();
        }
    });
}

QString LogTable::selectedText() const
{
    QModelIndexList rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    QStringList lines;
    for (const QModelIndex &row : qAsConst(rows)) {
        lines << LogText::line(*model(), row.row());
    }
    return lines.join(QLatin1Char('\n'));
}

void LogTable::copy() const
{
    const QString text = selectedText();
    if (!text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}

void LogTable::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    if (model() != nullptr && model()->rowCount() == 0) {
        QPainter painter(viewport());
        painter.setFont(QGuiApplication::font());
        painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
        painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, m_emptyText);
    }
}

void LogTable::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    stretchElasticColumn();
}

void LogTable::stretchElasticColumn()
{
    if (m_elasticColumn >= 0) {
        const int others = horizontalHeader()->length() - columnWidth(m_elasticColumn);
        setColumnWidth(m_elasticColumn, std::max(m_leastWidth, viewport()->width() - others));
    }
}

void LogTable::noteWhetherAtEnd()
{
    m_isAtEnd = verticalScrollBar()->value() == verticalScrollBar()->maximum();
}

void LogTable::stayAtEnd()
{
    if (m_isAtEnd) {
        scrollToBottom();
    }
}

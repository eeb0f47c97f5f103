#include "host/logview.h"

#include "host/logmodel.h"
#include "host/logtable.h"
#include "host/logtext.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QSortFilterProxyModel>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int margin = 4;

} // namespace

LogView::LogView(LogModel *model, const QString &name, const QString &emptyText, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
    , m_proxy(new QSortFilterProxyModel(this))
    , m_filterEdit(new QLineEdit(this))
    , m_table(new LogTable(this))
    , m_name(name)
    , m_emptyText(emptyText)
{
    m_proxy->setSourceModel(model);
    m_proxy->setFilterKeyColumn(-1);
    m_proxy->setFilterCaseSensitivity(Qt::CaseInsensitive);

    m_filterEdit->setObjectName(QStringLiteral("lineEdit_%1_filter").arg(name));
    m_filterEdit->setPlaceholderText(tr("Filter"));
    m_filterEdit->setAccessibleName(tr("Filter"));
    m_filterEdit->setClearButtonEnabled(true);
    connect(m_filterEdit, &QLineEdit::textChanged, this, &LogView::filter);

    m_table->setObjectName(QStringLiteral("tableView_%1").arg(name));
    m_table->setAccessibleName(name);
    m_table->setModel(m_proxy);
    m_table->setEmptyText(emptyText);
    setColumnWidths();

    auto *clearAction = new QAction(tr("C&lear"), m_table);
    connect(clearAction, &QAction::triggered, model, &LogModel::clear);
    auto *saveAction = new QAction(tr("&Save As\u2026"), m_table);
    connect(saveAction, &QAction::triggered, this, &LogView::save);
    m_table->addActions({clearAction, saveAction});

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(margin);
    layout->addWidget(m_filterEdit);
    layout->addWidget(m_table);
}

// No focus proxy: Tab would go from one proxy to the next and never reach the filters.
void LogView::focusTable()
{
    m_table->setFocus(Qt::OtherFocusReason);
}

void LogView::save()
{
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Save Log"), QDir::home().filePath(m_name + QStringLiteral(".txt")),
        tr("Text files (*.txt);;All files (*)"));
    QString problem;
    if (!path.isEmpty() && !LogText::save(*m_proxy, path, &problem)) {
        QMessageBox::critical(this, tr("Save Log"), problem);
    }
}

void LogView::setColumnWidths()
{
    const QFontMetrics metrics = m_table->fontMetrics();
    const int signAndMargins =
        style()->pixelMetric(QStyle::PM_SmallIconSize) + 2 * metrics.averageCharWidth();
    QHeaderView *header = m_table->horizontalHeader();
    for (int i = 0; i < m_model->columns().size(); ++i) {
        const LogColumn &column = m_model->columns().at(i);
        const int width = metrics.horizontalAdvance(column.widest) + signAndMargins;
        header->resizeSection(i, std::max(width, header->sectionSizeHint(i)));
        if (column.isElastic) {
            m_table->setElasticColumn(i);
        }
    }
}

void LogView::filter(const QString &text)
{
    m_proxy->setFilterFixedString(text);
    m_table->setEmptyText(text.isEmpty() ? m_emptyText : tr("Nothing contains \"%1\".").arg(text));
}

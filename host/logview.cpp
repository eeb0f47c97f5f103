#include "host/logview.h"

#include "host/logmodel.h"
#include "host/logtable.h"

#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
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
    setFocusProxy(m_table);

    auto *clearAction = new QAction(tr("C&lear"), m_table);
    connect(clearAction, &QAction::triggered, model, &LogModel::clear);
    m_table->addAction(clearAction);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(margin);
    layout->addWidget(m_filterEdit);
    layout->addWidget(m_table);
}

void LogView::setColumnWidths()
{
    const QFontMetrics metrics = m_table->fontMetrics();
    const int signAndMargins =
        style()->pixelMetric(QStyle::PM_SmallIconSize) + 2 * metrics.averageCharWidth();
    QHeaderView *header = m_table->horizontalHeader();
    for (int i = 0; i < m_model->columns().size(); ++i) {
        const QString widest = m_model->columns().at(i).widest;
        if (widest.isEmpty()) {
            header->setSectionResizeMode(i, QHeaderView::Stretch);
        } else {
            const int width = metrics.horizontalAdvance(widest) + signAndMargins;
            header->resizeSection(i, std::max(width, header->sectionSizeHint(i)));
        }
    }
}

void LogView::filter(const QString &text)
{
    m_proxy->setFilterFixedString(text);
    m_table->setEmptyText(text.isEmpty() ? m_emptyText : tr("Nothing contains \"%1\".").arg(text));
}

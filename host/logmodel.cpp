#include "host/logmodel.h"

#include <QApplication>
#include <QStyle>
#include <QTextDocument>

#include <algorithm>

namespace {

// Forgetting moves every row of a view, so it is done for many at once.
constexpr int forgottenAtOnce = 10; // as a divisor of the capacity

int sizeOf(const std::deque<LogRow> &rows)
{
    return static_cast<int>(rows.size());
}

} // namespace

LogModel::LogModel(QVector<LogColumn> columns, int capacity, QObject *parent)
    : QAbstractTableModel(parent)
    , m_columns(std::move(columns))
    , m_capacity(capacity)
{
    m_showTimer.setSingleShot(true);
    connect(&m_showTimer, &QTimer::timeout, this, &LogModel::showPending);
}

void LogModel::append(LogRow row)
{
    m_pending.push_back(std::move(row));
    if (sizeOf(m_pending) > m_capacity) {
        m_pending.pop_front();
    }
    if (!m_showTimer.isActive()) {
        m_showTimer.start();
    }
}

void LogModel::replaceLast(LogRow row)
{
    if (!m_pending.empty()) {
        m_pending.back() = std::move(row);
    } else if (!m_rows.empty()) {
        m_rows.back() = std::move(row);
        const int last = sizeOf(m_rows) - 1;
        emit dataChanged(index(last, 0), index(last, columnCount() - 1));
    } else {
        append(std::move(row));
    }
}

void LogModel::clear()
{
    beginResetModel();
    m_rows.clear();
    m_pending.clear();
    endResetModel();
}

int LogModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : sizeOf(m_rows);
}

int LogModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns.size();
}

QVariant LogModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const LogRow &row = m_rows.at(static_cast<std::size_t>(index.row()));
    const QString text = row.cells.value(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return text;
    case Qt::ToolTipRole:
        return text.isEmpty() ? QVariant() : Qt::convertFromPlainText(text);
    case Qt::TextAlignmentRole:
        return int(m_columns.at(index.column()).alignment | Qt::AlignVCenter);
    case Qt::DecorationRole:
        if (row.isFailure && index.column() == 0) {
            return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
        }
        return {};
    default:
        return {};
    }
}

QVariant LogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size()) {
        return {};
    }
    if (role == Qt::DisplayRole) {
        return m_columns.at(section).title;
    }
    if (role == Qt::TextAlignmentRole) {
        return int(m_columns.at(section).alignment | Qt::AlignVCenter);
    }
    return {};
}

void LogModel::showPending()
{
    if (m_pending.empty()) {
        return;
    }
    beginInsertRows({}, sizeOf(m_rows), sizeOf(m_rows) + sizeOf(m_pending) - 1);
    std::move(m_pending.begin(), m_pending.end(), std::back_inserter(m_rows));
    m_pending.clear();
    endInsertRows();
    forgetOldest(); // only now, so that a view that shows the end goes on showing it
}

void LogModel::forgetOldest()
{
    const int excess = sizeOf(m_rows) - m_capacity;
    if (excess <= 0) {
        return;
    }
    const int forgotten = excess + m_capacity / forgottenAtOnce;
    beginRemoveRows({}, 0, forgotten - 1);
    m_rows.erase(m_rows.begin(), m_rows.begin() + forgotten);
    endRemoveRows();
}

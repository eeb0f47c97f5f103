#pragma once

#include <QAbstractTableModel>
#include <QTimer>
#include <QVector>

#include <deque>

/// One column of a log.
struct LogColumn
{
    QString title;
    QString widest; ///< a text that the column has room for
    Qt::Alignment alignment = Qt::AlignLeft;
    bool isElastic = false; ///< takes also what the others leave; at most one column does
};

/// One line of a log, a text for each column.
struct LogRow
{
    QStringList cells;
    bool isFailure = false; ///< marked with a warning sign
};

/// A table that grows at its end and forgets its oldest rows, so that it never holds more than its
/// capacity.
///
/// Rows appear at the next turn of the event loop, all that came meanwhile at once: a long transfer
/// appends many thousands of them before the loop runs again.
class LogModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// @param capacity  the largest number of rows, at least 10
    LogModel(QVector<LogColumn> columns, int capacity, QObject *parent = nullptr);

    const QVector<LogColumn> &columns() const { return m_columns; }
    void append(LogRow row);
    /// Puts @p row in the place of the last one; at the end if the log has been cleared since.
    void replaceLast(LogRow row);
    void clear();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void showPending();
    void forgetOldest();

    const QVector<LogColumn> m_columns;
    const int m_capacity;
    std::deque<LogRow> m_rows;
    std::deque<LogRow> m_pending;
    QTimer m_showTimer;
};

#pragma once

#include <QTableView>

/// The table of a log: whole rows, copied as text, with a hint in its place while it is empty, and
/// following its end as long as the user has not scrolled away from it.
class LogTable : public QTableView
{
    Q_OBJECT

public:
    explicit LogTable(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;

    /// What stands in an empty table.
    void setEmptyText(const QString &text);

    /// Lets @p column take what the others leave, but no less than the width that it has now.
    void setElasticColumn(int column);

    /// The selected rows from top to bottom, one line each, their cells separated by tabs.
    QString selectedText() const;

public slots:
    /// Puts selectedText() onto the clipboard; without a selection the clipboard stays as it is.
    void copy() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void stretchElasticColumn();
    void noteWhetherAtEnd();
    void stayAtEnd();

    QString m_emptyText;
    int m_elasticColumn = -1;
    int m_leastWidth = 0; // of the elastic column
    bool m_isAtEnd = true;
};

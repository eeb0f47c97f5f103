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

    /// The selected rows from top to bottom, one line each, their cells separated by tabs.
    QString selectedText() const;

public slots:
    /// Puts selectedText() onto the clipboard; without a selection the clipboard stays as it is.
    void copy() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void noteWhetherAtEnd();
    void stayAtEnd();

    QString m_emptyText;
    bool m_isAtEnd = true;
};

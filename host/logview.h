#pragma once

#include <QWidget>

class LogModel;
class LogTable;
class QLineEdit;
class QSortFilterProxyModel;

/// A log with a field that filters it: only rows that contain its text somewhere are shown.
class LogView : public QWidget
{
    Q_OBJECT

public:
    /// @p model is not owned and must outlive the view.
    /// @param name       names the widgets: "lineEdit_<name>_filter" and "tableView_<name>"
    /// @param emptyText  what an empty log shows
    LogView(LogModel *model, const QString &name, const QString &emptyText,
            QWidget *parent = nullptr);

    /// Gives the table the keyboard.
    void focusTable();

    /// Lets the user choose a file and writes the rows that are shown into it.
    void save();

private:
    void setColumnWidths();
    void filter(const QString &text);

    LogModel *m_model;
    QSortFilterProxyModel *m_proxy;
    QLineEdit *m_filterEdit;
    LogTable *m_table;
    const QString m_name;
    const QString m_emptyText;
};

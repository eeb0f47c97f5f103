#pragma once

#include "tests/support/userinput.h"

#include <QTableWidget>
#include <QVector>
#include <QTest>

/// What the tests of the dialogs that list configurations have in common.
namespace FormTesting {

/// A widget as it was designed.
struct FormWidget
{
    const char *name;
    const char *kind;
    const char *text;
    const char *whatsThis = "";
};

inline void compareWidgets(const QWidget *form, const QVector<FormWidget> &designed)
{
    for (const FormWidget &expected : designed) {
        const QWidget *actual = UserInput::widgetNamed(form, expected.name);
        QCOMPARE(QStringList({expected.name, actual->metaObject()->className(),
                              actual->property("text").toString(), actual->whatsThis()}),
                 QStringList({expected.name, expected.kind, expected.text, expected.whatsThis}));
    }
}

/// The names of the widgets that the Tab key goes through, beginning with @p table.
inline QStringList tabOrder(QTableWidget *table)
{
    QStringList names;
    table->setFocus();
    do {
        QWidget *focused = table->window()->focusWidget();
        names << focused->objectName();
        QTest::keyClick(focused, Qt::Key_Tab);
    } while (table->window()->focusWidget() != table && names.size() < 10);
    return names;
}

inline QStringList headersOf(const QTableWidget *table)
{
    QStringList texts;
    for (int column = 0; column < table->columnCount(); ++column) {
        texts << table->horizontalHeaderItem(column)->text();
    }
    return texts;
}

inline QStringList rowOf(const QTableWidget *table, int row)
{
    QStringList texts;
    for (int column = 0; column < table->columnCount(); ++column) {
        texts << table->item(row, column)->text();
    }
    return texts;
}

inline QList<int> selectedRows(const QTableWidget *table)
{
    QList<int> rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->item(row, 0)->isSelected()) {
            rows << row;
        }
    }
    return rows;
}

/// "A" where "Select all" is enabled, "C" for "Clear", and "!" for the button @p action, "-" where
/// not.
inline QString enabledButtons(const QWidget *form, const char *action)
{
    const auto letter = [form](const QString &name, char sign) {
        return QLatin1Char(UserInput::widgetNamed(form, name)->isEnabled() ? sign : '-');
    };
    return QString(letter("pushButton_selectAll", 'A')) + letter("pushButton_clearSelection", 'C')
        + letter(action, '!');
}

} // namespace FormTesting

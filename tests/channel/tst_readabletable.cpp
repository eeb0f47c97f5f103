#include "channel/readabletable.h"
#include "tests/support/testmain.h"

#include <QHeaderView>
#include <QTableWidget>
#include <QtTest>

#include <memory>

class TestReadableTable : public QObject
{
    Q_OBJECT

private slots:
    void rowsAreAsHighAsAsked();
    void rowsAreHigherWhereTheFontNeedsIt();
    void rowsBelowTheStylesMinimumArePossible();
    void aCellTellsItsWholeText();
    void aTextIsNeverTakenForHtml();
    void anEmptyCellHasNothingToTell();
};

namespace {

QTableWidget *filled(QTableWidget *table, int rowHeight)
{
    ReadableTable::prepare(table, rowHeight);
    table->setColumnCount(1);
    table->setRowCount(1);
    return table;
}

} // namespace

void TestReadableTable::rowsAreAsHighAsAsked()
{
    QTableWidget table;
    filled(&table, 100);
    QCOMPARE(table.verticalHeader()->defaultSectionSize(), 100);
    QCOMPARE(table.rowHeight(0), 100);
}

void TestReadableTable::rowsAreHigherWhereTheFontNeedsIt()
{
    QTableWidget table;
    QFont font;
    font.setPixelSize(60);
    table.setFont(font);
    filled(&table, 20);
    QVERIFY2(table.rowHeight(0) >= 60, qPrintable(QString::number(table.rowHeight(0))));
}

void TestReadableTable::rowsBelowTheStylesMinimumArePossible()
{
    QTableWidget table;
    QFont font;
    font.setPixelSize(6);
    table.setFont(font);
    filled(&table, 12);
    QCOMPARE(table.rowHeight(0), 12);
}

void TestReadableTable::aCellTellsItsWholeText()
{
    const std::unique_ptr<QTableWidgetItem> cell(
        ReadableTable::cell(QStringLiteral("six cameras")));
    QCOMPARE(cell->text(), QStringLiteral("six cameras"));
    QVERIFY(cell->toolTip().contains(QStringLiteral("six cameras")));
}

void TestReadableTable::aTextIsNeverTakenForHtml()
{
    const std::unique_ptr<QTableWidgetItem> cell(
        ReadableTable::cell(QStringLiteral("<b>bold</b>")));
    QCOMPARE(cell->text(), QStringLiteral("<b>bold</b>"));
    QVERIFY(cell->toolTip().contains(QStringLiteral("&lt;b&gt;bold")));
}

void TestReadableTable::anEmptyCellHasNothingToTell()
{
    const std::unique_ptr<QTableWidgetItem> cell(ReadableTable::cell({}));
    QCOMPARE(cell->toolTip(), QString());
}

VELTRA4_TEST_MAIN(TestReadableTable)
#include "tst_readabletable.moc"

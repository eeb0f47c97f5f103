#include "tests/support/testmain.h"
#include "transfer/selectedcells.h"

#include <QTableWidget>
#include <QtTest>

/// The count is that of the toolkit in every state that the dialogs' tables can be in.
class TestSelectedCells : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void nothingIsSelected();
    void allCellsAreSelected();
    void someRowsAreSelected();
    void hiddenColumnsDoNotCount();
    void lockedRowsDoNotCount();
    void missingCellsDoNotCount();

private:
    void expect(int count) const;

    std::unique_ptr<QTableWidget> m_table;
};

void TestSelectedCells::init()
{
    constexpr int rows = 6;
    constexpr int columns = 4;
    m_table = std::make_unique<QTableWidget>(rows, columns);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::MultiSelection);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            m_table->setItem(row, column, new QTableWidgetItem("cell"));
        }
    }
}

void TestSelectedCells::expect(int count) const
{
    QCOMPARE(m_table->selectedItems().size(), count);
    QCOMPARE(selectedCellCount(m_table.get()), count);
}

void TestSelectedCells::nothingIsSelected()
{
    expect(0);
}

void TestSelectedCells::allCellsAreSelected()
{
    m_table->selectAll();
    expect(24);
}

void TestSelectedCells::someRowsAreSelected()
{
    m_table->selectRow(0);
    m_table->selectRow(4);
    m_table->selectRow(5);
    expect(12);
    m_table->selectRow(4); // a second click takes it back
    expect(8);
}

void TestSelectedCells::hiddenColumnsDoNotCount()
{
    m_table->setColumnHidden(3, true);
    m_table->selectAll();
    expect(18);
    m_table->setColumnHidden(3, false);
    expect(24);
}

void TestSelectedCells::lockedRowsDoNotCount()
{
    m_table->selectAll();
    for (int column = 0; column < m_table->columnCount(); ++column) {
        m_table->item(2, column)->setFlags(Qt::ItemIsEnabled);
        m_table->item(3, column)->setFlags(Qt::ItemIsSelectable);
    }
    expect(16);
}

void TestSelectedCells::missingCellsDoNotCount()
{
    m_table->selectAll();
    delete m_table->takeItem(1, 1);
    expect(23);
    m_table->clearContents();
    expect(0);
}

VELTRA4_TEST_MAIN(TestSelectedCells)
#include "tst_selectedcells.moc"

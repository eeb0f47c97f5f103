#include "channel/readabletable.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QTableWidget>
#include <QToolTip>
#include <QtTest>

class TestReadableTable : public QObject
{
    Q_OBJECT

private slots:
    void rowsAreAsHighAsAsked();
    void rowsAreHigherWhereTheFontNeedsIt();
    void rowsBelowTheStylesMinimumArePossible();
    void aShortenedTextIsToldInFull();
    void aTextThatFitsIsNotRepeated();
    void aTextIsNeverTakenForHtml();
};

namespace {

constexpr int rowHeight = 30;

int heightOfRow(const QFont &font, int asked)
{
    QTableWidget table(1, 1);
    table.setFont(font);
    ReadableTable::prepare(&table, asked);
    return table.rowHeight(0);
}

QFont fontOfSize(int pixels)
{
    QFont font;
    font.setPixelSize(pixels);
    return font;
}

// What somebody reads who points at a cell of this width.
QString tipOf(const QString &text, int columnWidth)
{
    QTableWidget table(1, 1);
    ReadableTable::prepare(&table, rowHeight);
    table.setColumnWidth(0, columnWidth);
    auto *item = new QTableWidgetItem(text);
    table.setItem(0, 0, item);
    table.show();
    const QPoint place = table.visualItemRect(item).center();
    QHelpEvent pointing(QEvent::ToolTip, place, table.viewport()->mapToGlobal(place));
    QApplication::sendEvent(table.viewport(), &pointing);
    return QToolTip::text();
}

} // namespace

void TestReadableTable::rowsAreAsHighAsAsked()
{
    QCOMPARE(heightOfRow(fontOfSize(12), rowHeight), rowHeight);
}

void TestReadableTable::rowsAreHigherWhereTheFontNeedsIt()
{
    QVERIFY(heightOfRow(fontOfSize(60), 20) >= 60);
}

void TestReadableTable::rowsBelowTheStylesMinimumArePossible()
{
    QCOMPARE(heightOfRow(fontOfSize(6), 12), 12);
}

void TestReadableTable::aShortenedTextIsToldInFull()
{
    QVERIFY(tipOf(QStringLiteral("Calibration hall, six cameras"), 40)
                .contains(QStringLiteral("Calibration hall, six cameras")));
}

void TestReadableTable::aTextThatFitsIsNotRepeated()
{
    QCOMPARE(tipOf(QStringLiteral("demo"), 400), QString());
}

void TestReadableTable::aTextIsNeverTakenForHtml()
{
    QVERIFY(tipOf(QStringLiteral("<b>very bold</b>"), 20)
                .contains(QStringLiteral("&lt;b&gt;very bold")));
}

VELTRA4_TEST_MAIN(TestReadableTable)
#include "tst_readabletable.moc"

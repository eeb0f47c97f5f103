#include "tests/support/testmain.h"
#include "widgets/readabletable.h"

#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QImage>
#include <QTableWidget>
#include <QToolTip>
#include <QTest>

#include <algorithm>

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

// Of the letters in a row, in pixels.
int paintedHeight(const QFont &font, int askedRowHeight)
{
    QTableWidget table(1, 1);
    table.setFont(font);
    ReadableTable::prepare(&table, askedRowHeight);
    auto *item = new QTableWidgetItem("lg");
    table.setItem(0, 0, item);
    table.resize(300, 200);
    QImage picture(table.viewport()->size(), QImage::Format_Grayscale8);
    table.viewport()->render(&picture);
    const QRect place = table.visualItemRect(item);
    int lines = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        const uchar *line = picture.constScanLine(y);
        lines += std::any_of(line + place.left(), line + place.right(),
                             [](uchar grey) { return grey < 128; })
            ? 1
            : 0;
    }
    return lines;
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

class TestReadableTable : public QObject
{
    Q_OBJECT

private slots:
    void rowsAreAsHighAsAskedOrHigherWhereTheFontNeedsIt()
    {
        QCOMPARE(heightOfRow(fontOfSize(12), rowHeight), rowHeight);
        QTableWidget plain(1, 1);
        plain.setFont(fontOfSize(60));
        const int needed = plain.verticalHeader()->minimumSectionSize();
        QVERIFY(needed >= 60);
        QCOMPARE(heightOfRow(fontOfSize(60), 20), needed);
    }

    void titlesAreCutOnTheRight()
    {
        QTableWidget table(1, 1);
        ReadableTable::prepare(&table, rowHeight);
        QCOMPARE(table.horizontalHeader()->textElideMode(), Qt::ElideRight);
    }

    void noLetterIsCut()
    {
        for (const int pixels : {9, 12, 15, 17, 20, 22, 25, 31, 40}) {
            const QFont font = fontOfSize(pixels);
            const int whole = paintedHeight(font, 100);
            QVERIFY2(whole > pixels / 2, qPrintable(font.toString()));
            QVERIFY2(paintedHeight(font, 1) == whole, qPrintable(font.toString()));
        }
    }

    void onlyAShortenedTextIsToldInFull()
    {
        const QString text = "Calibration hall, six cameras";
        QVERIFY(tipOf(text, 40).contains(text));
        QCOMPARE(tipOf(text, 400), QString());
    }

    void aTextIsNeverTakenForHtml()
    {
        QVERIFY(tipOf("<b>very bold</b>", 20).contains("&lt;b&gt;very bold"));
    }
};

VELTRA4_TEST(TestReadableTable)
#include "tst_readabletable.moc"

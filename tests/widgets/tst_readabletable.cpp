#include "tests/support/testmain.h"
#include "widgets/readabletable.h"

#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QImage>
#include <QTableWidget>
#include <QToolTip>
#include <QtTest>

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
    auto *item = new QTableWidgetItem(QStringLiteral("lg"));
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
    void rowsAreAsHighAsAsked() { QCOMPARE(heightOfRow(fontOfSize(12), rowHeight), rowHeight); }

    void rowsAreHigherWhereTheFontNeedsIt()
    {
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

    void noLetterIsCut_data()
    {
        QTest::addColumn<int>("fontSize");
        for (const int pixels : {9, 12, 15, 17, 20, 22, 25, 31, 40}) {
            QTest::addRow("%d pixels", pixels) << pixels;
        }
    }

    void noLetterIsCut()
    {
        QFETCH(int, fontSize);
        const int whole = paintedHeight(fontOfSize(fontSize), 100);
        QVERIFY(whole > fontSize / 2);
        QCOMPARE(paintedHeight(fontOfSize(fontSize), 1), whole);
    }

    void aShortenedTextIsToldInFull()
    {
        QVERIFY(tipOf(QStringLiteral("Calibration hall, six cameras"), 40)
                    .contains(QStringLiteral("Calibration hall, six cameras")));
    }

    void aTextThatFitsIsNotRepeated() { QCOMPARE(tipOf(QStringLiteral("demo"), 400), QString()); }

    void aTextIsNeverTakenForHtml()
    {
        QVERIFY(tipOf(QStringLiteral("<b>very bold</b>"), 20)
                    .contains(QStringLiteral("&lt;b&gt;very bold")));
    }
};

VELTRA4_TEST(TestReadableTable)
#include "tst_readabletable.moc"

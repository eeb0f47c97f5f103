#include "tests/support/testmain.h"
#include "widgets/wrappinglabel.h"

#include <QDialog>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

namespace {

const QString oneLongWord(199, 'W');

// A dialog of the size of those that use the label.
class LabelledDialog : public QDialog
{
public:
    explicit LabelledDialog(const QString &text)
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(&label);
        layout->addWidget(&button);
        label.setText(text);
        resize(450, 80);
    }

    WrappingLabel label;
    QPushButton button;
};

void showAndSettle(QDialog *dialog)
{
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog));
    QCoreApplication::processEvents(); // the layout answers the label's first size
}

int lines(const QLabel &label, int width)
{
    return qRound(double(label.heightForWidth(width)) / label.fontMetrics().height());
}

int lastInkedRow(const QImage &image)
{
    const QRgb background = image.pixel(image.width() - 1, image.height() - 1);
    for (int y = image.height() - 1; y >= 0; --y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != background) {
                return y;
            }
        }
    }
    return -1;
}

} // namespace

class TestWrappingLabel : public QObject
{
    Q_OBJECT

private slots:
    void aShortTextTakesOneLine();
    void wordsStayWholeWhereTheyFit();
    void aLongWordDoesNotWidenTheDialog();
    void theDialogGrowsWithTheText_data();
    void theDialogGrowsWithTheText();
    void aNewTextChangesTheHeight();
    void aWiderDialogNeedsLessHeight();
    void everyLineIsPainted();
    void markUpIsShownAsItStands();
};

void TestWrappingLabel::aShortTextTakesOneLine()
{
    LabelledDialog dialog("set password for configuration \"main hall\"");
    showAndSettle(&dialog);
    QCOMPARE(lines(dialog.label, dialog.label.width()), 1);
    QCOMPARE(dialog.width(), 450);
}

void TestWrappingLabel::wordsStayWholeWhereTheyFit()
{
    WrappingLabel label;
    label.setText("configuration configuration");
    const int oneWord = label.fontMetrics().horizontalAdvance("configuration");
    QCOMPARE(lines(label, 3 * oneWord), 1);
    const int threeLetters = label.fontMetrics().horizontalAdvance("con");
    QCOMPARE(lines(label, 2 * oneWord - threeLetters), 2);
    QCOMPARE(lines(label, oneWord), 2);
    QCOMPARE(lines(label, oneWord - threeLetters), 4);
}

void TestWrappingLabel::aLongWordDoesNotWidenTheDialog()
{
    LabelledDialog dialog(oneLongWord);
    showAndSettle(&dialog);
    QCOMPARE(dialog.width(), 450);
    QVERIFY(dialog.minimumWidth() < 450);
}

void TestWrappingLabel::theDialogGrowsWithTheText_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("one long word") << oneLongWord;
    QTest::newRow("many words") << QString("many words ").repeated(18);
}

void TestWrappingLabel::theDialogGrowsWithTheText()
{
    QFETCH(const QString, text);
    LabelledDialog dialog(text);
    showAndSettle(&dialog);
    QVERIFY(dialog.label.height() >= dialog.label.heightForWidth(dialog.label.width()));
    QVERIFY(dialog.label.height() > dialog.label.fontMetrics().height());
    QVERIFY(!dialog.label.geometry().intersects(dialog.button.geometry()));
    QVERIFY(dialog.rect().contains(dialog.button.geometry()));
}

void TestWrappingLabel::aNewTextChangesTheHeight()
{
    LabelledDialog dialog("short");
    showAndSettle(&dialog);
    dialog.label.setText(oneLongWord);
    QCoreApplication::processEvents();
    QVERIFY(dialog.label.height() >= dialog.label.heightForWidth(dialog.label.width()));
}

void TestWrappingLabel::aWiderDialogNeedsLessHeight()
{
    LabelledDialog dialog(oneLongWord);
    showAndSettle(&dialog);
    const int narrow = dialog.minimumHeight();
    dialog.resize(1200, dialog.height());
    QCoreApplication::processEvents();
    QVERIFY(dialog.minimumHeight() < narrow);
}

void TestWrappingLabel::everyLineIsPainted()
{
    WrappingLabel label;
    label.setText(oneLongWord);
    label.resize(300, label.heightForWidth(300) + 50);
    const int lastRow = lastInkedRow(label.grab().toImage());
    QVERIFY(lastRow > label.height() - 50 - label.fontMetrics().height());
    QVERIFY(lastRow < label.height() - 50);
}

void TestWrappingLabel::markUpIsShownAsItStands()
{
    WrappingLabel label;
    label.setText("<h1>hall</h1>");
    const int width = label.fontMetrics().horizontalAdvance("<h1>hall</h1>");
    QCOMPARE(lines(label, width + 1), 1);
    QCOMPARE(lines(label, width - 1), 2);
}

VELTRA4_TEST(TestWrappingLabel)
#include "tst_wrappinglabel.moc"

#include "host/elidedlabel.h"

#include "tests/support/testmain.h"

#include <QClipboard>
#include <QHelpEvent>
#include <QToolTip>
#include <QTest>

class TestElidedLabel : public QObject
{
    Q_OBJECT

private:
    static void pointAt(ElidedLabel &label)
    {
        QHelpEvent help(QEvent::ToolTip, QPoint(2, 2), label.mapToGlobal(QPoint(2, 2)));
        QCoreApplication::sendEvent(&label, &help);
    }

    static QImage picture(ElidedLabel &label) { return label.grab().toImage(); }

private slots:
    void aLongTextEndsInAnEllipsis()
    {
        ElidedLabel label;
        label.resize(120, 20);
        label.setText("Indoor Tracker 5 with everything");
        const QImage elided = picture(label);
        label.setText("Indoor Tracker 5 with all that there is");
        QCOMPARE(picture(label), elided);
        QCOMPARE(label.text(), QString("Indoor Tracker 5 with all that there is"));
    }

    void aLongTextIsNoReasonForWidth()
    {
        ElidedLabel label;
        label.setText("x");
        const QSize least = label.minimumSizeHint();
        label.setText(QString(500, 'x'));
        QCOMPARE(label.minimumSizeHint(), least);
        QCOMPARE(label.sizeHint(), least);
    }

    void onlyATextThatIsTooLongHasAToolTip()
    {
        ElidedLabel label;
        label.resize(120, 20);
        label.show();
        label.setText("short");
        pointAt(label);
        QVERIFY(!QToolTip::isVisible());
        label.setText("<b>" + QString(60, 'x'));
        pointAt(label);
        QVERIFY(QToolTip::text().contains("&lt;b&gt;xxx"));
        QToolTip::hideText();
    }

    void theWholeTextCanBeCopied()
    {
        ElidedLabel label;
        label.resize(120, 20);
        label.setText(QString(60, 'x') + "end");
        label.show();
        label.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&label));
        QTest::mouseClick(&label, Qt::LeftButton, {}, QPoint(5, 10));
        QTest::keySequence(&label, QKeySequence::SelectAll);
        QTest::keySequence(&label, QKeySequence::Copy);
        QCOMPARE(QGuiApplication::clipboard()->text(), label.text());
    }
};

VELTRA4_TEST(TestElidedLabel)
#include "tst_elidedlabel.moc"

#include "tests/support/modaldriver.h"
#include "tests/support/testmain.h"
#include "widgets/messagebox.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QtTest>

Q_DECLARE_METATYPE(QMessageBox::Icon)
Q_DECLARE_METATYPE(QMessageBox::StandardButton)

namespace {

constexpr auto yesNo = QMessageBox::Yes | QMessageBox::No;

QMessageBox::Button ask(const QObject *owner, QWidget *parent)
{
    return MessageBox::show(QMessageBox::Question, owner, parent, "Title", "Text", yesNo,
                            QMessageBox::No);
}

} // namespace

class TestMessageBox : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(QApplication::topLevelWidgets().size(), 0); }

    void eachFunctionShowsItsIcon_data()
    {
        QTest::addColumn<QMessageBox::Icon>("icon");
        QTest::addColumn<bool>("hasParent");
        for (const bool hasParent : {false, true}) {
            const char *rest = hasParent ? "with a parent" : "without a parent";
            QTest::addRow("information %s", rest) << QMessageBox::Information << hasParent;
            QTest::addRow("critical %s", rest) << QMessageBox::Critical << hasParent;
            QTest::addRow("warning %s", rest) << QMessageBox::Warning << hasParent;
            QTest::addRow("question %s", rest) << QMessageBox::Question << hasParent;
        }
    }

    void eachFunctionShowsItsIcon()
    {
        QFETCH(const QMessageBox::Icon, icon);
        QFETCH(const bool, hasParent);
        QWidget window;
        QWidget *parent = hasParent ? &window : nullptr;
        ExpectedBox expected;
        expected.icon = icon;
        expected.title = "Title";
        expected.text = "Text";
        expected.parent = parent;
        ModalDriver driver;
        driver.expectBox(expected);

        MessageBox::Button answer = QMessageBox::NoButton;
        switch (icon) {
        case QMessageBox::Information:
            answer = MessageBox::show(QMessageBox::Information, &m_owner, parent, "Title", "Text");
            break;
        case QMessageBox::Critical:
            answer = MessageBox::show(QMessageBox::Critical, &m_owner, parent, "Title", "Text");
            break;
        case QMessageBox::Warning:
            answer = MessageBox::show(QMessageBox::Warning, &m_owner, parent, "Title", "Text");
            break;
        default:
            answer = MessageBox::show(QMessageBox::Question, &m_owner, parent, "Title", "Text",
                                      QMessageBox::Ok, QMessageBox::Ok);
            break;
        }
        QCOMPARE(answer, QMessageBox::Ok);
    }

    void theTextIsNeverTakenForMarkup()
    {
        const QString text = QStringLiteral("Delete '<b>bold</b> &amp; more'?");
        ModalDriver driver;
        driver.expectDialog("", [text](QDialog *box) {
            const auto *label = box->findChild<QLabel *>("qt_msgbox_label");
            QCOMPARE(label->text(), text);
            QCOMPARE(label->textFormat(), Qt::PlainText);
            box->accept();
        });
        MessageBox::show(QMessageBox::Warning, &m_owner, nullptr, "Title", text);
    }

    void theAnswerIsTheButton_data()
    {
        QTest::addColumn<QMessageBox::StandardButton>("button");
        QTest::newRow("yes") << QMessageBox::Yes;
        QTest::newRow("no") << QMessageBox::No;
    }

    void theAnswerIsTheButton()
    {
        QFETCH(const QMessageBox::StandardButton, button);
        ExpectedBox expected;
        expected.icon = QMessageBox::Question;
        expected.title = "Title";
        expected.text = "Text";
        expected.buttons = yesNo;
        expected.defaultButton = QMessageBox::No;
        expected.answer = button;
        ModalDriver driver;
        driver.expectBox(expected);
        QCOMPARE(ask(&m_owner, nullptr), button);
    }

    void escapeCancels()
    {
        ModalDriver driver;
        driver.expectDialog("", [](QDialog *box) { QTest::keyClick(box, Qt::Key_Escape); });
        QCOMPARE(MessageBox::show(QMessageBox::Warning, &m_owner, nullptr, "Title", "Text",
                                  QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel),
                 QMessageBox::Cancel);
    }

    void escapeOnASingleButtonIsThatButton()
    {
        ModalDriver driver;
        driver.expectDialog("", [](QDialog *box) { QTest::keyClick(box, Qt::Key_Escape); });
        QCOMPARE(MessageBox::show(QMessageBox::Warning, &m_owner, nullptr, "Title", "Text"),
                 QMessageBox::Ok);
    }

    void closedWithoutAButtonItIsTheDefaultButton()
    {
        ModalDriver driver;
        driver.expectDialog("", [](QDialog *box) { box->reject(); });
        QCOMPARE(ask(&m_owner, nullptr), QMessageBox::No);
        driver.expectDialog("", [](QDialog *box) { box->accept(); });
        QCOMPARE(ask(&m_owner, nullptr), QMessageBox::No);
    }

    void aDestroyedOwnerMeansNoAnswer()
    {
        auto *owner = new QObject;
        ModalDriver driver;
        driver.expectDialog("", [owner](QDialog *box) {
            delete owner;
            qobject_cast<QMessageBox *>(box)->button(QMessageBox::Yes)->click();
        });
        QCOMPARE(ask(owner, nullptr), QMessageBox::NoButton);
    }

    void aDestroyedParentTakesTheBoxWithIt()
    {
        auto *parent = new QWidget;
        ModalDriver driver;
        driver.expectDialog("", [parent](QDialog *) { delete parent; });
        QCOMPARE(ask(&m_owner, parent), QMessageBox::NoButton);
    }

    void aDestroyedParentThatIsTheOwnerMeansNoAnswer()
    {
        auto *window = new QWidget;
        ModalDriver driver;
        driver.expectDialog("", [window](QDialog *) { delete window; });
        QCOMPARE(ask(window, window), QMessageBox::NoButton);
    }

private:
    QObject m_owner;
};

VELTRA4_TEST(TestMessageBox)
#include "tst_messagebox.moc"

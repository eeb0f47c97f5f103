#include "tests/support/modaldriver.h"
#include "tests/support/testmain.h"
#include "widgets/messagebox.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

class TestMessageBox : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_driver = std::make_unique<ModalDriver>(); }

    void cleanup()
    {
        m_driver->verify();
        QCOMPARE(QApplication::topLevelWidgets().size(), 0);
    }

    void itShowsWhatItIsGiven()
    {
        QWidget window;
        for (QWidget *parent : {&window, static_cast<QWidget *>(nullptr)}) {
            for (const auto icon : {QMessageBox::Information, QMessageBox::Critical,
                                    QMessageBox::Warning, QMessageBox::Question}) {
                ExpectedBox expected{icon, "Title", "Text"};
                expected.parent = parent;
                m_driver->expectBox(expected);
                QCOMPARE(MessageBox::show(icon, this, parent, "Title", "Text"), QMessageBox::Ok);
            }
        }
    }

    void theTextIsNeverTakenForMarkup()
    {
        const QString text = "Delete '<b>bold</b> &amp; more'?";
        m_driver->expectDialog("", [text](QDialog *box) {
            const auto *label = box->findChild<QLabel *>("qt_msgbox_label");
            QCOMPARE(label->text(), text);
            QCOMPARE(label->textFormat(), Qt::PlainText);
            box->accept();
        });
        MessageBox::show(QMessageBox::Warning, this, nullptr, "Title", text);
    }

    void theAnswerIsTheButton()
    {
        for (const auto answer : {QMessageBox::Ok, QMessageBox::Cancel}) {
            m_driver->expectBox({QMessageBox::Question, "Title", "Text", answer,
                                 QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel});
            QCOMPARE(ask(this, nullptr), answer);
        }
    }

    void closedWithoutAButtonItIsTheDefaultButton()
    {
        const Action ways[] = {[](QDialog *box) { QTest::keyClick(box, Qt::Key_Escape); },
                               [](QDialog *box) { box->reject(); },
                               [](QDialog *box) { box->accept(); }};
        for (const Action &close : ways) {
            m_driver->expectDialog("", close);
            QCOMPARE(ask(this, nullptr), QMessageBox::Cancel);
        }
    }

    void aDestroyedOwnerMeansNoAnswer()
    {
        auto *owner = new QObject;
        m_driver->expectDialog("", [owner](QDialog *box) {
            delete owner;
            ModalDriver::agree(box);
        });
        QCOMPARE(ask(owner, nullptr), QMessageBox::NoButton);
    }

    void aDestroyedParentTakesTheBoxWithIt()
    {
        auto *parent = new QWidget;
        m_driver->expectDialog("", [parent](QDialog *) { delete parent; });
        QCOMPARE(ask(this, parent), QMessageBox::NoButton);
    }

private:
    using Action = std::function<void(QDialog *)>;

    static QMessageBox::Button ask(const QObject *owner, QWidget *parent)
    {
        return MessageBox::show(QMessageBox::Question, owner, parent, "Title", "Text",
                                QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
    }

    std::unique_ptr<ModalDriver> m_driver;
};

VELTRA4_TEST(TestMessageBox)
#include "tst_messagebox.moc"

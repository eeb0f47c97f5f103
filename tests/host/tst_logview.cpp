#include "host/logview.h"

#include "host/logmodel.h"
#include "host/logtable.h"
#include "tests/support/modaldriver.h"
#include "tests/support/testmain.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>

class TestLogView : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<LogModel> m_model;
    std::unique_ptr<LogView> m_view;
    LogTable *m_table = nullptr;
    QLineEdit *m_filter = nullptr;

    void append(const QStringList &cells)
    {
        m_model->append({cells, false});
        QCoreApplication::processEvents();
    }

    // How many rows are shown when that is typed into the filter.
    int rowsWith(const QString &filter) const
    {
        m_filter->clear();
        QTest::keyClicks(m_filter, filter);
        return m_table->model()->rowCount();
    }

    // Saves the log, which is expected to be asked for a file.
    void save(const QString &path, const QString &problem = {}) const
    {
        ModalDriver driver;
        driver.expectFileDialog("Save Log", path);
        if (!problem.isEmpty()) {
            driver.expectBox({QMessageBox::Critical, "Save Log", problem});
        }
        m_view->save();
        driver.verify();
    }

private slots:
    void init()
    {
        m_model = std::make_unique<LogModel>(
            QVector<LogColumn>{{QStringLiteral("Command"), QString(20, 'c'), Qt::AlignLeft, true},
                               {QStringLiteral("Answer"), QString(10, 'a')}},
            1000);
        m_view = std::make_unique<LogView>(m_model.get(), "commands", "Nothing yet.");
        m_table = m_view->findChild<LogTable *>("tableView_commands");
        m_filter = m_view->findChild<QLineEdit *>("lineEdit_commands_filter");
        m_view->resize(400, 300);
        m_view->show();
    }

    void cleanup()
    {
        m_view.reset();
        m_model.reset();
    }

    void theFilterLooksIntoAllColumnsForEveryCharacterInAnyCase()
    {
        append({"config desc", "Robot cell"});
        append({"robot reset", "a.b"});
        append({"status active", "none"});
        QCOMPARE(rowsWith("ROBOT"), 2);
        QCOMPARE(rowsWith("a.b"), 1);
        QCOMPARE(rowsWith(".*"), 0);
        QCOMPARE(rowsWith(""), 3);
    }

    void copyTakesTheSelectedRowsFromTopToBottom()
    {
        append({"first", "1"});
        append({"second", "2"});
        append({"third", "3"});
        QGuiApplication::clipboard()->setText("mine");
        m_table->copy(); // nothing
        QCOMPARE(QGuiApplication::clipboard()->text(), "mine");
        m_table->selectRow(2);
        m_table->selectionModel()->select(m_table->model()->index(0, 0),
                                          QItemSelectionModel::Select | QItemSelectionModel::Rows);
        m_table->setFocus();
        QTest::keySequence(m_table, QKeySequence::Copy);
        QCOMPARE(QGuiApplication::clipboard()->text(), "first\t1\nthird\t3");
    }

    void theTableFollowsItsEndUntilTheUserLooksElsewhere()
    {
        QScrollBar *bar = m_table->verticalScrollBar();
        for (int i = 0; i < 100; ++i) {
            append({QString::number(i)});
        }
        QVERIFY(bar->maximum() > 0);
        QCOMPARE(bar->value(), bar->maximum());
        bar->setValue(3);
        append({"one more"});
        QCOMPARE(bar->value(), 3);
    }

    void theTableFollowsItsEndAlsoWhenItForgets()
    {
        for (const int currentRow : {-1, 0}) { // nobody has used it, or the focus will be forgotten
            m_model->clear();
            for (int i = 0; i < 1000; ++i) {
                m_model->append({{QString::number(i)}, false});
            }
            QCoreApplication::processEvents();
            m_table->setCurrentIndex(m_table->model()->index(currentRow, 0));
            m_table->scrollToBottom();
            append({"last"});
            QVERIFY(m_table->model()->rowCount() < 1000);
            QCoreApplication::processEvents();
            QScrollBar *bar = m_table->verticalScrollBar();
            QCOMPARE(bar->value(), bar->maximum());
            QCOMPARE(m_table->indexAt({1, m_table->viewport()->height() - 2}).data().toString(),
                     "last");
        }
    }

    void theElasticColumnTakesWhatTheOtherLeavesButKeepsALeastWidth()
    {
        m_view->resize(800, 300);
        QCoreApplication::processEvents();
        QCOMPARE(m_table->columnWidth(0), m_table->viewport()->width() - m_table->columnWidth(1));
        m_table->setColumnWidth(1, m_table->columnWidth(1) + 50); // as a user drags its border
        QCOMPARE(m_table->columnWidth(0), m_table->viewport()->width() - m_table->columnWidth(1));
        m_view->resize(150, 300);
        QCoreApplication::processEvents();
        QVERIFY(m_table->columnWidth(0)
                >= m_table->fontMetrics().horizontalAdvance(QString(20, 'c')));
        QVERIFY(m_table->horizontalScrollBar()->maximum() > 0);
    }

    void theRowsThatAreShownCanBeSaved()
    {
        append({"config desc", "Robot\tcell\n2"});
        append({"status active", "none"});
        append({"robot reset", QString::fromUtf8("pr\u00fcfen")});
        QTest::keyClicks(m_filter, "robot");
        const QTemporaryDir folder;
        save(folder.filePath("log.txt"));
        QFile file(folder.filePath("log.txt"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(file.readAll()),
                 "Command\tAnswer\nconfig desc\tRobot cell 2\nrobot reset\tpr\u00fcfen\n");
    }

    void savingCanFailAndBeCalledOff()
    {
        append({"config desc", "Robot cell"});
        const QString path = "/proc/nowhere/log.txt";
        save(path, "Cannot write \"" + path + "\": No such file or directory.");
        save({});
    }

    void anEmptyTableSaysSo()
    {
        const QImage empty = m_table->viewport()->grab().toImage();
        m_table->setEmptyText({});
        QVERIFY(m_table->viewport()->grab().toImage() != empty);
    }
};

VELTRA4_TEST(TestLogView)
#include "tst_logview.moc"

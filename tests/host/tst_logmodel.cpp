#include "host/logmodel.h"

#include "tests/support/testmain.h"

#include <QAbstractItemModelTester>
#include <QIcon>
#include <QSignalSpy>
#include <QTest>

class TestLogModel : public QObject
{
    Q_OBJECT

private:
    static constexpr int capacity = 20;

    std::unique_ptr<LogModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;

    void append(int from, int to) const
    {
        for (int i = from; i <= to; ++i) {
            m_model->append({{QString::number(i), "x"}, false});
        }
    }

    // Shown as soon as the event loop runs.
    QStringList shown() const
    {
        QCoreApplication::processEvents();
        QStringList texts;
        for (int row = 0; row < m_model->rowCount(); ++row) {
            texts << m_model->index(row, 0).data().toString();
        }
        return texts;
    }

    QVariant cell(int row, int column, int role) const
    {
        QCoreApplication::processEvents();
        return m_model->index(row, column).data(role);
    }

private slots:
    void init()
    {
        m_model = std::make_unique<LogModel>(
            QVector<LogColumn>{{"Number", "00000", Qt::AlignRight}, {"Text", "00000"}}, capacity);
        m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get());
    }

    void rowsAppearTogetherAtTheNextTurnOfTheEventLoop()
    {
        const QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
        append(1, 3);
        QCOMPARE(m_model->rowCount(), 0);
        QCOMPARE(shown(), QStringList({"1", "2", "3"}));
        QCOMPARE(inserted.count(), 1);
    }

    void theOldestRowsAreForgotten()
    {
        append(1, capacity);
        QCOMPARE(shown().size(), capacity);
        append(capacity + 1, capacity + 1);
        QVERIFY(shown().size() <= capacity && shown().size() > capacity / 2);
        QCOMPARE(shown().constLast(), QString::number(capacity + 1));
        QVERIFY(!shown().contains("1"));
    }

    void aBurstBeyondTheCapacityKeepsItsEnd()
    {
        append(1, 5);
        QCOMPARE(shown().size(), 5);
        const QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
        append(6, 1000);
        const int rows = shown().size();
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted.at(0).at(2).toInt() - inserted.at(0).at(1).toInt() + 1, capacity);
        QVERIFY(rows <= capacity && rows > capacity / 2);
        QCOMPARE(shown().constFirst(), QString::number(1001 - rows));
        QCOMPARE(shown().constLast(), "1000");
    }

    void failuresCarryASign()
    {
        m_model->append({{"good"}, false});
        m_model->append({{"bad"}, true});
        QVERIFY(!cell(0, 0, Qt::DecorationRole).isValid());
        QVERIFY(!cell(1, 0, Qt::DecorationRole).value<QIcon>().isNull());
        QVERIFY(!cell(1, 1, Qt::DecorationRole).isValid());
    }

    void columnsHaveTitlesAndAlignments()
    {
        const auto header = [this](int section, Qt::Orientation orientation, int role) {
            return m_model->headerData(section, orientation, role);
        };
        QCOMPARE(m_model->columnCount(), 2);
        QCOMPARE(header(0, Qt::Horizontal, Qt::DisplayRole).toString(), "Number");
        QVERIFY(header(0, Qt::Horizontal, Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
        QVERIFY(!header(2, Qt::Horizontal, Qt::DisplayRole).isValid());
        QVERIFY(!header(0, Qt::Vertical, Qt::DisplayRole).isValid());
    }

    void toolTipsShowTagsAsTextAndMissingCellsAreEmpty()
    {
        m_model->append({{"<b>no tag</b>"}, false});
        QVERIFY(cell(0, 0, Qt::ToolTipRole).toString().contains("&lt;b&gt;"));
        QVERIFY(!cell(0, 1, Qt::ToolTipRole).isValid());
        QCOMPARE(cell(0, 1, Qt::DisplayRole).toString(), "");
    }

    void theLastRowCanBeReplaced()
    {
        append(1, 2);
        m_model->replaceLast({{"two"}, false}); // not shown yet
        QCOMPARE(shown(), QStringList({"1", "two"}));
        const QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
        m_model->replaceLast({{"II"}, false});
        QCOMPARE(m_model->index(1, 0).data().toString(), "II");
        QCOMPARE(changed.count(), 1);
        m_model->clear();
        m_model->replaceLast({{"after clearing"}, false});
        QCOMPARE(shown(), QStringList("after clearing"));
    }

    void clearingForgetsAlsoWhatIsNotShownYet()
    {
        append(1, 2);
        QCOMPARE(shown().size(), 2);
        append(3, 4);
        m_model->clear();
        QCOMPARE(shown(), QStringList());
    }
};

VELTRA4_TEST(TestLogModel)
#include "tst_logmodel.moc"

#include "host/logmodel.h"

#include "tests/support/testmain.h"

#include <QAbstractItemModelTester>
#include <QIcon>
#include <QtTest>

class TestLogModel : public QObject
{
    Q_OBJECT

private:
    static constexpr int capacity = 20;

    static void append(LogModel &model, int from, int to)
    {
        for (int i = from; i <= to; ++i) {
            model.append({{QString::number(i), QStringLiteral("x")}, false});
        }
    }

    static QStringList firstColumn(const LogModel &model)
    {
        QStringList texts;
        for (int row = 0; row < model.rowCount(); ++row) {
            texts << model.index(row, 0).data().toString();
        }
        return texts;
    }

    const QVector<LogColumn> m_columns{
        {QStringLiteral("Number"), QStringLiteral("00000"), Qt::AlignRight},
        {QStringLiteral("Text"), QStringLiteral("00000")}};

private slots:
    void rowsAppearTogetherAtTheNextTurnOfTheEventLoop()
    {
        LogModel model(m_columns, capacity);
        const QAbstractItemModelTester tester(&model);
        const QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        append(model, 1, 3);
        QCOMPARE(model.rowCount(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(firstColumn(model), QStringList({"1", "2", "3"}));
        QCOMPARE(inserted.count(), 1);
    }

    void theOldestRowsAreForgotten()
    {
        LogModel model(m_columns, capacity);
        const QAbstractItemModelTester tester(&model);
        append(model, 1, capacity);
        QCoreApplication::processEvents();
        append(model, capacity + 1, capacity + 1);
        QCoreApplication::processEvents();
        QVERIFY(model.rowCount() <= capacity);
        QCOMPARE(firstColumn(model).constLast(), QString::number(capacity + 1));
        QVERIFY(!firstColumn(model).contains("1"));
        QVERIFY(model.rowCount() > capacity / 2);
    }

    void aBurstBeyondTheCapacityKeepsItsEnd()
    {
        LogModel model(m_columns, capacity);
        const QAbstractItemModelTester tester(&model);
        append(model, 1, 5);
        QCoreApplication::processEvents();
        const QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        append(model, 6, 1000);
        QCoreApplication::processEvents();
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted.at(0).at(2).toInt() - inserted.at(0).at(1).toInt() + 1, capacity);
        QVERIFY(model.rowCount() <= capacity);
        QVERIFY(model.rowCount() > capacity / 2);
        QCOMPARE(firstColumn(model).constFirst(), QString::number(1001 - model.rowCount()));
        QCOMPARE(firstColumn(model).constLast(), QString::number(1000));
    }

    void failuresCarryASign()
    {
        LogModel model(m_columns, capacity);
        model.append({{"good"}, false});
        model.append({{"bad"}, true});
        QCoreApplication::processEvents();
        QVERIFY(!model.index(0, 0).data(Qt::DecorationRole).isValid());
        QVERIFY(!model.index(1, 0).data(Qt::DecorationRole).value<QIcon>().isNull());
        QVERIFY(!model.index(1, 1).data(Qt::DecorationRole).isValid());
    }

    void columnsHaveTitlesAndAlignments()
    {
        const LogModel model(m_columns, capacity);
        QCOMPARE(model.columnCount(), 2);
        QCOMPARE(model.headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(),
                 QStringLiteral("Number"));
        QVERIFY(model.headerData(0, Qt::Horizontal, Qt::TextAlignmentRole).toInt()
                & Qt::AlignRight);
        QVERIFY(!model.headerData(2, Qt::Horizontal, Qt::DisplayRole).isValid());
        QVERIFY(!model.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
    }

    void toolTipsShowTagsAsText()
    {
        LogModel model(m_columns, capacity);
        model.append({{"<b>no tag</b>", ""}, false});
        QCoreApplication::processEvents();
        QVERIFY(model.index(0, 0).data(Qt::ToolTipRole).toString().contains("&lt;b&gt;"));
        QVERIFY(!model.index(0, 1).data(Qt::ToolTipRole).isValid());
    }

    void missingCellsAreEmpty()
    {
        LogModel model(m_columns, capacity);
        model.append({{"only one"}, false});
        QCoreApplication::processEvents();
        QCOMPARE(model.index(0, 1).data().toString(), QString());
    }

    void theLastRowCanBeReplaced()
    {
        LogModel model(m_columns, capacity);
        const QAbstractItemModelTester tester(&model);
        append(model, 1, 2);
        model.replaceLast({{"two"}, false}); // not shown yet
        QCoreApplication::processEvents();
        QCOMPARE(firstColumn(model), QStringList({"1", "two"}));
        const QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        model.replaceLast({{"II"}, false});
        QCOMPARE(firstColumn(model), QStringList({"1", "II"}));
        QCOMPARE(changed.count(), 1);
        model.clear();
        model.replaceLast({{"after clearing"}, false});
        QCoreApplication::processEvents();
        QCOMPARE(firstColumn(model), QStringList("after clearing"));
    }

    void clearingForgetsAlsoWhatIsNotShownYet()
    {
        LogModel model(m_columns, capacity);
        append(model, 1, 2);
        QCoreApplication::processEvents();
        append(model, 3, 4);
        model.clear();
        QCoreApplication::processEvents();
        QCOMPARE(model.rowCount(), 0);
    }
};

VELTRA4_TEST(TestLogModel)
#include "tst_logmodel.moc"

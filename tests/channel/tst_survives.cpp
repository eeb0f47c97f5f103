#include "channel/survives.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <stdexcept>

class TestSurvives : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhetherTheObjectIsStillThere();
    void anOwnerDestroyedWithinACommandEndsTheAction();
    void failuresPass();
};

void TestSurvives::tellsWhetherTheObjectIsStillThere()
{
    auto *object = new QObject;
    bool isRun = false;
    QVERIFY(survives(object, [&isRun] { isRun = true; }));
    QVERIFY(isRun);
    QVERIFY(!survives(object, [object] { delete object; }));
}

void TestSurvives::anOwnerDestroyedWithinACommandEndsTheAction()
{
    auto *object = new QObject;
    QVERIFY(!survives(object, [object] {
        delete object;
        throw OwnerDestroyed();
    }));
}

void TestSurvives::failuresPass()
{
    QVERIFY_EXCEPTION_THROWN(survives(this, [] { throw std::runtime_error("connection error"); }),
                             std::runtime_error);
}

VELTRA4_TEST_MAIN(TestSurvives)
#include "tst_survives.moc"

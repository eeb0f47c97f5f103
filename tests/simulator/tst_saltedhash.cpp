#include "simulator/saltedhash.h"
#include "tests/support/testmain.h"

#include <QTest>

class TestSaltedHash : public QObject
{
    Q_OBJECT

private slots:
    void onlyThePasswordItselfMatches()
    {
        const SaltedHash hash = SaltedHash::of("secret");
        QVERIFY(hash.isSet());
        QVERIFY(hash.matches("secret"));
        for (const QByteArray other : {"", "Secret", "secret ", "secre"}) {
            QVERIFY(!hash.matches(other));
            QVERIFY(!SaltedHash().matches(other));
        }
        QVERIFY(!SaltedHash().isSet());
    }

    void eachPasswordGetsASaltOfItsOwn()
    {
        const SaltedHash one = SaltedHash::of("secret", "salt");
        QVERIFY(one == SaltedHash::of("secret", "salt"));
        QVERIFY(one.hash != SaltedHash::of("secret", "pepper").hash);
        QVERIFY(SaltedHash::of("secret").salt != SaltedHash::of("secret").salt);
        QCOMPARE(SaltedHash::of("secret").salt.size(), 16);
    }
};

VELTRA4_TEST(TestSaltedHash)
#include "tst_saltedhash.moc"

#include "tests/support/testmain.h"
#include "widgets/validators.h"

#include <QRegExpValidator>
#include <QtTest>

namespace {

const QString lettersAndDigits =
    QStringLiteral("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789");

QValidator::State stateOf(const QValidator *validator, QString text)
{
    int position = text.size();
    return validator->validate(text, position);
}

} // namespace

class TestValidators : public QObject
{
    Q_OBJECT

private slots:
    void everyLatin1CharacterIsPermittedOrNot_data()
    {
        QTest::addColumn<bool>("isPassword");
        QTest::addColumn<QString>("permitted");
        QTest::newRow("text") << false << lettersAndDigits + "_-+=.,;:/ ";
        QTest::newRow("password") << true << lettersAndDigits + "_-+./";
    }

    void everyLatin1CharacterIsPermittedOrNot()
    {
        QFETCH(const bool, isPassword);
        QFETCH(const QString, permitted);
        QObject parent;
        const QValidator *validator =
            isPassword ? Validators::forPassword(&parent) : Validators::forText(&parent);
        QString accepted;
        QString expected;
        for (ushort code = 0; code < 0x100; ++code) {
            const QChar character(code);
            if (stateOf(validator, QString(character)) == QValidator::Acceptable) {
                accepted += character;
            }
            if (permitted.contains(character)) {
                expected += character;
            }
        }
        QCOMPARE(accepted, expected);
        QCOMPARE(stateOf(validator, permitted), QValidator::Acceptable);
    }

    void whatLiesBeyondLatin1IsNot()
    {
        QObject parent;
        // A Cyrillic letter, a digit of another script, the Euro sign.
        for (const QChar character : QStringLiteral("\u0430\u0663\u20ac")) {
            QCOMPARE(stateOf(Validators::forText(&parent), character), QValidator::Invalid);
            QCOMPARE(stateOf(Validators::forPassword(&parent), character), QValidator::Invalid);
        }
    }

    void aTextMayBeEmpty()
    {
        QObject parent;
        QCOMPARE(stateOf(Validators::forText(&parent), ""), QValidator::Acceptable);
    }

    void aPasswordMayNot()
    {
        QObject parent;
        // Not invalid either: a field must be able to start empty.
        QCOMPARE(stateOf(Validators::forPassword(&parent), ""), QValidator::Intermediate);
    }

    void oneForbiddenCharacterIsOneTooMany()
    {
        QObject parent;
        for (const QString text : {"\"hall", "ha\"ll", "hall\""}) {
            QCOMPARE(stateOf(Validators::forText(&parent), text), QValidator::Invalid);
        }
        for (const QString text : {"'secret", "sec ret", "secret'"}) {
            QCOMPARE(stateOf(Validators::forPassword(&parent), text), QValidator::Invalid);
        }
    }

    void theValidatorsBelongToTheirParent()
    {
        QObject parent;
        QCOMPARE(Validators::forText(&parent)->parent(), &parent);
        QCOMPARE(Validators::forPassword(&parent)->parent(), &parent);
    }
};

VELTRA4_TEST(TestValidators)
#include "tst_validators.moc"

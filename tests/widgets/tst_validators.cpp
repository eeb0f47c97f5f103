#include "tests/support/testmain.h"
#include "widgets/validators.h"

#include <QRegExpValidator>
#include <QTest>

namespace {

const QString lettersAndDigits = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

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
    void theCharactersOfATextArePermitted()
    {
        expectPermitted(m_text, lettersAndDigits + "_-+=.,;:/ ");
        for (const QString text : {"\"hall", "ha\"ll", "hall\""}) {
            QCOMPARE(stateOf(m_text, text), QValidator::Invalid);
        }
    }

    void theCharactersOfAPasswordArePermitted()
    {
        expectPermitted(m_password, lettersAndDigits + "_-+./");
        for (const QString text : {"'secret", "sec ret", "secret'"}) {
            QCOMPARE(stateOf(m_password, text), QValidator::Invalid);
        }
    }

    void aTextMayBeEmptyAndAPasswordMayNot()
    {
        QCOMPARE(stateOf(m_text, ""), QValidator::Acceptable);
        // Not invalid either: a field must be able to start empty.
        QCOMPARE(stateOf(m_password, ""), QValidator::Intermediate);
    }

    void theValidatorsBelongToTheirParent()
    {
        QCOMPARE(m_text->parent(), &m_parent);
        QCOMPARE(m_password->parent(), &m_parent);
    }

private:
    // These and no others.
    static void expectPermitted(const QValidator *validator, const QString &permitted)
    {
        QString all = QStringLiteral("\u0430\u0663\u20ac"); // other scripts' letter and digit, Euro
        for (ushort code = 0; code < 0x100; ++code) {
            all += QChar(code);
        }
        for (const QChar character : qAsConst(all)) {
            const bool isPermitted = permitted.contains(character);
            QVERIFY2((stateOf(validator, character) == QValidator::Acceptable) == isPermitted,
                     qPrintable(QString("character %1").arg(character.unicode())));
        }
        QCOMPARE(stateOf(validator, permitted), QValidator::Acceptable);
    }

    QObject m_parent;
    const QValidator *m_text = Validators::forText(&m_parent);
    const QValidator *m_password = Validators::forPassword(&m_parent);
};

VELTRA4_TEST(TestValidators)
#include "tst_validators.moc"

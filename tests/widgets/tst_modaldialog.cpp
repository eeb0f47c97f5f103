#include "tests/support/modaldriver.h"
#include "tests/support/testmain.h"
#include "widgets/modaldialog.h"

#include <QDialog>
#include <QTest>

namespace {

QDialog *namedDialog(QWidget *parent)
{
    auto *dialog = new QDialog(parent);
    dialog->setObjectName("Asked");
    return dialog;
}

std::optional<int> run(QDialog *dialog)
{
    return runModalDialog(dialog, [](QDialog &shown) { return shown.exec(); });
}

} // namespace

class TestModalDialog : public QObject
{
    Q_OBJECT

private slots:
    void theResultIsReturnedAndTheDialogDeleted()
    {
        ModalDriver driver;
        driver.expectDialog("Asked", [](QDialog *shown) { shown->done(7); });
        const QPointer<QDialog> dialog = namedDialog(nullptr);
        QCOMPARE(run(dialog), std::optional(7));
        QVERIFY(dialog.isNull());
    }

    void aDestroyedDialogHasNoResult()
    {
        ModalDriver driver;
        driver.expectDialog("Asked", [](QDialog *shown) { delete shown; });
        QVERIFY(!run(namedDialog(nullptr)).has_value());
    }

    void aDestroyedParentTakesTheDialogWithIt()
    {
        auto *parent = new QWidget;
        ModalDriver driver;
        driver.expectDialog("Asked", [parent](QDialog *) { delete parent; });
        QVERIFY(!run(namedDialog(parent)).has_value());
    }
};

VELTRA4_TEST(TestModalDialog)
#include "tst_modaldialog.moc"

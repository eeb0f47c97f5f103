#include "tests/support/modaldriver.h"
#include "tests/support/testmain.h"
#include "widgets/filedialog.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest>

Q_DECLARE_METATYPE(QMessageBox::StandardButton)

namespace {

ExpectedBox overwriteQuestion(QMessageBox::StandardButton answer)
{
    ExpectedBox question;
    question.icon = QMessageBox::Warning;
    question.title = "Save";
    question.text = "existing.dat already exists.\nDo you want to replace it?";
    question.buttons = QMessageBox::Yes | QMessageBox::No;
    question.defaultButton = QMessageBox::No;
    question.answer = answer;
    return question;
}

} // namespace

class TestFileDialog : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        QFile existing(path("existing.dat"));
        QVERIFY(existing.open(QIODevice::WriteOnly));
    }

    void cleanup() { QCOMPARE(QApplication::topLevelWidgets().size(), 0); }

    void openingReturnsTheChosenFile()
    {
        ModalDriver driver;
        driver.expectFileDialog("Open", path("existing.dat"));
        QCOMPARE(open(&m_owner, nullptr), path("existing.dat"));
    }

    void openingStartsInTheDirectoryWithTheFilter()
    {
        QString directory;
        QStringList filters;
        ModalDriver driver;
        driver.expectFileDialog("Open", QString(), [&](QFileDialog *dialog) {
            directory = dialog->directory().absolutePath();
            filters = dialog->nameFilters();
        });
        open(&m_owner, nullptr);
        QCOMPARE(directory, m_directory->path());
        QCOMPARE(filters, QStringList("Data (*.dat)"));
    }

    void openingInsistsOnAnExistingFile()
    {
        ExpectedBox refusal;
        refusal.icon = QMessageBox::Warning;
        refusal.title = "Open";
        refusal.text =
            "missing.dat\nFile not found.\nPlease verify the correct file name was given.";
        ModalDriver driver;
        driver.expectFileDialog("Open", path("missing.dat"));
        driver.expectBox(refusal);
        QCOMPARE(open(&m_owner, nullptr), QString());
        QCOMPARE(driver.takeProblems().size(), 1); // the driver closes what is left open
    }

    void savingReturnsTheChosenName()
    {
        ModalDriver driver;
        driver.expectFileDialog("Save", path("new.dat"));
        QCOMPARE(save(&m_owner, nullptr), path("new.dat"));
    }

    void savingStartsWithTheProposal()
    {
        QStringList proposed;
        ModalDriver driver;
        driver.expectFileDialog("Save", QString(),
                                [&](QFileDialog *dialog) { proposed = dialog->selectedFiles(); });
        save(&m_owner, nullptr);
        QCOMPARE(proposed, QStringList(path("proposal.dat")));
    }

    void overwritingIsAskedFor_data()
    {
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        QTest::addColumn<bool>("isChosen");
        QTest::newRow("yes") << QMessageBox::Yes << true;
        QTest::newRow("no, and the dialog is left open") << QMessageBox::No << false;
    }

    void overwritingIsAskedFor()
    {
        QFETCH(const QMessageBox::StandardButton, answer);
        QFETCH(const bool, isChosen);
        ModalDriver driver;
        driver.expectFileDialog("Save", path("existing.dat"));
        driver.expectBox(overwriteQuestion(answer));
        QCOMPARE(save(&m_owner, nullptr), isChosen ? path("existing.dat") : QString());
        QCOMPARE(driver.takeProblems().isEmpty(), isChosen); // the driver closes what is left open
    }

    void overwritingIsAskedForWhatIsWritten_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("whole") << "existing.dat";
        QTest::newRow("without extension") << "existing";
        QTest::newRow("blanks after it") << "existing  ";
    }

    void overwritingIsAskedForWhatIsWritten()
    {
        QFETCH(const QString, typed);
        ModalDriver driver;
        driver.expectFileDialog("Save", typed);
        driver.expectBox(overwriteQuestion(QMessageBox::Yes));
        QCOMPARE(saveData(), path("existing.dat"));
        driver.expectFileDialog("Save", typed);
        driver.expectBox(overwriteQuestion(QMessageBox::No));
        QCOMPARE(saveData(), QString());
        QVERIFY(!driver.takeProblems().isEmpty()); // the chooser was still open
    }

    void theExtensionIsCompleted_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("written");
        QTest::newRow("none") << "new"
                              << "new.dat";
        QTest::newRow("given") << "new.dat"
                               << "new.dat";
        QTest::newRow("in capitals") << "new.DAT"
                                     << "new.DAT";
        QTest::newRow("another") << "new.txt"
                                 << "new.txt.dat";
        QTest::newRow("blanks") << " new "
                                << " new.dat"; // those at the ends of the whole path
        QTest::newRow("a file without it is there") << "plain"
                                                    << "plain.dat";
    }

    void theExtensionIsCompleted()
    {
        QFETCH(const QString, typed);
        QFETCH(const QString, written);
        QVERIFY(QFile(path("plain")).open(QIODevice::WriteOnly));
        ModalDriver driver;
        driver.expectFileDialog("Save", typed);
        QCOMPARE(saveData(), path(written));
    }

    void aDirectoryIsEnteredNotWritten()
    {
        QVERIFY(QDir(m_directory->path()).mkdir("inner"));
        QString entered;
        ModalDriver driver;
        driver.expectDialog("QFileDialog", [&](QDialog *dialog) {
            auto *chooser = qobject_cast<QFileDialog *>(dialog);
            auto *name = chooser->findChild<QLineEdit *>("fileNameEdit");
            name->setText("inner");
            QTest::keyClick(name, Qt::Key_Return);
            entered = chooser->directory().dirName();
            name->setText("new");
            QTest::keyClick(name, Qt::Key_Return);
        });
        QCOMPARE(saveData(), path("inner/new.dat"));
        QCOMPARE(entered, "inner");
    }

    // Not even one that consists of the extension alone.
    void noNameIsNoFile()
    {
        bool isOpen = false;
        ModalDriver driver;
        driver.expectDialog("QFileDialog", [&isOpen](QDialog *chooser) {
            auto *name = chooser->findChild<QLineEdit *>("fileNameEdit");
            name->clear();
            QTest::keyClick(name, Qt::Key_Return);
            isOpen = chooser->isVisible();
            chooser->reject();
        });
        QCOMPARE(saveData(), QString());
        QVERIFY(isOpen);
    }

    void cancellingReturnsNothing()
    {
        ModalDriver driver;
        driver.expectFileDialog("Open", QString());
        driver.expectFileDialog("Save", QString());
        QCOMPARE(open(&m_owner, nullptr), QString());
        QCOMPARE(save(&m_owner, nullptr), QString());
    }

    void theDialogHasTheParent()
    {
        QWidget parent;
        QWidgetList parents;
        const auto look = [&parents](const QFileDialog *dialog) {
            parents << dialog->parentWidget();
        };
        ModalDriver driver;
        driver.expectFileDialog("Open", QString(), look);
        driver.expectFileDialog("Save", QString(), look);
        open(&m_owner, &parent);
        save(&m_owner, &parent);
        QCOMPARE(parents, QWidgetList({&parent, &parent}));
    }

    void aDestroyedOwnerMeansNoFile()
    {
        auto *owner = new QObject;
        ModalDriver driver;
        driver.expectFileDialog("Open", path("existing.dat"),
                                [owner](QFileDialog *) { delete owner; });
        QCOMPARE(open(owner, nullptr), QString());
    }

    void aDestroyedParentTakesTheDialogWithIt()
    {
        auto *parent = new QWidget;
        ModalDriver driver;
        driver.expectDialog("QFileDialog", [parent](QDialog *) { delete parent; });
        QCOMPARE(save(parent, parent), QString());
    }

private:
    QString path(const QString &name) const { return m_directory->filePath(name); }

    QString open(const QObject *owner, QWidget *parent) const
    {
        return FileDialog::openFileName(owner, parent, "Open", m_directory->path(), "Data (*.dat)");
    }

    QString save(const QObject *owner, QWidget *parent) const
    {
        return FileDialog::saveFileName(owner, parent, "Save", path("proposal.dat"),
                                        "Data (*.dat)");
    }

    // With ".dat" at the end.
    QString saveData() const
    {
        return FileDialog::saveFileName(&m_owner, nullptr, "Save", path("proposal.dat"),
                                        "Data (*.dat)", ".dat");
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    QObject m_owner;
};

VELTRA4_TEST(TestFileDialog)
#include "tst_filedialog.moc"

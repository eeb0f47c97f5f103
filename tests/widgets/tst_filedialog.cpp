#include "tests/support/modaldriver.h"
#include "tests/support/testmain.h"
#include "widgets/filedialog.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

class TestFileDialog : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_driver = std::make_unique<ModalDriver>();
        QVERIFY(QFile(path("existing.dat")).open(QIODevice::WriteOnly));
    }

    void cleanup()
    {
        m_driver->verify();
        QCOMPARE(QApplication::topLevelWidgets().size(), 0);
    }

    void openingStartsInTheDirectoryWithTheFilter()
    {
        QStringList seen;
        m_driver->expectFileDialog("Open", path("existing.dat"), [&](QFileDialog *dialog) {
            seen = dialog->nameFilters()
                << dialog->supportedSchemes() << dialog->directory().absolutePath();
        });
        QCOMPARE(open(&m_owner, nullptr), path("existing.dat"));
        QCOMPARE(seen, QStringList({"Data (*.dat)", "file", m_directory->path()}));
    }

    void openingInsistsOnAnExistingFile()
    {
        m_driver->expectFileDialog("Open", path("missing.dat"));
        m_driver->expectBox(
            {QMessageBox::Warning, "Open",
             "missing.dat\nFile not found.\nPlease verify the correct file name was given."});
        QCOMPARE(open(&m_owner, nullptr), QString());
        expectChooserLeftOpen();
    }

    void savingStartsWithTheProposal()
    {
        QStringList proposed;
        m_driver->expectFileDialog("Save", path("new"), [&](QFileDialog *dialog) {
            proposed = dialog->nameFilters() << dialog->selectedFiles();
        });
        QCOMPARE(save(&m_owner, nullptr), path("new"));
        QCOMPARE(proposed, QStringList({"Data (*.dat)", path("proposal.dat")}));
    }

    void overwritingIsAskedFor()
    {
        m_driver->expectFileDialog("Save", path("existing.dat"));
        expectOverwriteQuestion(QMessageBox::Yes);
        QCOMPARE(save(&m_owner, nullptr), path("existing.dat"));
    }

    void overwritingIsAskedForWhatIsWritten()
    {
        for (const char *typed : {"existing.dat", "existing", "existing  "}) {
            m_driver->expectFileDialog("Save", typed);
            expectOverwriteQuestion(QMessageBox::Yes);
            QCOMPARE(saveData(), path("existing.dat"));
            m_driver->expectFileDialog("Save", typed);
            expectOverwriteQuestion(QMessageBox::No);
            QCOMPARE(saveData(), QString());
            expectChooserLeftOpen();
        }
    }

    void theExtensionIsCompleted_data()
    {
        QTest::addColumn<QString>("written");
        QTest::newRow("new") << "new.dat";
        QTest::newRow("new.dat") << "new.dat";
        QTest::newRow("new.DAT") << "new.DAT";
        QTest::newRow("new.txt") << "new.txt.dat";
        QTest::newRow(" new ") << " new.dat"; // trimmed is the whole path
        QTest::newRow("plain") << "plain.dat";
    }

    void theExtensionIsCompleted()
    {
        QFETCH(const QString, written);
        QVERIFY(QFile(path("plain")).open(QIODevice::WriteOnly));
        m_driver->expectFileDialog("Save", QTest::currentDataTag());
        QCOMPARE(saveData(), path(written));
    }

    void aDirectoryIsEnteredNotWritten()
    {
        QVERIFY(QDir(m_directory->path()).mkdir("inner"));
        QString entered;
        m_driver->expectDialog("QFileDialog", [&entered](QDialog *chooser) {
            enter("inner", chooser);
            entered = qobject_cast<QFileDialog *>(chooser)->directory().dirName();
            enter("new", chooser);
        });
        QCOMPARE(saveData(), path("inner/new.dat"));
        QCOMPARE(entered, "inner");
    }

    // Not even one that consists of the extension alone.
    void noNameIsNoFile()
    {
        bool isOpen = false;
        m_driver->expectDialog("QFileDialog", [&isOpen](QDialog *chooser) {
            enter("", chooser);
            isOpen = chooser->isVisible();
            chooser->reject();
        });
        QCOMPARE(saveData(), QString());
        QVERIFY(isOpen);
    }

    void cancelledOverItsParentItReturnsNothing()
    {
        QWidget parent;
        QWidgetList parents;
        const auto look = [&parents](const QFileDialog *dialog) {
            parents << dialog->parentWidget();
        };
        m_driver->expectFileDialog("Open", QString(), look);
        m_driver->expectFileDialog("Save", QString(), look);
        QCOMPARE(open(&m_owner, &parent), QString());
        QCOMPARE(save(&m_owner, &parent), QString());
        QCOMPARE(parents, QWidgetList({&parent, &parent}));
    }

    void aDestroyedOwnerMeansNoFile()
    {
        auto *owner = new QObject;
        m_driver->expectFileDialog("Open", path("existing.dat"),
                                   [owner](QFileDialog *) { delete owner; });
        QCOMPARE(open(owner, nullptr), QString());
    }

    void aDestroyedParentTakesTheDialogWithIt()
    {
        auto *parent = new QWidget;
        m_driver->expectDialog("QFileDialog", [parent](QDialog *) { delete parent; });
        QCOMPARE(save(parent, parent), QString());
    }

private:
    QString path(const QString &name) const { return m_directory->filePath(name); }

    QString open(const QObject *owner, QWidget *parent) const
    {
        return FileDialog::openFileName(owner, parent, "Open", m_directory->path(), "Data (*.dat)");
    }

    QString save(const QObject *owner, QWidget *parent, const QString &extension = {}) const
    {
        return FileDialog::saveFileName(owner, parent, "Save", path("proposal.dat"), "Data (*.dat)",
                                        extension);
    }

    QString saveData() const { return save(&m_owner, nullptr, ".dat"); }

    static void enter(const QString &name, const QDialog *chooser)
    {
        auto *field = chooser->findChild<QLineEdit *>("fileNameEdit");
        field->setText(name);
        QTest::keyClick(field, Qt::Key_Return);
    }

    void expectOverwriteQuestion(QMessageBox::StandardButton answer)
    {
        m_driver->expectBox({QMessageBox::Warning, "Save",
                             "existing.dat already exists.\nDo you want to replace it?", answer,
                             QMessageBox::Yes | QMessageBox::No, QMessageBox::No});
    }

    // The driver closes it and complains.
    void expectChooserLeftOpen()
    {
        const QStringList problems = m_driver->takeProblems();
        QCOMPARE(problems.size(), 1);
        QVERIFY2(problems.first().startsWith("left open: "), qPrintable(problems.first()));
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<ModalDriver> m_driver;
    QObject m_owner;
};

VELTRA4_TEST(TestFileDialog)
#include "tst_filedialog.moc"

#include "tests/sweep/stage.h"

#include "tests/endtoend/table.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/userinput.h"
#include "tests/support/quickstyle.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>

namespace {

// Qt keeps the state of its file dialogs there.
bool isForeign(const QString &path)
{
    return path.startsWith(".config/") || path.startsWith(".cache/");
}

Files filesIn(const QString &folder)
{
    Files files;
    QDirIterator entries(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        const QString name = QDir(folder).relativeFilePath(path);
        if (!isForeign(name)) {
            files.insert(name, TransferFiles::contentsOf(path));
        }
    }
    return files;
}

void replaceFiles(const QString &folder, const Files &files)
{
    const Files present = filesIn(folder);
    for (auto file = present.cbegin(); file != present.cend(); ++file) {
        QFile::remove(QDir(folder).filePath(file.key()));
    }
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        const QString path = QDir(folder).filePath(file.key());
        QDir().mkpath(QFileInfo(path).path());
        TransferFiles::write(path, file.value());
    }
}

int takeWaitCursors()
{
    int cursors = 0;
    while (QGuiApplication::overrideCursor()) {
        QGuiApplication::restoreOverrideCursor();
        ++cursors;
    }
    return cursors;
}

void choose(QFileDialog *chooser, const QString &path)
{
    auto *name = chooser->findChild<QLineEdit *>("fileNameEdit");
    name->setText(path);
    QTest::keyClick(name, Qt::Key_Return);
}

} // namespace

Stage::Stage()
{
    QuickStyle::use();
    m_frontEnd.channel.setObserver(&m_transcript);
    m_frontEnd.channel.setSleep([](int /*milliseconds*/) {});
    m_frontEnd.driver.handleOthers([this](QWidget *window) { handle(window); });
}

Outcome Stage::perform(const Operation &operation, const std::optional<FaultPoint> &faultPoint)
{
    setUp(operation);
    m_faultPoint = faultPoint;
    const int faultsBefore = m_frontEnd.channel.faults().faultCount();
    operation.perform(*this);
    m_frontEnd.channel.faults().clear();
    m_wasFaultMet = m_frontEnd.channel.faults().faultCount() > faultsBefore;
    m_performed = m_transcript;
    return {m_performed.lines(), m_frontEnd.state(), filesIn(m_home.filePath(QString())),
            takeWaitCursors()};
}

void Stage::setUp(const Operation &operation)
{
    m_frontEnd.controller.setState(operation.before);
    replaceFiles(m_home.filePath(QString()), operation.files);
    m_actions.clear();
    m_chosenPath.clear();
}

QStringList Stage::listedNow()
{
    QStringList lines;
    useList([&lines](QDialog *list) { lines = Table::lines(list); });
    return lines;
}

void Stage::begin()
{
    m_transcript.clear();
    if (m_faultPoint) {
        m_frontEnd.channel.faults().addNth(m_faultPoint->command, m_faultPoint->fault,
                                           m_faultPoint->isLasting);
    }
}

void Stage::useList(const std::function<void(QDialog *)> &action)
{
    onDialog("ConfigurationDialog", action);
    m_frontEnd.triggerAction();
}

void Stage::startOnList(const char *button, const QString &description)
{
    useList([=](QDialog *list) {
        if (!description.isEmpty()) {
            Table::click(list, description);
        }
        begin();
        UserInput::click(list, button);
    });
}

void Stage::onDialog(const QString &objectName, const std::function<void(QDialog *)> &action)
{
    m_actions.insert(objectName, action);
}

void Stage::backUpAutomatically()
{
    auto *dialog = m_frontEnd.window->findChild<QDialog *>("ConfigSaveDlgClass");
    m_frontEnd.tellVersion(HostVersion::current);
    QVERIFY(QMetaObject::invokeMethod(dialog, "doAutomaticBackup", Qt::DirectConnection));
    m_frontEnd.tellVersion(HostVersion::withoutAutomaticBackup);
}

void Stage::handle(QWidget *window)
{
    if (auto *box = qobject_cast<QMessageBox *>(window)) {
        if (!qobject_cast<QFileDialog *>(box->parentWidget())) { // not Qt's own question
            m_transcript.boxShown(*box);
        }
        ModalDriver::agree(box);
    } else if (auto *chooser = qobject_cast<QFileDialog *>(window)) {
        m_transcript.windowShown(chooser->windowTitle());
        choose(chooser, m_chosenPath);
    } else if (auto *dialog = qobject_cast<QDialog *>(window)) {
        m_transcript.windowShown(dialog->objectName());
        const QPointer<QDialog> watched(dialog);
        m_actions.value(dialog->objectName(), [](QDialog *) {})(dialog);
        if (watched && watched->isVisible()) {
            watched->reject();
        }
    }
}

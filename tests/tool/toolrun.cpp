#include "tests/tool/toolrun.h"

#include "tests/backup/samplebackup.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonDocument>
#include <QProcess>
#include <QTest>

namespace {

class PreparedProcess : public QProcess
{
public:
    explicit PreparedProcess(const std::function<void()> &prepare)
        : m_prepare(prepare)
    {
    }

protected:
    void setupChildProcess() override
    {
        if (m_prepare) {
            m_prepare();
        }
    }

private:
    const std::function<void()> &m_prepare;
};

} // namespace

QJsonObject Tool::Run::object() const
{
    return QJsonDocument::fromJson(output.toUtf8()).object();
}

QJsonArray Tool::Run::array() const
{
    return QJsonDocument::fromJson(output.toUtf8()).array();
}

QString Tool::programPath()
{
    return QDir(QCoreApplication::applicationDirPath()).filePath("veltra4-backup");
}

Tool::Run Tool::run(const QStringList &arguments, const std::function<void()> &prepare)
{
    PreparedProcess program(prepare);
    program.start(programPath(), arguments);
    Run run;
    if (program.waitForFinished(-1) && program.exitStatus() == QProcess::NormalExit) {
        run.exitCode = program.exitCode();
    }
    run.output = QString::fromUtf8(program.readAllStandardOutput());
    run.complaint = QString::fromUtf8(program.readAllStandardError());
    return run;
}

void Tool::expectRun(const QStringList &arguments, int exitCode, const QString &output,
                     const QString &complaint)
{
    const Run run = Tool::run(arguments);
    QCOMPARE(run.exitCode, exitCode);
    QCOMPARE(run.output, output);
    QCOMPARE(run.complaint, complaint);
}

// util-linux's script gives the program a terminal of its own.
QString Tool::runInTerminal(const QStringList &arguments)
{
    QStringList quoted{programPath()};
    for (const QString &argument : arguments) {
        quoted << "'" + argument + "'";
    }
    QProcess terminal;
    terminal.start("script", {"-qec", quoted.join(' '), "/dev/null"});
    terminal.waitForFinished(-1);
    return QString::fromUtf8(terminal.readAllStandardOutput());
}

QString Tool::makeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("Cannot make %s", qPrintable(path));
    }
    return path;
}

QString Tool::Folder::make(const QString &name, const QByteArray &content) const
{
    return makeFile(path(name), content);
}

QByteArray Tool::backupOf(const QByteArray &controller, const QByteArray &time)
{
    return SampleBackup::documentWith("tracker-7", controller).replace("2024-03-05T14:07:09", time);
}

#pragma once

#include <QByteArray>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>

/// Runs veltra4-backup as its users do, and makes files for it.
namespace Tool {

/// What came of it.
struct Run
{
    int exitCode = -1; ///< -1 if it crashed
    QString output;
    QString complaint; ///< what it said on the standard error

    /// The output, if it is JSON, else empty.
    QJsonObject object() const;
    QJsonArray array() const;
};

QString programPath();

/// Waits for the end. @p prepare is called in the new process before the program begins.
Run run(const QStringList &arguments, const std::function<void()> &prepare = {});

/// Runs it, and sees that it ends and says just so.
void expectRun(const QStringList &arguments, int exitCode, const QString &output,
               const QString &complaint = {});

/// Runs it in a terminal, where there is no telling the output from complaints.
QString runInTerminal(const QStringList &arguments);

/// Writes a file, with all folders that it needs, and ends the test program if it cannot.
/// @return @p path
QString makeFile(const QString &path, const QByteArray &content);

/// A folder for files of a test, which goes with it.
class Folder
{
public:
    QString path(const QString &name = {}) const { return m_folder.filePath(name); }
    QString make(const QString &name, const QByteArray &content) const;
    QStringList files() const { return QDir(path()).entryList(QDir::Files); }

private:
    const QTemporaryDir m_folder;
};

/// A backup of that controller at that time, "2024-03-05T14:07:09" for example.
QByteArray backupOf(const QByteArray &controller, const QByteArray &time);

} // namespace Tool

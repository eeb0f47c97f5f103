#pragma once

#include <QByteArray>
#include <QCursor>
#include <QFile>
#include <QGuiApplication>
#include <QList>
#include <QString>

#include <csignal>

#include <sys/resource.h>

/// What the tests of saving and backing up have in common.
namespace SaveTesting {

/// Takes all cursors back that are shown over the application's own, and tells how many there were.
inline int takeCursors()
{
    int count = 0;
    while (QGuiApplication::overrideCursor()) {
        QGuiApplication::restoreOverrideCursor();
        ++count;
    }
    return count;
}

/// True while the application shows the wait cursor.
inline bool isWaiting()
{
    const QCursor *cursor = QGuiApplication::overrideCursor();
    return cursor != nullptr && cursor->shape() == Qt::WaitCursor;
}

inline QByteArray contentsOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

inline void writeFile(const QString &fileName, const QByteArray &contents)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()) {
        qFatal("cannot write %s", qPrintable(fileName));
    }
}

/// As long as it lives, no file of this process can grow beyond so many bytes, as on a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_previousHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_previousLimit);
        const rlimit limit{bytes, m_previousLimit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_previousLimit);
        std::signal(SIGXFSZ, m_previousHandler);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    void (*m_previousHandler)(int);
    rlimit m_previousLimit{};
};

} // namespace SaveTesting

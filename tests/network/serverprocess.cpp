#include "tests/network/serverprocess.h"

#include "simulator/controllerstate.h"
#include "simulator/statefile.h"

#include <QCoreApplication>
#include <QDir>
#include <QTest>

#include <csignal>

ServerProcess::ServerProcess(const ControllerState &state, const QStringList &options)
{
    QString error;
    if (!StateFile::save(stateFile(), state, &error)) {
        qFatal("%s", qPrintable(error));
    }
    start(0, options);
}

ServerProcess::~ServerProcess()
{
    kill();
}

ControllerState ServerProcess::state() const
{
    ControllerState state;
    QString error;
    if (!StateFile::load(stateFile(), &state, &error)) {
        QTest::qFail(qPrintable(error), __FILE__, __LINE__);
    }
    return state;
}

void ServerProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

void ServerProcess::stop()
{
    signal(SIGSTOP);
}

void ServerProcess::resume()
{
    signal(SIGCONT);
}

void ServerProcess::restart(const QStringList &options)
{
    start(m_address.port, options);
}

void ServerProcess::start(quint16 port, const QStringList &options)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(serverProgram(),
                    QStringList{"--port", QString::number(port), "--state", stateFile()} + options);
    while (!m_process.canReadLine() && m_process.waitForReadyRead()) { }
    const QString line = QString::fromLatin1(m_process.readLine()).trimmed();
    const std::optional<HostPort> address = HostPort::fromText(line.section("listening on ", 1));
    if (!address) {
        qFatal("the server does not listen: \"%s\"", qPrintable(line));
    }
    m_address = *address;
}

void ServerProcess::signal(int number) const
{
    ::kill(static_cast<pid_t>(m_process.processId()), number);
}

QString serverProgram()
{
    return QDir(QCoreApplication::applicationDirPath()).filePath("veltra2-simulator");
}

#include "host/simulatedlink.h"

#include "simulator/statefile.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>

SimulatedLink::SimulatedLink()
    : m_moduleChannel(m_controller)
    , m_hostChannel(m_controller)
{
    m_saveTimer.setSingleShot(true);
    QObject::connect(&m_saveTimer, &QTimer::timeout, &m_saveTimer, [this] { saveState(); });
}

SimulatedLink::~SimulatedLink()
{
    m_controller.setChangeCallback({});
    if (m_saveTimer.isActive()) {
        saveState();
    }
}

bool SimulatedLink::keepStateIn(const QString &path, QString *problem)
{
    ControllerState state = m_controller.state();
    if (!StateFile::takeUp(path, &state, problem)) {
        return false;
    }
    m_controller.setState(state);
    m_stateFile = path;
    m_controller.setChangeCallback([this] { m_saveTimer.start(); });
    return true;
}

void SimulatedLink::setLatency(int milliseconds)
{
    m_moduleChannel.setLatency(milliseconds);
}

void SimulatedLink::deliverMessage(int id, const QString &source, const QString &text)
{
    m_moduleChannel.deliverMessage(id, source.toLatin1().constData(), text.toLatin1().constData());
}

QString SimulatedLink::description() const
{
    const QString what = QCoreApplication::translate("SimulatedLink", "simulated in this program");
    return m_stateFile.isEmpty()
        ? what
        : QStringLiteral("%1 (%2)").arg(what, QFileInfo(m_stateFile).fileName());
}

void SimulatedLink::saveState()
{
    QString problem;
    if (!StateFile::save(m_stateFile, m_controller.state(), &problem)) {
        qWarning().noquote() << problem;
    }
}

#include "server/servedcontroller.h"

#include "simulator/statefile.h"

#include <algorithm>
#include <limits>

namespace {

int sumOf(qint64 latencyMs, qint64 delayMs)
{
    return static_cast<int>(std::min<qint64>(latencyMs + delayMs, std::numeric_limits<int>::max()));
}

} // namespace

ServedController::ServedController()
{
    m_controller.setChangeCallback([this] { m_isChanged = true; });
}

bool ServedController::keepStateIn(const QString &path, QString *problem)
{
    ControllerState state = m_controller.state();
    if (!StateFile::takeUp(path, &state, problem)) {
        return false;
    }
    m_controller.setState(state);
    m_stateFile = path;
    m_isChanged = false;
    return true;
}

ServedController::Outcome ServedController::execute(ControllerClient &client,
                                                    const QByteArray &command)
{
    const std::optional<Fault> fault = m_faults.next(command);
    Outcome outcome;
    outcome.delayMs = sumOf(m_latencyMs, fault ? fault->milliseconds : 0);
    if (fault && fault->kind == Fault::Kind::Fail) {
        outcome.reply = Reply::refused(QStringLiteral("failed on purpose"));
        return outcome;
    }
    outcome.reply = m_controller.execute(client, command);
    if (fault && fault->kind == Fault::Kind::Answer) {
        outcome.reply = Reply{true, fault->answer, {}};
    }
    QString problem;
    if (!saveChange(&problem)) {
        outcome.reply = Reply::refused(problem);
    }
    return outcome;
}

bool ServedController::saveChange(QString *problem)
{
    if (!m_isChanged || m_stateFile.isEmpty()) {
        return true;
    }
    m_isChanged = !StateFile::save(m_stateFile, m_controller.state(), problem);
    return !m_isChanged;
}

#include "fuzz/answeringchannel.h"

#include <utility>

AnsweringChannel::AnsweringChannel(QByteArray answers)
    : m_answers(std::move(answers))
{
}

int AnsweringChannel::setTimeout(int /*channel*/, int /*milliseconds*/, int /*flag*/)
{
    return 0;
}

int AnsweringChannel::postMessage(const char * /*category*/, const char * /*source*/, int /*level*/,
                                  const char * /*text*/)
{
    return 0;
}

int AnsweringChannel::addMessageReceiver(const char * /*name*/, MessageReceiver * /*receiver*/)
{
    return 0;
}

int AnsweringChannel::removeMessageReceiver(const char * /*name*/, MessageReceiver * /*receiver*/)
{
    return 0;
}

int AnsweringChannel::transact(Operation operation, const QByteArray & /*command*/,
                               QByteArray *answer)
{
    ++m_commandCount;
    if (operation == Operation::SendCommand) {
        return 0;
    }
    *answer = takeLine();
    return answer->isEmpty() ? -1 : 0;
}

QByteArray AnsweringChannel::takeLine()
{
    const int found = m_answers.indexOf('\n', m_position);
    const int end = found < 0 ? m_answers.size() : found;
    QByteArray line = m_answers.mid(m_position, end - m_position);
    m_position = qMin(end + 1, m_answers.size());
    return line;
}

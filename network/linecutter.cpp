#include "network/linecutter.h"

#include "network/wireprotocol.h"

std::optional<QByteArray> LineCutter::next()
{
    const int end = m_bytes.indexOf('\n');
    if (end < 0 || isOverlong()) {
        return {};
    }
    QByteArray line = m_bytes.left(end);
    m_bytes.remove(0, end + 1);
    if (line.endsWith('\r')) { // from a person with a terminal program
        line.chop(1);
    }
    return line;
}

bool LineCutter::isOverlong() const
{
    const int end = m_bytes.indexOf('\n');
    return (end < 0 ? m_bytes.size() : end) > WireProtocol::longestLine;
}

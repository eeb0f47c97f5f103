#include "bench/freechannel.h"

#include "channel/transferencoding.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int success = 0;
constexpr std::size_t replyCapacity = 200;

// The same for the same configuration, and without any order among them.
unsigned shuffled(const char *number)
{
    return static_cast<unsigned>(std::atoi(number)) * 2654435761U;
}

// Everything that is said here is short.
void say(char *reply, const char *text)
{
    std::memcpy(reply, text, std::strlen(text) + 1);
}

} // namespace

// Formats the variable arguments of the surrounding function into the line, and carries that.
#define CARRY_LINE(format)                                                                         \
    va_list arguments;                                                                             \
    va_start(arguments, format);                                                                   \
    std::vsnprintf(m_line.data(), m_line.size(), format, arguments);                               \
    va_end(arguments);                                                                             \
    carry(m_line.data())

void FreeChannel::setDownload(int bytes)
{
    constexpr int chunkSize = TransferEncoding::chunkSize;
    const int chunks = (bytes + chunkSize - 1) / chunkSize;
    QByteArray content(chunkSize, Qt::Uninitialized);
    for (int i = 0; i < chunkSize; ++i) {
        content[i] = static_cast<char>(i * 37);
    }
    m_chunk = QByteArray::number(chunks) + " '" + TransferEncoding::encode(content) + '\'';
}

int FreeChannel::setTimeout(int /*channel*/, int /*milliseconds*/, int /*flag*/)
{
    return success;
}

int FreeChannel::sendCommandReply(char *reply, const char *format, ...)
{
    CARRY_LINE(format);
    say(reply, "veltra2 ok");
    return success;
}

int FreeChannel::queryString(char *reply, const char *format, ...)
{
    CARRY_LINE(format);
    answer(reply);
    return success;
}

int FreeChannel::queryInt(int *value, const char *format, ...)
{
    CARRY_LINE(format);
    *value = std::strcmp(m_line.data(), "config number_of_configs") == 0 ? m_configurations : 0;
    return success;
}

int FreeChannel::queryDouble(double *value, const char *format, ...)
{
    CARRY_LINE(format);
    *value = 1.0;
    return success;
}

int FreeChannel::queryBool(bool *value, const char *format, ...)
{
    CARRY_LINE(format);
    *value = true;
    return success;
}

int FreeChannel::sendCommand(const char *format, ...)
{
    CARRY_LINE(format);
    return success;
}

int FreeChannel::postMessage(const char * /*category*/, const char * /*source*/, int /*level*/,
                             const char * /*text*/)
{
    return success;
}

int FreeChannel::addMessageReceiver(const char * /*name*/, MessageReceiver * /*receiver*/)
{
    return success;
}

int FreeChannel::removeMessageReceiver(const char * /*name*/, MessageReceiver * /*receiver*/)
{
    return success;
}

const char *FreeChannel::behind(const char *beginning) const
{
    const std::size_t length = std::strlen(beginning);
    return std::strncmp(m_line.data(), beginning, length) == 0 ? m_line.data() + length : nullptr;
}

void FreeChannel::answer(char *reply)
{
    if (behind("system download available") != nullptr) {
        say(reply, "yes");
    } else if (behind("system download ") != nullptr) {
        std::memcpy(reply, m_chunk.constData(), static_cast<std::size_t>(m_chunk.size()) + 1);
    } else if (const char *slot = behind("config config t")) {
        std::snprintf(reply, replyCapacity, "config%s", slot);
    } else if (const char *described = behind("config desc_of_config config")) {
        std::snprintf(reply, replyCapacity, "\"Measuring plan %08x, hall %s\"", shuffled(described),
                      described);
    } else if (behind("config owner_of_config ") != nullptr) {
        say(reply, "\"Metrology department\"");
    } else if (behind("config config_has_password ") != nullptr) {
        say(reply, "no");
    } else if (behind("config active_config") != nullptr) {
        say(reply, "config01");
    } else if (behind("system import available") != nullptr) {
        std::snprintf(reply, replyCapacity, "%d config", m_configurations);
    } else if (const char *item = behind("system import item i")) {
        tellItem(item, reply);
    } else {
        say(reply, "none");
    }
}

void FreeChannel::tellItem(const char *number, char *reply)
{
    std::snprintf(reply, replyCapacity,
                  "config%s 'Metrology department' 'Measuring plan %08x, hall %s'", number,
                  shuffled(number), number);
    if (m_itemsAreTold && std::atoi(number) == m_configurations) {
        m_itemsAreTold();
    }
}

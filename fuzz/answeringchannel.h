#pragma once

#include "simulator/linechannel.h"

#include <QByteArray>

/// A command channel whose far end answers whatever it likes: each command that yields something is
/// answered with the next line of a text. An empty line fails the command, and so does the end of
/// the text.
class AnsweringChannel final : public LineChannel
{
public:
    explicit AnsweringChannel(QByteArray answers);

    int setTimeout(int channel, int milliseconds, int flag) override;
    int postMessage(const char *category, const char *source, int level, const char *text) override;
    int addMessageReceiver(const char *name, MessageReceiver *receiver) override;
    int removeMessageReceiver(const char *name, MessageReceiver *receiver) override;

    /// How many commands were sent so far.
    int commandCount() const { return m_commandCount; }

private:
    int transact(Operation operation, const QByteArray &command, QByteArray *answer) override;
    QByteArray takeLine();

    const QByteArray m_answers;
    int m_position = 0;
    int m_commandCount = 0;
};

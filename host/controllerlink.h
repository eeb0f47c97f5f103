#pragma once

#include <QString>

class IOManager;
class LineChannel;

/// The host's connection to one controller.
class ControllerLink
{
public:
    virtual ~ControllerLink() = default;

    /// The channel for modules.
    virtual LineChannel &moduleChannel() = 0;
    /// The channel for the host's own questions, which are no business of the modules: it has
    /// time-outs of its own, and nobody observes it.
    virtual IOManager &hostChannel() = 0;
    /// Forwards a message to the receivers that modules have registered.
    virtual void deliverMessage(int id, const QString &source, const QString &text) = 0;
    /// What the host is connected to, in words.
    virtual QString description() const = 0;
};

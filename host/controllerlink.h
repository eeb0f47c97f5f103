#pragma once

#include <QString>

#include <functional>

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
    /// What the host is connected to, in words; also that it is not at the moment.
    virtual QString description() const = 0;
    /// Whether the controller has answered lately.
    virtual bool hasContact() const { return true; }
    /// @p changed is called when description() has changed: from the event loop, or from within a
    /// command of either channel. It must not send commands.
    virtual void setContactCallback(const std::function<void()> & /*changed*/) { }
};

#pragma once

#include <QString>

#include <stdexcept>

/// A step of the tour did not come out as expected.
///
/// Thrown and caught within the tour's own code: ModalWatcher keeps it from passing through an
/// event loop.
class StepFailed : public std::runtime_error
{
public:
    explicit StepFailed(const QString &reason)
        : std::runtime_error(reason.toStdString())
    {
    }

    QString reason() const { return QString::fromStdString(what()); }
};

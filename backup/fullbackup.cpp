#include "backup/fullbackup.h"

#include "backup/version.h"
#include "hostapi/backendversions.h"

#include <stdexcept>
#include <utility>

namespace {
constexpr int embeddedTimeoutMs = 3000;
constexpr int firstMajorThatCanBeAsked = 4;
} // namespace

FullBackup::FullBackup(IOManager *channel, BackendVersions *versions)
    : FullBackup(Controller(channel), versions)
{
}

FullBackup::FullBackup(Controller controller, BackendVersions *versions)
    : m_controller(std::move(controller))
    , m_versions(versions)
{
}

bool FullBackup::isControllerEmbedded()
{
    if (m_versions->ptVersion.major < firstMajorThatCanBeAsked) {
        return true;
    }
    m_controller.setTimeout(embeddedTimeoutMs, 1);
    const std::optional<bool> isEmbedded = m_controller.isEmbedded();
    if (!isEmbedded) {
        throw std::runtime_error("connection error");
    }
    return *isEmbedded;
}

bool FullBackup::isCompatibleWithController(bool *embedded)
{
    if (embedded) {
        *embedded = isControllerEmbedded();
    }
    if (isControllerEmbedded() && m_versions->ctVersion < ctVersion) {
        return false;
    }
    if (m_versions->ptVersion < ptVersion) {
        return false;
    }
    return m_versions->systemModel == systemModel;
}

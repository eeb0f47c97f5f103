#include "backup/fullbackup.h"

#include "backup/version.h"
#include "hostapi/backendversions.h"
#include "hostapi/iomanager.h"

#include <stdexcept>

namespace {
constexpr int embeddedTimeoutMs = 3000;
constexpr int firstMajorThatCanBeAsked = 4;
} // namespace

FullBackup::FullBackup(IOManager *channel, BackendVersions *versions)
    : m_channel(channel)
    , m_versions(versions)
{
}

FullBackup::~FullBackup() = default;

bool FullBackup::isControllerEmbedded()
{
    if (m_versions->ptVersion.major < firstMajorThatCanBeAsked) {
        return true;
    }
    bool isEmbedded = false;
    m_channel->setTimeout(0, embeddedTimeoutMs, 1);
    if (m_channel->queryBool(&isEmbedded, "system controller_embedded") != 0) {
        throw std::runtime_error("connection error");
    }
    return isEmbedded;
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

bool FullBackup::cancelDownload()
{
    return m_channel->sendCommand("system download cancel") == 0;
}

bool FullBackup::cancelUpload()
{
    return m_channel->sendCommand("system upload cancel") == 0;
}

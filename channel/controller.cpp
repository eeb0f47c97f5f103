#include "channel/controller.h"

#include "channel/answeredcount.h"
#include "channel/configurationsmessagereceiver.h"
#include "channel/replybuffer.h"
#include "hostapi/iomanager.h"

// Each format reaches the host as it stands here, and here alone: whoever wants to know what is
// sent has to read no other file.

Controller::Controller(IOManager *host, QObject *owner)
    : m_host(host)
    , m_owner(owner)
{
}

template <typename Call>
bool Controller::done(Call call) const
{
    if (!m_host) {
        return false;
    }
    if (!m_owner) {
        return call() == 0;
    }
    const QPointer<QObject> owner(m_owner); // this object may be gone with it
    const bool isSuccess = call() == 0;
    if (!owner) {
        throw OwnerDestroyed();
    }
    return isSuccess;
}

template <typename Call>
Controller::Answer Controller::answer(Call call) const
{
    ReplyBuffer reply;
    if (!done([&] { return call(reply.data()); })) {
        return Answer::None;
    }
    return reply.text() == QLatin1String("veltra2 ok") ? Answer::Ok : Answer::Refusal;
}

template <typename Value, typename Call>
std::optional<Value> Controller::value(Call call, Value value) const
{
    return done([&] { return call(&value); }) ? std::optional(value) : std::nullopt;
}

void Controller::setTimeout(int milliseconds, int flag) const
{
    done([&] { return m_host->setTimeout(0, milliseconds, flag); });
}

void Controller::report(const Latin1 &text) const
{
    reportUnless(false, *text);
}

bool Controller::reportUnless(bool isSuccess, const char *text) const
{
    if (!isSuccess) {
        done([&] { return m_host->postMessage("standard", "VELTRA4", 1, text); });
    }
    return isSuccess;
}

void Controller::announceActiveConfigurationChanged() const
{
    done([&] {
        // Listeners go by "ConfigurationModule", in the singular, although the module's class is
        // called otherwise.
        return m_host->postMessage("GlobalEvent", "ConfigurationModule", 1,
                                   "ActiveConfigurationChanged");
    });
}

void Controller::addMessageReceiver(ConfigurationsMessagereceiver *receiver) const
{
    if (m_host) {
        m_host->addMessageReceiver("ConfigurationsModule", receiver);
    }
}

void Controller::removeMessageReceiver(ConfigurationsMessagereceiver *receiver) const
{
    if (m_host) {
        // Not the name it was added under: hosts expect exactly this pair.
        m_host->removeMessageReceiver("ServiceModule", receiver);
    }
}

std::optional<int> Controller::numberOfConfigurations() const
{
    return believedCount(value<int>(
        [&](int *value) { return m_host->queryInt(value, "config number_of_configs"); }));
}

bool Controller::identifierInSlot(int slot, ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "config config t%02d", slot); });
}

bool Controller::ownerOf(const Latin1 &id, ReplyBuffer *reply) const
{
    return done(
        [&] { return m_host->queryString(reply->data(), "config owner_of_config %s", *id); });
}

bool Controller::descriptionOf(const Latin1 &id, ReplyBuffer *reply) const
{
    return done(
        [&] { return m_host->queryString(reply->data(), "config desc_of_config %s", *id); });
}

bool Controller::hasPassword(const Latin1 &id, ReplyBuffer *reply) const
{
    return done(
        [&] { return m_host->queryString(reply->data(), "config config_has_password %s", *id); });
}

std::optional<double> Controller::freeSpace() const
{
    return value<double>(
        [&](double *value) { return m_host->queryDouble(value, "config free_space"); }, 1.0);
}

bool Controller::activeConfiguration(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "config active_config"); });
}

bool Controller::activate(const Latin1 &id) const
{
    return done([&] { return m_host->sendCommand("config active_config %s", *id); });
}

Controller::Answer Controller::createConfiguration(const Latin1 &stamp) const
{
    return answer([&](char *reply) {
        return m_host->sendCommandReply(reply, "veltra2 config new_config config%s", *stamp);
    });
}

Controller::Answer Controller::createClone(const Latin1 &stamp, const Latin1 &source) const
{
    return answer([&](char *reply) {
        return m_host->sendCommandReply(reply, "veltra2 config clone_config config%s %s", *stamp,
                                        *source);
    });
}

Controller::Answer Controller::cloneConfiguration(const Latin1 &copy, const Latin1 &source) const
{
    return answer([&](char *reply) {
        return m_host->sendCommandReply(reply, "veltra2 config clone_config %s %s", *copy, *source);
    });
}

Controller::Answer Controller::deleteConfiguration(const Latin1 &id) const
{
    return answer([&](char *reply) {
        return m_host->sendCommandReply(reply, "veltra2 config delete_config %s", *id);
    });
}

bool Controller::description(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "config desc"); });
}

bool Controller::setDescription(const Latin1 &description) const
{
    return done([&] { return m_host->sendCommand("config desc \"%s\"", *description); });
}

bool Controller::setDescriptionOfNew(const Latin1 &description) const
{
    return done([&] { return m_host->sendCommand("config desc \"%s\" ", *description); });
}

bool Controller::setDatedDescription(const Latin1 &description, const Latin1 &date) const
{
    return done([&] { return m_host->sendCommand("config desc \"%s %s\"", *description, *date); });
}

bool Controller::setOwner(const Latin1 &owner) const
{
    return done([&] { return m_host->sendCommand("config owner \"%s\"", *owner); });
}

bool Controller::setOwnerOfNew(const Latin1 &owner) const
{
    return done([&] { return m_host->sendCommand("config owner \"%s\" ", *owner); });
}

bool Controller::setPassword(const Latin1 &password) const
{
    return done([&] { return m_host->sendCommand("config new_password '%s'", *password); });
}

bool Controller::removePassword() const
{
    return done([&] { return m_host->sendCommand("config new_password none"); });
}

bool Controller::presentPassword(const Latin1 &password) const
{
    return done([&] { return m_host->sendCommand("config password '%s'", *password); });
}

bool Controller::presentSuperPassword(const Latin1 &password) const
{
    return done([&] { return m_host->sendCommand("config super_password '%s'", *password); });
}

bool Controller::withdrawSuperPassword() const
{
    return done([&] { return m_host->sendCommand("config super_password '.'"); });
}

bool Controller::isChangeable(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "config is_changeable"); });
}

bool Controller::prepareDownload(const Latin1 &id) const
{
    return done([&] { return m_host->sendCommand("system download prepare 'config' '%s'", *id); });
}

bool Controller::prepareDownloadOfBase() const
{
    return done([&] { return m_host->sendCommand("system download prepare 'config' '__base'"); });
}

bool Controller::isDownloadAvailable(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "system download available"); });
}

bool Controller::downloadChunk(int number, ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "system download %d", number); });
}

bool Controller::cancelDownload() const
{
    return done([&] { return m_host->sendCommand("system download cancel"); });
}

bool Controller::uploadChunk(int total, int number, const QByteArray &text) const
{
    return done([&] {
        return m_host->sendCommand("system upload %d %d %s", total, number, text.constData());
    });
}

bool Controller::cancelUpload() const
{
    return done([&] { return m_host->sendCommand("system upload cancel"); });
}

bool Controller::importOffer(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "system import available"); });
}

bool Controller::importItem(int number, ReplyBuffer *reply) const
{
    return done(
        [&] { return m_host->queryString(reply->data(), "system import item i%02d", number); });
}

bool Controller::importConfiguration(const Latin1 &id) const
{
    return done([&] { return m_host->sendCommand("system import 'config' '%s'", *id); });
}

std::optional<int> Controller::numberOfConnectedSlaves() const
{
    return believedCount(value<int>(
        [&](int *value) { return m_host->queryInt(value, "cascade number_of_connected_slaves"); }));
}

bool Controller::connectedSlave(int number, ReplyBuffer *reply) const
{
    return done([&] {
        return m_host->queryString(reply->data(), "cascade connected_slave d%02d", number);
    });
}

std::optional<bool> Controller::isSlaveAvailable(const Latin1 &slave) const
{
    return value<bool>([&](bool *value) {
        return m_host->queryBool(value, "cascade connected_slave_available %s", *slave);
    });
}

Controller::Answer Controller::addSlave(const Latin1 &slave) const
{
    return answer([&](char *reply) {
        return m_host->sendCommandReply(reply, "veltra2 cascade add_slave %s", *slave);
    });
}

Controller::Answer Controller::addScannedSlave(const Latin1 &slave) const
{
    return answer([&](char *reply) {
        return m_host->sendCommandReply(reply, "veltra2 cascade add_scanned_slave %s", *slave);
    });
}

Controller::Answer Controller::removeSlave(const Latin1 &slave) const
{
    return answer([&](char *reply) {
        return m_host->sendCommandReply(reply, "veltra2 cascade sub_slave %s", *slave);
    });
}

bool Controller::activity(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "status active"); });
}

bool Controller::serial(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "system controller_serial"); });
}

bool Controller::model(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "system model"); });
}

bool Controller::modelDescription(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "system model_description"); });
}

std::optional<bool> Controller::isEmbedded() const
{
    return value<bool>(
        [&](bool *value) { return m_host->queryBool(value, "system controller_embedded"); });
}

bool Controller::hostname(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "system hostname"); });
}

bool Controller::setHostname(const Latin1 &hostname) const
{
    return done([&] { return m_host->sendCommand("system hostname %s", *hostname); });
}

bool Controller::net(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "system net"); });
}

bool Controller::setNet(const Latin1 &net) const
{
    return done([&] { return m_host->sendCommand("system net %s", *net); });
}

bool Controller::domainName(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "system domainname"); });
}

bool Controller::setDomainName(const Latin1 &domainName) const
{
    return done([&] { return m_host->sendCommand("system domainname %s", *domainName); });
}

bool Controller::nameServer(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "system nameserver"); });
}

bool Controller::setNameServer(const Latin1 &nameServer) const
{
    return done([&] { return m_host->sendCommand("system nameserver %s", *nameServer); });
}

bool Controller::ntpServer(ReplyBuffer *reply) const
{
    return done([&] { return m_host->queryString(reply->data(), "system ntp_server"); });
}

bool Controller::setNtpServer(const Latin1 &ntpServer) const
{
    return done([&] { return m_host->sendCommand("system ntp_server %s", *ntpServer); });
}

#pragma once

#include "channel/latin1.h"

#include <QPointer>

#include <optional>

class ConfigurationsMessagereceiver;
class IOManager;
class ReplyBuffer;

/// Thrown by a Controller out of the call that has cost its owner the life. It leaves everything
/// that the owner was doing, up to Controller::ownerSurvives(). No std::exception, lest it be taken
/// for a failure.
class OwnerDestroyed
{ };

/// The tracking controller behind the host's command channel: everything that the plug-in ever says
/// to it has a name here, and everything that it says to the rest of the host.
///
/// A query or command that fails, because the controller refuses it, does not answer in time or
/// because the host never set a channel, returns false, nothing or Answer::None. Then a reply
/// buffer keeps what it held before. Texts go to the controller as Latin-1; what of a text lies
/// beyond arrives there as "?".
///
/// The host may release the module or destroy its window within any call, as when it leaves because
/// of an event that it is being sent. A call that costs the owner the life does not return but
/// throws OwnerDestroyed; the two that register message receivers excepted, as they belong into the
/// owner's constructor and destructor.
///
/// A small value to be handed on. To be used in the GUI thread; every call blocks until the
/// controller has answered or the time-out has expired.
class Controller
{
public:
    /// What a structural command has come to.
    enum class Answer {
        None,    ///< it failed
        Refusal, ///< the controller did not say "veltra2 ok"
        Ok
    };

    /// @param host   the host's channel, not owned; null if there is none, and every call fails
    /// @param owner  who must be alive after each call, if anybody; not owned
    explicit Controller(IOManager *host, QObject *owner = nullptr);

    /// Runs @p action, which may open modal windows and talk to the controller. It ends early when
    /// a call has cost the owner the life. Slots do such things in here, and return at once without
    /// touching any member when they learn that they are gone.
    /// @return false if there was an owner and there is none any more
    template <typename Action>
    bool ownerSurvives(Action action) const;

    /// How long the following commands may take, until the next call of this. What @p flag means
    /// is the controller's business; each command has its own.
    void setTimeout(int milliseconds, int flag) const;

    /// @name The host
    /// @{

    /// Reports that something failed; the host shows it among its events. @p text is English and
    /// untranslated.
    void report(const Latin1 &text) const;
    /// Reports @p text, in Latin-1, unless @p isSuccess, the result of a call here.
    /// @return @p isSuccess
    bool reportUnless(bool isSuccess, const char *text) const;
    /// Announces that the set of configurations or the active one may have changed, so that other
    /// modules read again what they show.
    void announceActiveConfigurationChanged() const;

    /// Asks the host to forward its messages; @p receiver is not owned.
    void addMessageReceiver(ConfigurationsMessagereceiver *receiver) const;
    /// Ends what addMessageReceiver() began.
    void removeMessageReceiver(ConfigurationsMessagereceiver *receiver) const;

    /// @}
    /// @name The store of configurations
    /// An identifier is a word, unique on the controller.
    /// @{

    /// How many slots there are; nothing either if no controller has so many, see believedCount().
    std::optional<int> numberOfConfigurations() const;
    /// The identifier of the configuration in @p slot, which counts from 1.
    bool identifierInSlot(int slot, ReplyBuffer *reply) const;
    /// The owner of a configuration, in double quotes.
    bool ownerOf(const Latin1 &id, ReplyBuffer *reply) const;
    /// The description of a configuration, in double quotes.
    bool descriptionOf(const Latin1 &id, ReplyBuffer *reply) const;
    /// Answers "yes" if a configuration is locked.
    bool hasPassword(const Latin1 &id, ReplyBuffer *reply) const;
    /// The free fraction of the store, from 0 to 1; 1 where the host succeeds without telling.
    std::optional<double> freeSpace() const;
    /// The identifier of the active configuration.
    bool activeConfiguration(ReplyBuffer *reply) const;
    /// Makes a configuration the active one.
    bool activate(const Latin1 &id) const;

    /// Makes an empty configuration called "config" and the @p stamp, see Identifiers::newStamp(),
    /// and makes it the active one.
    Answer createConfiguration(const Latin1 &stamp) const;
    /// The same as a copy of @p source.
    Answer createClone(const Latin1 &stamp, const Latin1 &source) const;
    /// Makes @p copy as a copy of @p source, and makes it the active one.
    Answer cloneConfiguration(const Latin1 &copy, const Latin1 &source) const;
    /// Deletes a configuration.
    Answer deleteConfiguration(const Latin1 &id) const;

    /// @}
    /// @name The active configuration
    /// @{

    /// Its description, in double quotes.
    bool description(ReplyBuffer *reply) const;
    /// Changes its description, which holds no double quotes.
    bool setDescription(const Latin1 &description) const;
    /// The same in the form that is due after a creation.
    bool setDescriptionOfNew(const Latin1 &description) const;
    /// The same with a date behind it.
    bool setDatedDescription(const Latin1 &description, const Latin1 &date) const;
    /// Changes its owner, which holds no double quotes.
    bool setOwner(const Latin1 &owner) const;
    /// The same in the form that is due after a creation.
    bool setOwnerOfNew(const Latin1 &owner) const;

    /// Locks it.
    bool setPassword(const Latin1 &password) const;
    /// Unlocks it, if isChangeable().
    bool removePassword() const;
    /// Presents its password, so that it becomes changeable.
    bool presentPassword(const Latin1 &password) const;
    /// Presents the controller's own password, which opens every configuration.
    bool presentSuperPassword(const Latin1 &password) const;
    /// Withdraws what presentSuperPassword() presented.
    bool withdrawSuperPassword() const;
    /// Answers "yes" if it is not locked, or its password or the super password was presented.
    bool isChangeable(ReplyBuffer *reply) const;

    /// @}
    /// @name Download
    /// What was prepared arrives chunk by chunk, see downloadChunks().
    /// @{

    /// Adds a configuration to what will be downloaded.
    bool prepareDownload(const Latin1 &id) const;
    /// Adds the base configuration.
    bool prepareDownloadOfBase() const;
    /// Answers "yes" if what was prepared can be downloaded.
    bool isDownloadAvailable(ReplyBuffer *reply) const;
    /// Chunk @p number, from 1 on, in the form that parseDownloadAnswer() reads.
    bool downloadChunk(int number, ReplyBuffer *reply) const;
    /// Forgets what was prepared.
    bool cancelDownload() const;

    /// @}
    /// @name Upload and import
    /// @{

    /// Sends chunk @p number, from 1 on, of @p total; @p text is in the transfer encoding.
    bool uploadChunk(int total, int number, const QByteArray &text) const;
    /// Forgets what was uploaded.
    bool cancelUpload() const;
    /// How many items were uploaded and what they are, "3 config" for example.
    bool importOffer(ReplyBuffer *reply) const;
    /// Item @p number, from 1 on, in the form that parseImportItem() reads.
    bool importItem(int number, ReplyBuffer *reply) const;
    /// Takes an item that was uploaded into the store.
    bool importConfiguration(const Latin1 &id) const;

    /// @}
    /// @name Cascade
    /// @{

    /// How many slaves are connected; nothing either if no controller has so many.
    std::optional<int> numberOfConnectedSlaves() const;
    /// Slave @p number, from 1 on.
    bool connectedSlave(int number, ReplyBuffer *reply) const;
    /// Whether a slave can be reached.
    std::optional<bool> isSlaveAvailable(const Latin1 &slave) const;
    /// Connects a slave that the controller knows.
    Answer addSlave(const Latin1 &slave) const;
    /// Makes a slave known that has to be looked for.
    Answer addScannedSlave(const Latin1 &slave) const;
    /// Disconnects a slave.
    Answer removeSlave(const Latin1 &slave) const;

    /// @}
    /// @name System
    /// The network settings can be read and set on an embedded controller only, except the first.
    /// @{

    /// What the controller is doing; "none" if nothing.
    bool activity(ReplyBuffer *reply) const;
    /// The serial number.
    bool serial(ReplyBuffer *reply) const;
    /// The number of the model.
    bool model(ReplyBuffer *reply) const;
    /// The name of the model, in double quotes.
    bool modelDescription(ReplyBuffer *reply) const;
    /// Whether the controller has a machine to itself.
    std::optional<bool> isEmbedded() const;

    bool hostname(ReplyBuffer *reply) const;            ///< the name in the network
    bool setHostname(const Latin1 &hostname) const;     ///< takes effect after a reboot
    bool net(ReplyBuffer *reply) const;                 ///< addresses, in its own words
    bool setNet(const Latin1 &net) const;               ///< takes effect after a reboot
    bool domainName(ReplyBuffer *reply) const;          ///< the network domain
    bool setDomainName(const Latin1 &domainName) const; ///< the network domain
    bool nameServer(ReplyBuffer *reply) const;          ///< the DNS server
    bool setNameServer(const Latin1 &nameServer) const; ///< the DNS server
    bool ntpServer(ReplyBuffer *reply) const;           ///< the time server
    bool setNtpServer(const Latin1 &ntpServer) const;   ///< the time server

    /// @}

private:
    template <typename Call>
    bool done(Call call) const;
    template <typename Call>
    Answer answer(Call call) const;
    template <typename Value, typename Call>
    std::optional<Value> value(Call call, Value value = {}) const;

    IOManager *m_host;
    QPointer<QObject> m_owner;
};

template <typename Action>
bool Controller::ownerSurvives(Action action) const
{
    const bool isWatched = !m_owner.isNull();
    const QPointer<QObject> owner(m_owner); // this object may be gone with it
    try {
        action();
    } catch (const OwnerDestroyed &) {
        return false;
    }
    return !isWatched || owner;
}

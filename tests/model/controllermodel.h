#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVector>

#include <optional>

struct ControllerState;

/// One configuration as anybody may know it: with its password in plain text.
struct StoredModel
{
    QByteArray identifier;
    QByteArray owner;
    QByteArray description;
    std::optional<QByteArray> password; ///< set exactly when the configuration is locked
    QByteArray data;
};

bool operator==(const StoredModel &left, const StoredModel &right);

/// What a controller does with its configurations, written down once more and as simply as can be,
/// so that the whole way from the button to the store can be compared with it. Commands return
/// whether they are granted.
class ControllerModel
{
public:
    /// The passwords that are used anywhere in the sequences; others are not recognised.
    static const QVector<QByteArray> passwords;
    static const QByteArray superPassword;

    /// What @p state holds. Nobody has presented a password yet.
    static ControllerModel of(const ControllerState &state);

    bool activate(const QByteArray &identifier);
    bool remove(const QByteArray &identifier);
    bool create(const QByteArray &identifier);
    bool clone(const QByteArray &identifier, const QByteArray &source);
    /// Adds @p imported or puts it in place of the one of that identifier.
    bool import(StoredModel imported);

    /// @name On the active configuration
    /// @{
    bool setOwner(const QByteArray &text);
    bool setDescription(const QByteArray &text);
    bool setPassword(const std::optional<QByteArray> &password);
    void present(const QByteArray &password);
    void presentSuper(const QByteArray &password);
    bool isChangeable() const { return isChangeable(*find(active)); }
    /// @}

    /// Null if there is none of that identifier.
    const StoredModel *find(const QByteArray &identifier) const;
    StoredModel *find(const QByteArray &identifier);
    double freeFraction() const;

    /// One line for each slot, and one for the active configuration.
    QStringList lines() const;

    QVector<StoredModel> stored;
    QByteArray active;
    qint64 capacity = 0; ///< bytes

private:
    bool isChangeable(const StoredModel &configuration) const;
    bool addAndActivate(const StoredModel &configuration);
    bool hasRoomFor(const StoredModel &configuration) const;
    qint64 used() const;

    bool m_isPresented = false; // the right password for the active configuration
};

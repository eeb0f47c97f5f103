#pragma once

#include <QString>
#include <QStringList>

#include <optional>

class FullBackup;
class IOManager;

/// One restore of a backup onto the controller, step by step; made for a single run.
///
/// The public operation behind it is FullBackup::restoreToController(), which tells what it
/// promises.
class RestoreProcedure
{
public:
    /// Nothing is owned. The two lists may be null.
    RestoreProcedure(FullBackup *backup, IOManager *channel, QStringList *failedSlaves,
                     QStringList *reconnectedSlaves);

    /// Returns false at the first step that fails. May throw the connection error.
    bool run(bool restoreNetwork);

private:
    bool setNetwork(bool withAddress);
    bool readExistingConfigurations();
    bool uploadConfigurations();
    bool importConfigurations();
    void activateConfiguration();
    bool removeForeignSlaves();
    bool reattachSlaves();

    bool importConfiguration(const QString &identifier);
    bool deleteConfiguration(const QString &identifier);
    bool addSlave(const QString &slave);
    void checkSlave(const QString &slave);
    std::optional<QString> sendSlaveCommand(const char *command, const QString &slave);

    FullBackup *m_backup;
    IOManager *m_channel;
    QStringList *m_failedSlaves;
    QStringList *m_reconnectedSlaves;

    QStringList m_existingConfigurations;
    QStringList m_importItems;
    QStringList m_connectedSlaves;
};

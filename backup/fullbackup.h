#pragma once

#include "channel/controller.h"
#include "hostapi/version.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

class QIODevice;
class QXmlStreamReader;
class QXmlStreamWriter;
struct BackendVersions;
struct DocumentProblem;

/// Everything that brings a tracking controller back to a known state: who it is, its network
/// settings, its cascade and all its configurations.
///
/// It is filled from a controller or from a backup document, and goes into a document or back onto
/// a controller. Each backup or restore makes one of its own. Everything runs in the caller's
/// thread; what talks to the controller blocks until it is done.
///
/// Failures are results, with one exception: whoever asks whether the controller is embedded may be
/// thrown a std::runtime_error saying "connection error". It must be caught before it reaches an
/// event loop.
class FullBackup
{
public:
    /// @p channel and @p versions are not owned and must outlive the backup.
    FullBackup(IOManager *channel, BackendVersions *versions);
    /// The same for whoever may be destroyed within a command.
    FullBackup(Controller controller, BackendVersions *versions);
    virtual ~FullBackup() = default;
    Q_DISABLE_COPY(FullBackup)

    /// @name The document
    /// XML 1.0 in UTF-8, with the root element "ZOR". Nothing here throws.
    /// @{

    /// Reads the document at @p path.
    ///
    /// Values that the document does not carry stay as they were, but for the slaves. A file that
    /// is no such document at all may be read "successfully", with nothing in it;
    /// BackupSchema::validate() tells. After a failure the record is partly filled and of no use.
    /// @param path     the file
    /// @param problem  if given, receives why a document was refused; it is left alone where there
    ///                 is no document to speak of
    /// @return false if the file cannot be opened, has something other than a backup inside its
    /// root element, breaks off there, or costs more than any backup would to be read
    bool readFromFile(const QString &path, DocumentProblem *problem = nullptr);

    /// Writes the document to @p path, replacing what is there.
    ///
    /// It is replaced in one step: a process that is killed meanwhile leaves what was there before,
    /// and a file beside it whose name has six more letters. Where that cannot be done, for want of
    /// room or in a closed folder, the document is written in place. Only when that fails as well
    /// nothing is left under that name.
    /// @return false if the file cannot be opened, if a text has a character that XML cannot carry,
    /// in both cases leaving everything as it was; or if writing failed
    bool writeToFile(const QString &path) const;

    /// @}
    /// @name Collecting a backup from the controller
    /// @{

    /// Fills the record from the controller. May throw the connection error.
    /// @return 1, or 0 if a step failed, which leaves the record partly filled
    int collectFromController();

    /// Tells whether the controller's network settings can be read and set. Throws the connection
    /// error if the controller does not answer.
    bool isControllerEmbedded();

    /// Reads the slaves that are connected to the controller now.
    /// @return false if a query failed; @p list holds what was read so far
    bool readConnectedSlaves(QStringList *list);

    /// Downloads all configurations into configData.
    /// @return 0; -1 if the download cannot be started; -22 if it broke off, configData being empty
    int downloadConfigData();

    /// Ends a download that was left open.
    /// @return true if the controller accepted that
    bool cancelDownload() { return m_controller.cancelDownload(); }

    /// @}
    /// @name Restoring the controller
    /// There is no way back: what a failed restore has already deleted or set stays so.
    /// @{

    /// Tells whether this backup may be restored onto the connected controller: the same model, and
    /// no version older than the backup's. May throw the connection error.
    /// @param embedded  if given, receives isControllerEmbedded()
    bool isCompatibleWithController(bool *embedded = nullptr);

    /// Writes the record onto the controller and announces that its configurations have changed.
    /// Configurations that are not in the backup stay. May throw the connection error.
    /// @param restoreNetwork     restore host name and address too, if the controller is embedded
    /// @param failedSlaves       if given, the slaves that could not be reconnected are appended;
    ///                           each of them is reported to the host as well
    /// @param reconnectedSlaves  if given, the slaves that are connected now are appended
    /// @return false if a step failed; the controller is left as far as it got. A slave that is not
    /// reconnected is no failure
    bool restoreToController(bool restoreNetwork, QStringList *failedSlaves = nullptr,
                             QStringList *reconnectedSlaves = nullptr);

    /// Uploads configData. A failure does not show here, but in the import items missing later.
    /// @return 0
    int uploadConfigData();

    /// Reads which configurations of the last upload the controller offers to import, the base item
    /// first and only where the controller can import it.
    /// @return false if the controller does not offer any configurations
    bool readImportItems(QStringList *list);

    /// Ends an upload that was left open.
    /// @return true if the controller accepted that
    bool cancelUpload() { return m_controller.cancelUpload(); }

    /// @}

private:
    Controller m_controller;
    BackendVersions *m_versions;

public:
    /// @name The record
    /// Texts are as the controller answered them, decoded as UTF-8.
    /// @{
    QString name;          ///< host name
    QString serial;        ///< serial number
    Version ptVersion;     ///< of the tracking software
    Version ctVersion;     ///< of the firmware
    QString systemModel;   ///< model designation
    QStringList slaves;    ///< of the cascade, in order
    QString net;           ///< network setting, in the controller's own words
    QString domain;        ///< network domain; "none" if the controller is not embedded
    QString nameServer;    ///< DNS server; "none" if the controller is not embedded
    QString ntpServer;     ///< time server; "none" if the controller is not embedded
    QString activeConfig;  ///< identifier of the active configuration
    QByteArray configData; ///< all configurations, in the controller's own format
    /// @}

private:
    bool isRepresentableInXml() const;
    bool replaceFile(const QString &path) const;
    bool writeInPlace(const QString &path) const;
    bool writeDocument(QIODevice *device) const;
    bool write_ZORControllerInfo_toFile(QXmlStreamWriter &xml) const;
    static bool write_ZORBackupInfo_toFile(QXmlStreamWriter &xml);
    bool write_ZORBackupData_toFile(QXmlStreamWriter &xml) const;

    bool read_ZOR_fromFile(QXmlStreamReader &xml);
    bool read_ZORFileInfo_fromFile(QXmlStreamReader &xml);
    bool read_ZORControllerInfo_fromFile(QXmlStreamReader &xml);
    bool read_ZORBackupInfo_fromFile(QXmlStreamReader &xml);
    bool read_ZORBackupData_fromFile(QXmlStreamReader &xml);
    bool read_ZORXQUSlaves_fromFile(QXmlStreamReader &xml);

    using Query = bool (Controller::*)(ReplyBuffer *) const;

    bool readIdentity();
    bool readNetworkSettings();
    bool prepareDownload();
    bool ask(Query query, QString *text);

    bool setNetwork(bool withAddress);
    bool readConfigurations(QStringList *list);
    bool importItems(const QStringList &items, const QStringList &existing);
    bool removeForeignSlaves(const QStringList &connected);
    bool addSlave(const QString &slave);
    bool isSlaveBack(const QString &slave);
};

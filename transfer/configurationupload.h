#pragma once

#include <QByteArray>

class IOManager;
class QFile;
class QString;

/// Sends a configuration file to the controller, which finds out for itself what the file holds.
///
/// The file travels in numbered chunks of TransferEncoding::chunkSize bytes. They are read one at a
/// time, so memory does not grow with the file. Whether the controller took them shows only
/// afterwards, in what it offers for import: a refused chunk does not end the upload. What an
/// upload that broke off has left on the controller is discarded by "system upload cancel", which
/// is due before each upload.
class ConfigurationUpload
{
public:
    static constexpr int success = 0;     ///< every byte was sent
    static constexpr int failure = -1;    ///< the file is empty, or broke off while it was read
    static constexpr int unreadable = -2; ///< nothing was sent

    /// @p channel is not owned.
    explicit ConfigurationUpload(IOManager *channel);

    /// Sends the whole file at @p path. What went wrong is reported to the host, except that
    /// nothing is said of an empty file.
    ///
    /// Only regular files are readable, and only up to as many chunks as can be numbered (some
    /// 200 GB).
    /// @return success, failure or unreadable
    int run(const QString &path);

private:
    bool sendChunk(QFile *file, int count, int number);

    IOManager *m_channel;
    QByteArray m_text; ///< of the chunk being sent
};

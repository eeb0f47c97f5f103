#pragma once

#include <QString>

class IOManager;
class QByteArray;

/// Fetches what the controller has prepared for download, chunk by chunk, straight into a file.
///
/// The file holds the decoded chunks in order and nothing else. Each chunk is on its way to the
/// disk before the next is asked for, so memory does not grow with the file. What was written
/// before a failure stays.
class ConfigurationDownload
{
public:
    static constexpr int success = 0;     ///< the file is complete
    static constexpr int failure = -1;    ///< the file may hold a part
    static constexpr int fileExists = -2; ///< nothing was touched

    /// @p channel is not owned and must outlive the download.
    explicit ConfigurationDownload(IOManager *channel);

    /// Downloads into @p fileName, which must not exist yet; the name reaches the disk as Latin-1.
    /// Most failures are reported to the host as well, in the words that name them.
    /// @return success, failure or fileExists
    int run(const QString &fileName);

private:
    bool fetchChunk(int number, QByteArray *bytes);
    bool writeChunk(int number, const QByteArray &bytes, const QString &fileName);

    IOManager *m_channel;
    int m_total = 0; ///< how many chunks there are; 0 until the controller has told it
};

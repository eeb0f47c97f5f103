#pragma once

#include "backup/fullbackup.h"
#include "tool/refusal.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

struct DocumentProblem;

/// A backup document on the disk, judged and read as a restore does before it asks the controller
/// anything. Takes as much memory as the file is large, several times; may be used in any thread.
class BackupFile
{
public:
    /// Reads the file at @p path, which may be anything.
    explicit BackupFile(QString path);

    /// As it was given.
    const QString &path() const { return m_path; }

    /// Why a restore would refuse the file; nothing if it would not.
    const std::optional<Refusal> &refusal() const { return m_refusal; }

    /// What a restore would accept and somebody should know all the same.
    QStringList warnings() const;

    /// What the document holds; of use only where it is not refused.
    const FullBackup &record() const { return m_record; }

    /// When the document was written, as it says itself. A restore takes no notice of it.
    const QString &creationDate() const { return m_creationDate; }

private:
    std::optional<Refusal> open();
    std::optional<Refusal> validate() const;
    std::optional<Refusal> read();
    Refusal refusalBySchema(const DocumentProblem &problem) const;

    QString m_path;
    QByteArray m_document;  ///< as the guard admits it
    QByteArray m_beginning; ///< as it is on the disk
    FullBackup m_record;
    QString m_creationDate;
    std::optional<Refusal> m_refusal;
};

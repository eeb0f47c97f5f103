// Writing, reading and validating backup documents, beside plain copies, the toolkit's validator as
// it comes, and xmllint.

#include "backup/backupschema.h"
#include "backup/fullbackup.h"
#include "bench/childprocess.h"
#include "bench/operations.h"
#include "bench/sampledata.h"
#include "bench/turns.h"

#include <QFile>
#include <QUrl>
#include <QXmlSchema>
#include <QXmlSchemaValidator>

#include <memory>

namespace {

const QString written = QStringLiteral("written.xml");

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    Operations::require(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

// A document with so many bytes of configuration data. It stays, so that it is made only once.
QString documentOf(int size)
{
    QString path = QStringLiteral("document-%1.xml").arg(size);
    if (!QFile::exists(path)) {
        FullBackup backup(nullptr, nullptr);
        SampleData::fill(&backup, size);
        Operations::require(backup.writeToFile(path));
    }
    return path;
}

Operations::Operation write(int size)
{
    const auto backup = std::make_shared<FullBackup>(nullptr, nullptr);
    SampleData::fill(backup.get(), size);
    return Operations::timed([backup] { Operations::require(backup->writeToFile(written)); });
}

// The bytes of the same document, to another file.
Operations::Operation writeBarely(int size)
{
    return Operations::timed([document = contentOf(documentOf(size))] {
        Operations::require(writeFile(written, document));
    });
}

Operations::Operation read(int size)
{
    return Operations::timed([path = documentOf(size)] {
        FullBackup backup(nullptr, nullptr);
        Operations::require(backup.readFromFile(path));
    });
}

Operations::Operation readBarely(int size)
{
    return Operations::timed([path = documentOf(size)] { contentOf(path); });
}

Operations::Operation validate(int size)
{
    return Operations::timed([path = documentOf(size)] {
        Operations::require(BackupSchema::validate(path) == BackupSchema::Verdict::Backup);
    });
}

Operations::Operation validateWithQt(int size)
{
    return Operations::timed([document = QUrl::fromLocalFile(documentOf(size))] {
        QXmlSchema schema;
        schema.load(BackupSchema::embedded(), QUrl());
        Operations::require(QXmlSchemaValidator(schema).validate(document));
    });
}

Operations::Operation validateWithXmllint(int size)
{
    const QString schema = QStringLiteral("schema.xsd");
    Operations::require(writeFile(schema, BackupSchema::embedded()));
    const QStringList arguments{QStringLiteral("--huge"), QStringLiteral("--noout"),
                                QStringLiteral("--schema"), schema, documentOf(size)};
    return [arguments] {
        const ChildProcess::Outcome outcome =
            ChildProcess::run(QStringLiteral("xmllint"), arguments);
        Operations::require(outcome.isSuccess);
        return outcome.cpuTime;
    };
}

const bool areAdded = [] {
    using Operations::add;
    const std::vector<int> sizes{4 * SampleData::mebibyte};
    return add("write", write) && add("write-copy", writeBarely) && add("read", read)
        && add("read-copy", readBarely) && add("validate", validate)
        && add("validate-qt", validateWithQt) && add("validate-xmllint", validateWithXmllint)
        && takeTurns({"write", "write-copy"}, sizes, 3)
        && takeTurns({"read", "read-copy"}, sizes, 3)
        && takeTurns({"validate", "validate-qt", "validate-xmllint"}, sizes, 2);
}();

} // namespace

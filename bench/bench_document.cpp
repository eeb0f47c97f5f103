// Writing, reading and validating backup documents, beside plain copies, the toolkit's validator as
// it comes, and xmllint.

#include "backup/backupschema.h"
#include "backup/fullbackup.h"
#include "bench/childprocess.h"
#include "bench/sampledata.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <QXmlSchema>
#include <QXmlSchemaValidator>

namespace {

constexpr int mebibyte = 1024 * 1024;

int sizeOf(const benchmark::State &state)
{
    return static_cast<int>(state.range(0)) * mebibyte;
}

QString filePath(const char *name)
{
    static const QTemporaryDir folder;
    return folder.filePath(QString::fromLatin1(name));
}

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A document with as many MiB of configuration data as is asked for.
QString documentOf(const benchmark::State &state)
{
    const QString path = filePath("document.xml");
    FullBackup backup(nullptr, nullptr);
    SampleData::fill(&backup, sizeOf(state));
    return backup.writeToFile(path) ? path : QString();
}

void expect(benchmark::State &state, bool isRight)
{
    if (!isRight) {
        state.SkipWithError("the outcome is not as expected");
    }
}

void write(benchmark::State &state)
{
    FullBackup backup(nullptr, nullptr);
    SampleData::fill(&backup, sizeOf(state));
    for (auto _ : state) {
        expect(state, backup.writeToFile(filePath("written.xml")));
    }
}

// The bytes of the same document, to another file.
void writeBarely(benchmark::State &state)
{
    const QByteArray document = contentOf(documentOf(state));
    for (auto _ : state) {
        expect(state, writeFile(filePath("written.xml"), document));
    }
}

void read(benchmark::State &state)
{
    const QString path = documentOf(state);
    for (auto _ : state) {
        FullBackup backup(nullptr, nullptr);
        expect(state, backup.readFromFile(path));
        benchmark::DoNotOptimize(backup.configData);
    }
}

void readBarely(benchmark::State &state)
{
    const QString path = documentOf(state);
    for (auto _ : state) {
        benchmark::DoNotOptimize(contentOf(path));
    }
}

void validate(benchmark::State &state)
{
    const QString path = documentOf(state);
    for (auto _ : state) {
        expect(state, BackupSchema::validate(path) == BackupSchema::Verdict::Backup);
    }
}

void validatePlainly(benchmark::State &state)
{
    const QUrl document = QUrl::fromLocalFile(documentOf(state));
    for (auto _ : state) {
        QXmlSchema schema;
        schema.load(BackupSchema::embedded(), QUrl());
        expect(state, QXmlSchemaValidator(schema).validate(document));
    }
}

void validateWithXmllint(benchmark::State &state)
{
    const QString document = documentOf(state);
    const QString schema = filePath("schema.xsd");
    expect(state, writeFile(schema, BackupSchema::embedded()));
    for (auto _ : state) {
        const ChildProcess::Outcome outcome =
            ChildProcess::run(QStringLiteral("xmllint"),
                              {QStringLiteral("--huge"), QStringLiteral("--noout"),
                               QStringLiteral("--schema"), schema, document});
        expect(state, outcome.isSuccess);
        state.SetIterationTime(outcome.cpuTime);
    }
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(1)->Arg(16)->Arg(64)->Iterations(1)->Unit(benchmark::kMillisecond);
}

BENCHMARK(write)->Name("write/ours")->Apply(sizes);
BENCHMARK(writeBarely)->Name("write/copy")->Apply(sizes);
BENCHMARK(read)->Name("read/ours")->Apply(sizes);
BENCHMARK(readBarely)->Name("read/copy")->Apply(sizes);
BENCHMARK(validate)->Name("validate/ours")->Apply(sizes);
BENCHMARK(validatePlainly)->Name("validate/plain")->Apply(sizes);
BENCHMARK(validateWithXmllint)->Name("validate/xmllint")->Apply(sizes)->UseManualTime();

} // namespace

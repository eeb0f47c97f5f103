// Loading the plug-in, beside an empty one. Each time in a process of its own: the plug-in stays
// where it has been loaded.

#include "bench/childprocess.h"

#include <benchmark/benchmark.h>

#include <QFileInfo>
#include <QRegularExpression>

namespace {

int relocations(const QString &path)
{
    const ChildProcess::Outcome outcome =
        ChildProcess::run(QStringLiteral("readelf"), {QStringLiteral("-rW"), path});
    static const QRegularExpression relocation(QStringLiteral("^[0-9a-f]{8}"),
                                               QRegularExpression::MultilineOption);
    return QString::fromLatin1(outcome.output).count(relocation);
}

void load(benchmark::State &state, const char *path)
{
    state.counters["bytes"] = static_cast<double>(QFileInfo(QString::fromLocal8Bit(path)).size());
    state.counters["relocations"] = relocations(QString::fromLocal8Bit(path));
    for (auto _ : state) {
        const ChildProcess::Outcome outcome = ChildProcess::runProbe(
            QStringLiteral("veltra4-loadprobe"), {QString::fromLocal8Bit(path)});
        if (!outcome.isSuccess) {
            state.SkipWithError("the probe failed");
        }
        state.SetIterationTime(outcome.output.trimmed().toDouble() / 1e9);
    }
}

void often(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Iterations(1)->UseManualTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(load, ours, VELTRA4_PLUGIN_PATH)->Name("load/ours")->Apply(often);
BENCHMARK_CAPTURE(load, empty, VELTRA4_EMPTY_PLUGIN_PATH)->Name("load/empty")->Apply(often);

} // namespace

// How far memory grows. Each measurement is a process of its own: a peak cannot be taken back.

#include "bench/childprocess.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

namespace {

void measure(benchmark::State &state, const char *what)
{
    const QTemporaryDir folder;
    const auto run = [&](const char *operation) {
        return ChildProcess::runProbe(QStringLiteral("veltra4-memoryprobe"),
                                      {QString::fromLatin1(operation),
                                       QString::number(state.range(0)),
                                       folder.filePath(QStringLiteral("file"))});
    };
    if (qstrcmp(what, "read") == 0) {
        run("write");
    }
    for (auto _ : state) {
        const ChildProcess::Outcome outcome = run(what);
        if (!outcome.isSuccess) {
            state.SkipWithError("the probe failed");
        }
        state.SetIterationTime(outcome.cpuTime);
        state.counters["peak"] = outcome.output.trimmed().toDouble();
    }
    state.counters["data"] = static_cast<double>(state.range(0)) * 1024 * 1024;
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(1)->Arg(16)->Arg(64)->Iterations(1)->UseManualTime()->Unit(
        benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(measure, write, "write")->Name("memory/write")->Apply(sizes);
BENCHMARK_CAPTURE(measure, read, "read")->Name("memory/read")->Apply(sizes);
BENCHMARK_CAPTURE(measure, save, "save")->Name("memory/save")->Apply(sizes);

} // namespace

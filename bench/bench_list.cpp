// Refreshing the list, beside the bare loop of its commands.

#include "bench/bareloops.h"
#include "bench/freechannel.h"
#include "bench/sampledata.h"
#include "dialogs/changeconfigurationdlg.h"

#include <benchmark/benchmark.h>

namespace {

void refresh(benchmark::State &state)
{
    FreeChannel channel;
    channel.setConfigurations(static_cast<int>(state.range(0)));
    BackendVersions versions = SampleData::versions();
    ChangeConfigurationDlg list(&channel, &versions, nullptr);
    for (auto _ : state) {
        // It opens nothing as long as it shows its first text, but the list is read anew.
        QMetaObject::invokeMethod(&list, "on_pushButton_lock_clicked");
    }
}

void refreshBarely(benchmark::State &state)
{
    FreeChannel channel;
    channel.setConfigurations(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        BareLoops::refresh(&channel);
    }
}

BENCHMARK(refresh)
    ->Name("refresh/ours")
    ->RangeMultiplier(10)
    ->Range(10, 10000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(refreshBarely)
    ->Name("refresh/bare")
    ->RangeMultiplier(10)
    ->Range(10, 10000)
    ->Unit(benchmark::kMicrosecond);

} // namespace

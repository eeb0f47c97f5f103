// Loading the plug-in, beside an empty one. Each time in a process of its own: the plug-in stays
// where it has been loaded.

#include "bench/childprocess.h"
#include "bench/operations.h"
#include "bench/turns.h"

namespace {

Operations::Operation load(const char *path)
{
    return [arguments = QStringList(QString::fromLocal8Bit(path))] {
        const ChildProcess::Outcome outcome =
            ChildProcess::runProbe(QStringLiteral("veltra4-loadprobe"), arguments);
        Operations::require(outcome.isSuccess);
        return outcome.output.trimmed().toDouble() / 1e9;
    };
}

const bool areAdded = [] {
    using Operations::add;
    return add("load", [](int /*size*/) { return load(VELTRA4_PLUGIN_PATH); })
        && add("load-empty", [](int /*size*/) { return load(VELTRA4_EMPTY_PLUGIN_PATH); })
        && takeTurns({"load", "load-empty"}, {1}, 15);
}();

} // namespace

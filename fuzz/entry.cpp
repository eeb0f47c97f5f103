// Where the fuzzer enters a target.

#include "fuzz/target.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QLoggingCategory>

#include <cstddef>
#include <cstdint>

// NOLINTNEXTLINE(readability-non-const-parameter): the application keeps a reference to it
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static const QCoreApplication application(*argc, *argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    return 0;
}

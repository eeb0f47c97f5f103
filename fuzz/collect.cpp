// A whole collection of a backup from, and its restoration onto, a controller that answers whatever
// it likes: line by line what the input says.

#include "backup/fullbackup.h"

#include "channel/answeredcount.h"
#include "fuzz/answeringchannel.h"
#include "fuzz/target.h"
#include "hostapi/backendversions.h"

#include <stdexcept>

namespace {

// More than any sequence of answers can justify.
int mostCommands(const QByteArray &input)
{
    constexpr int asideFromAnswers = 4 * maxAnsweredCount;
    return asideFromAnswers + 10 * (input.count('\n') + 1);
}

int collected(FullBackup &backup)
{
    try {
        return backup.collectFromController();
    } catch (const std::runtime_error &error) {
        Fuzz::demand(qstrcmp(error.what(), "connection error") == 0,
                     "nothing but the connection error is thrown");
        return 0;
    }
}

void restore(FullBackup &backup)
{
    QStringList failed;
    QStringList reconnected;
    try {
        const bool isRestored = backup.restoreToController(true, &failed, &reconnected);
        Fuzz::demand(!isRestored || failed.size() + reconnected.size() == backup.slaves.size(),
                     "each slave is reconnected or is not");
    } catch (const std::runtime_error &error) {
        Fuzz::demand(qstrcmp(error.what(), "connection error") == 0,
                     "nothing but the connection error is thrown");
    }
}

} // namespace

void fuzz(const QByteArray &input)
{
    BackendVersions versions{{4, 2, 1}, {1, 27, 0}, {3, 5, -1}, QStringLiteral("Model 5")};
    AnsweringChannel channel(input);
    FullBackup backup(&channel, &versions);
    const int result = collected(backup);
    Fuzz::demand(result == 0 || result == 1, "a collection is done or not");
    Fuzz::demand(backup.slaves.size() <= maxAnsweredCount,
                 "an absurd number of slaves is not believed");
    Fuzz::demand(backup.configData.size() <= input.size(), "no data comes from nowhere");
    restore(backup);
    Fuzz::demand(channel.commandCount() <= mostCommands(input), "it ends");
}

#include "tests/sweep/commonrules.h"

#include "channel/transferencoding.h"
#include "tests/sweep/rehearsal.h"

#include <array>
#include <cstdio>

namespace {

constexpr int chunkBytes = 100;
constexpr int mostItems = 10000; // as with every other count

constexpr Rule listRules[] = {
    {"config free_space", "Unable to get free space of configuration store"},
    {"config number_of_configs",
     "Unable to get number of configurations",
     Then::Ends,
     {QMessageBox::Critical, "Command Error", "no contact to Controller"}},
    {"config active_config", "Unable to change the configuration"},
    {"config config t%02d", "Unable to get configuration information"},
    {"config owner_of_config %s", "Unable to get the owner of configuration"},
    {"config desc_of_config %s", "Unable to get description of configuration"},
    {"config config_has_password %s", "Unable to get whether configuration has pasword"},
};

// What one chunk says: how many there are, and the text between the quotes.
bool readChunk(const QByteArray &answer, int *total, QByteArray *quoted)
{
    constexpr int bothFields = 2;
    std::array<char, 512> text{};
    // The scan format by which the answer is defined; the texts of a sweep are no wild ones.
    // NOLINTNEXTLINE(cert-err34-c)
    const int fields = std::sscanf(answer.constData(), " %d '%511[^']' ", total, text.data());
    *quoted = text.data();
    return fields == bothFields;
}

} // namespace

bool rehearseRefresh(Rehearsal &rehearsal)
{
    rehearsal.follow(listRules);
    rehearsal.askNumber("config free_space");
    int count = 0;
    if (!rehearsal.askCount("config number_of_configs", &count)) {
        return false;
    }
    rehearsal.ask("config active_config");
    QByteArray identifier; // after a failed query that of the slot before
    for (int slot = 1; slot <= count; ++slot) {
        rehearsal.ask(numbered("config config t", slot), &identifier);
        rehearsal.ask("config owner_of_config " + identifier);
        rehearsal.ask("config desc_of_config " + identifier);
        rehearsal.ask("config config_has_password " + identifier);
    }
    return true;
}

void rehearseChange(Rehearsal &rehearsal)
{
    rehearsal.announce();
    rehearseRefresh(rehearsal);
}

bool rehearseDownload(Rehearsal &rehearsal, QByteArray *data, bool isReported)
{
    const auto reject = [&rehearsal, isReported](const QString &report) {
        if (isReported) {
            rehearsal.report(report);
        }
        return false;
    };
    int total = 0;
    int number = 0;
    do {
        ++number;
        int all = 0;
        QByteArray answer;
        QByteArray quoted;
        if (!rehearsal.ask("system download " + QByteArray::number(number), &answer)) {
            return false;
        }
        if (!readChunk(answer, &all, &quoted)) {
            return reject("invalid return: " + QString::fromLatin1(answer));
        }
        total = total == 0 ? all : total; // as the first one says
        QByteArray whole = *data;
        if (TransferEncoding::decode(quoted, &whole) < 0) {
            return reject("unable to parse '" + QString::fromLatin1(quoted) + '\'');
        }
        *data = whole;
    } while (number < total);
    return true;
}

void rehearseUpload(Rehearsal &rehearsal, const QByteArray &data)
{
    const int total = (data.size() + chunkBytes - 1) / chunkBytes;
    for (int number = 1; number <= total; ++number) {
        const QByteArray text =
            TransferEncoding::encode(data.mid((number - 1) * chunkBytes, chunkBytes));
        if (!rehearsal.send("system upload " + QByteArray::number(total) + ' '
                            + QByteArray::number(number) + ' ' + text)) {
            return;
        }
    }
}

Offer rehearseOffer(Rehearsal &rehearsal, QByteArrayList *identifiers)
{
    QByteArray answer;
    if (!rehearsal.ask("system import available", &answer)) {
        return Offer::None;
    }
    const QList<QByteArray> words = answer.split(' ');
    const int count = words.value(0).toInt();
    if (words.value(1) != "config" || count > mostItems) {
        return Offer::Unknown;
    }
    for (int i = 1; i <= count; ++i) {
        // Where it fails, the last answer stands for this one.
        rehearsal.ask(numbered("system import item i", i), &answer);
        const int end = answer.indexOf(" '");
        *identifiers << (end < 0 ? answer : answer.left(end));
    }
    return Offer::Items;
}

#include "tests/sweep/listrules.h"

#include "tests/sweep/rehearsal.h"

namespace {

constexpr Rule rules[] = {
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

} // namespace

bool rehearseRefresh(Rehearsal &rehearsal)
{
    rehearsal.follow(rules);
    rehearsal.askNumber("config free_space");
    int count = 0;
    if (!rehearsal.askCount("config number_of_configs", &count)) {
        return false;
    }
    rehearsal.ask("config active_config");
    QByteArray identifier; // after a failed query that of the slot before
    for (int slot = 1; slot <= count; ++slot) {
        rehearsal.ask("config config t" + QByteArray::number(slot).rightJustified(2, '0'),
                      &identifier);
        rehearsal.ask("config owner_of_config " + identifier);
        rehearsal.ask("config desc_of_config " + identifier);
        rehearsal.ask("config config_has_password " + identifier);
    }
    return true;
}

#pragma once

#include "channel/transferencoding.h"
#include "hostapi/backendversions.h"
#include "tests/support/faultyrun.h"
#include "tests/support/scriptedchannel.h"

/// What the tests of the manual and the automatic backup have in common: a controller that can be
/// backed up, and the rules by which a backup is collected from it.
namespace BackupTesting {

/// Versions of a controller that has to be asked whether it is embedded.
inline BackendVersions askedVersions()
{
    BackendVersions versions;
    versions.ptVersion = {4, 2, 0};
    versions.interfaceVersion = {1, 27, 0};
    versions.ctVersion = {2, 0, 1};
    versions.systemModel = "Model 5";
    return versions;
}

/// Lets @p channel answer everything: the controller "lab" with one slave and one configuration,
/// whose data is "one two".
inline void scriptController(ScriptedChannel *channel)
{
    channel->answer("status active", "none");
    channel->answer("system hostname", "lab");
    channel->answer("system controller_serial", "1234");
    channel->answer("system model", "2");
    channel->answer("system model_description", "\"Model 5\"");
    channel->answer("cascade number_of_connected_slaves", "1");
    channel->answer("cascade connected_slave d01", "slave1");
    channel->answer("system net", "192.168.0.1/24");
    channel->answer("system controller_embedded", "yes");
    channel->answer("system domainname", "example.org");
    channel->answer("system nameserver", "192.168.0.2");
    channel->answer("system ntp_server", "192.168.0.3");
    channel->answer("config active_config", "id1");
    channel->answer("config number_of_configs", "1");
    channel->answer("config config t01", "id1");
    channel->answer("system download 1", "2 '" + TransferEncoding::encode("one ") + '\'');
    channel->answer("system download 2", "2 '" + TransferEncoding::encode("two") + '\'');
}

/// What the rules say about a backup of that controller.
struct FaultyBackup : FaultyRun
{
    using FaultyRun::FaultyRun;

    bool collects()
    {
        for (const char *query :
             {"queryString system hostname", "queryString system controller_serial",
              "queryInt cascade number_of_connected_slaves",
              "queryString cascade connected_slave d01", "queryString system net"}) {
            if (!succeeds(query)) {
                return false;
            }
        }
        trace << "setTimeout 0 3000 1";
        for (const char *query :
             {"queryBool system controller_embedded", "queryString system domainname",
              "queryString system nameserver", "queryString system ntp_server",
              "queryString config active_config", "sendCommand system download cancel",
              "queryInt config number_of_configs"}) {
            if (!succeeds(query)) {
                return false;
            }
        }
        trace << "setTimeout 0 7000 1";
        if (!succeeds("sendCommand system download prepare 'config' '__base'")) {
            succeeds("sendCommand system download cancel");
            return false;
        }
        if (succeeds("queryString config config t01")) {
            trace << "setTimeout 0 7000 1";
            succeeds("sendCommand system download prepare 'config' 'id1'");
        }
        return succeeds("queryString system download 1")
            && succeeds("queryString system download 2");
    }
};

} // namespace BackupTesting

#pragma once

#include "channel/transferencoding.h"
#include "hostapi/backendversions.h"
#include "tests/transfer/transferstage.h"

/// What the manual and the automatic backup are tested with: a controller that answers everything
/// and has to be asked whether it is embedded. It is called "lab" and has one slave and one
/// configuration, whose data is "one two".
struct BackupStage : TransferStage
{
    BackupStage()
    {
        versions.ptVersion = {4, 2, 0};
        versions.interfaceVersion = {1, 27, 0};
        versions.ctVersion = {2, 0, 1};
        versions.systemModel = "Model 5";
        channel.answer("status active", "none");
        channel.answer("system hostname", "lab");
        channel.answer("system controller_serial", "1234");
        channel.answer("system model", "2");
        channel.answer("system model_description", "\"Model 5\"");
        channel.answer("cascade number_of_connected_slaves", "1");
        channel.answer("cascade connected_slave d01", "slave1");
        channel.answer("system net", "192.168.0.1/24");
        channel.answer("system controller_embedded", "yes");
        channel.answer("system domainname", "example.org");
        channel.answer("system nameserver", "192.168.0.2");
        channel.answer("system ntp_server", "192.168.0.3");
        channel.answer("config active_config", "id1");
        channel.answer("config number_of_configs", "1");
        channel.answer("config config t01", "id1");
        channel.answer("system download 1", "2 '" + TransferEncoding::encode("one ") + '\'');
        channel.answer("system download 2", "2 '" + TransferEncoding::encode("two") + '\'');
    }

    /// What passes the channel while all of it is collected.
    static QStringList collection()
    {
        return {"queryString system hostname",
                "queryString system controller_serial",
                "queryInt cascade number_of_connected_slaves",
                "queryString cascade connected_slave d01",
                "queryString system net",
                "setTimeout 0 3000 1",
                "queryBool system controller_embedded",
                "queryString system domainname",
                "queryString system nameserver",
                "queryString system ntp_server",
                "queryString config active_config",
                "sendCommand system download cancel",
                "queryInt config number_of_configs",
                "setTimeout 0 7000 1",
                "sendCommand system download prepare 'config' '__base'",
                "queryString config config t01",
                "setTimeout 0 7000 1",
                "sendCommand system download prepare 'config' 'id1'",
                "queryString system download 1",
                "queryString system download 2"};
    }

    BackendVersions versions;
};

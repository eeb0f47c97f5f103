<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en">
<context>
    <name>ChangeConfigurationDlg</name>
    <message>
        <source>Command Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no contact to Controller</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;b&gt;&lt;font color=red&gt;configuration store filled %1%; please delete unnecessary configurations!&lt;/font&gt;&lt;/b&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You are about to delete the configuration &apos;%1&apos; owned by &apos;%2&apos;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unl&amp;ock</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>L&amp;ock</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConfigLoadDlg</name>
    <message>
        <source>Cannot load backup</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot load backup from file &apos;%1&apos; !
 One or more Configurations are locked.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error reading backup file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot read &apos;%1&apos; !</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Confirmation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Restoring this backup overwrites all settings and already existing configurations.

Any previous settings will get lost!

Proceed?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid backup file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to restore from backup (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hostname and ip settings can be restored. After reboot the %1 might not be reachable via network due to wrong network settings.

Restore?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error while restoring from backup (%1).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Success</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Backup restored!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Success (incomplete cascade)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Backup restored!

Not all machines of the configured
cascade could be reconnected. Please, see
the Events window for more details.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load Configurations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Configuration file (*.dat *.xml *.*)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Development error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>XMLSchema is invalid!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>locked</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No configuration is loaded.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading configuration successfully.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loading configuration unsuccessfully.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConfigLoadDlgClass</name>
    <message>
        <source>Load Configurations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The configuration file opened for loading</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>content:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>content</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Description</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Owner</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Status</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select all entries in the list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select &amp;all</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear the selection in the list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load selected configurations which are marked in the list above</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Load</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConfigSaveDlg</name>
    <message>
        <source>&lt;b&gt;&lt;font color=red&gt;No configuration available!&lt;/font&gt;&lt;/b&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save configuration(s)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Configuration file (*.dat)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot prepare configuration for download.
Export aborted.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Configuration data can not be recognized.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Configuration data written to the file %1 failed!
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Configuration data successfully written to the file
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Configurations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Backup all settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>XML files (*.xml *.*)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConfigSaveDlgClass</name>
    <message>
        <source>Save Configurations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save configurations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>select configuration(s) to save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Description</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Owner</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select all entries in the list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select &amp;all</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear the selection in the list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a&amp;ll settings and configurations (backup)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save selected configurations into one .dat file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close dialog without saving</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConfigurationDialog</name>
    <message>
        <source>Configurations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Configuration dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>active configuration:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>active configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>configurations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Available configurations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete selected configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create new configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit selected configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lock/unlock the active configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lo&amp;ck</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set selected configuration active</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>lock or unlock active configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lock or unlock the active configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loc&amp;k</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>backup and restore of configurations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save configurations into .dat file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Backup</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load configurations from .dat file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Restore</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConfigurationsModule</name>
    <message>
        <source>GUI Settings Configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;VELTRA4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Configurations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Change active configuration or add new configurations</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>EditConfigDialog</name>
    <message>
        <source>Edit Configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit selected configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit description of the configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;description</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit the description of the configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit owner of the configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;owner</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit the owner of the configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Config ID of the configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;ID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Accept changes and close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard changes and close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>EditConfigDlg</name>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Configuration description must not be empty.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LockConfigDlg</name>
    <message>
        <source>set password for configuration %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Password must not be empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The entered passwords do not match.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LockConfigurationDialog</name>
    <message>
        <source>Lock configuration dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lock Configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>set passwort for configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input the description of the configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>new password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input a new password for the configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input the owner of the configuraton</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>new password repeat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repeat the new password of the configuraton</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create the new password and lock the configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close without creating password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>NewConfigurationDialog</name>
    <message>
        <source>New Configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create new configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input the description of the configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>de&amp;scription</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input the owner of the configuraton</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;owner</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clone current configuration or create a new one</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>clo&amp;ne current configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>create with &amp;default values</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create configuration and close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Create</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close without creating a configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>NewConfigurationDlg</name>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please enter a configuration description.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>UnlockConfigDlg</name>
    <message>
        <source>unlock configuration %1:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please enter the password for this configuration.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The super password is invalid.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The password is invalid.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>UnlockConfigurationDialog</name>
    <message>
        <source>Unlock Configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unlock configuration dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unlock configuration []:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input the password of the configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>password:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use super password to unlock the configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>super password</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unlock the configuration using the given password and close the dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close the dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>

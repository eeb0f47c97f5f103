// Names itself the configurations module, but does not speak the host's module interface.

#include <QObject>

class ContractlessModule : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.zor.Veltra2.ConfigurationsModule")
};

#include "contractlessmodule.moc"

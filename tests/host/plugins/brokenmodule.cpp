// Has the right metadata, but needs a function that no library has.

#include <QObject>

void functionThatNoLibraryHas();

class BrokenModule : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.zor.Veltra2.ConfigurationsModule")

public:
    BrokenModule() { functionThatNoLibraryHas(); }
};

#include "brokenmodule.moc"

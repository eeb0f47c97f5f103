// A Qt plug-in of another kind.

#include <QObject>

class OtherModule : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.zor.Veltra2.OtherModule")
};

#include "othermodule.moc"

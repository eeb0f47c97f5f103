#include <QObject>

/// A plug-in that does nothing, linked like the real one.
class EmptyPlugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.zor.Veltra2.EmptyPlugin")
};

#include "emptyplugin.moc"

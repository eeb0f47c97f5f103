// Does what the host allows a module to do and leaves traces of what it was given.

#include "hostapi/backendversions.h"
#include "hostapi/iomanager.h"
#include "hostapi/messagereceiver.h"
#include "hostapi/moduleinterface.h"

#include <QAction>
#include <QDialog>
#include <QPointer>
#include <QWidget>

class ProbeModule : public QObject, public ModuleInterface, public MessageReceiver
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.zor.Veltra2.ConfigurationsModule")
    Q_INTERFACES(ModuleInterface)

public:
    void hook() override { }
    QString moduleName() override { return QStringLiteral("Probe"); }
    QString moduleVersion() override { return QStringLiteral("v1.0.0"); }

    void release() override
    {
        if (m_dialog) {
            m_channel->removeMessageReceiver("Probe", this);
        }
        delete m_dialog.data();
    }

    QList<ModuleMenuEntry *> menuEntries() override
    {
        if (m_isObserver) {
            return {};
        }
        announce(QStringLiteral("model %1").arg(m_versions->systemModel));
        m_dialog = new QDialog(m_parent);
        m_dialog->setObjectName(QStringLiteral("ProbeDialog"));
        m_channel->addMessageReceiver("Probe", this);
        m_entry.action = new QAction(QStringLiteral("&Probe"), this);
        m_entry.actionPosition = 30;
        m_entry.menuTitle = QStringLiteral("&VELTRA4");
        m_entry.menuPosition = 100;
        connect(m_entry.action, &QAction::triggered, m_dialog.data(), &QDialog::exec);
        return {&m_entry};
    }

    void setProperty(QString name, QVariant value) override
    {
        if (name == QLatin1String("CommandManager")) {
            m_channel = value.value<IOManager *>();
        } else if (name == QLatin1String("ModuleParent")) {
            m_parent = value.value<QWidget *>();
        } else if (name == QLatin1String("BackendVersions")) {
            m_versions = value.value<BackendVersions *>();
        } else if (name == QLatin1String("ObserverMode")) {
            m_isObserver = value.toBool();
        }
    }

    int receiveMessage(int /*id*/, const char *source, const char *text) override
    {
        announce(QStringLiteral("message %1 %2").arg(QLatin1String(source), QLatin1String(text)));
        return 0;
    }

private:
    void announce(const QString &text)
    {
        m_channel->postMessage("standard", "Probe", 1, text.toLatin1().constData());
    }

    IOManager *m_channel = nullptr;
    QWidget *m_parent = nullptr;
    BackendVersions *m_versions = nullptr;
    bool m_isObserver = false;
    QPointer<QDialog> m_dialog;
    ModuleMenuEntry m_entry;
};

#include "probemodule.moc"

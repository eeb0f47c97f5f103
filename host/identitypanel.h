#pragma once

#include <QWidget>

class ElidedLabel;
class QFormLayout;
struct BackendVersions;
struct ControllerIdentity;

/// Shows which controller the host is connected to, what modules are told of it, and which
/// configuration is active on it. What is not known is shown as a dash.
class IdentityPanel : public QWidget
{
    Q_OBJECT

public:
    explicit IdentityPanel(QWidget *parent = nullptr);

    void showConnection(const QString &connection);
    /// What modules are told, the model among it.
    void showVersions(const BackendVersions &versions);
    void showIdentity(const ControllerIdentity &identity);

private:
    ElidedLabel *addField(QFormLayout *form, const QString &title, const QString &name);

    ElidedLabel *m_connection;
    ElidedLabel *m_hostName;
    ElidedLabel *m_serial;
    ElidedLabel *m_model;
    ElidedLabel *m_ptVersion;
    ElidedLabel *m_interfaceVersion;
    ElidedLabel *m_ctVersion;
    ElidedLabel *m_activeConfiguration;
    ElidedLabel *m_activeDescription;
};

#pragma once

#include <QWidget>

class QFormLayout;
class QLabel;
struct BackendVersions;
struct ControllerIdentity;

/// Shows which controller the host is connected to and which configuration is active on it.
class IdentityPanel : public QWidget
{
    Q_OBJECT

public:
    explicit IdentityPanel(QWidget *parent = nullptr);

    void showConnection(const QString &connection);
    void showVersions(const BackendVersions &versions);
    void showIdentity(const ControllerIdentity &identity);

private:
    QLabel *addField(QFormLayout *form, const QString &title, const QString &name);

    QLabel *m_connection;
    QLabel *m_hostName;
    QLabel *m_serial;
    QLabel *m_model;
    QLabel *m_ptVersion;
    QLabel *m_interfaceVersion;
    QLabel *m_ctVersion;
    QLabel *m_activeConfiguration;
    QLabel *m_activeDescription;
};

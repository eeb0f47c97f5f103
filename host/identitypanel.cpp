#include "host/identitypanel.h"

#include "host/controlleridentity.h"
#include "host/elidedlabel.h"
#include "host/versiontext.h"
#include "hostapi/backendversions.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QVBoxLayout>

#include <algorithm>

namespace {

void showText(ElidedLabel *label, const QString &text)
{
    label->setText(text.isEmpty() ? QStringLiteral("\u2014") : text);
}

// The values of all groups stand below one another.
void alignValues(const QWidget *panel)
{
    const QList<QFormLayout *> forms = panel->findChildren<QFormLayout *>();
    QVector<QWidget *> titles;
    int width = 0;
    for (const QFormLayout *form : forms) {
        for (int row = 0; row < form->rowCount(); ++row) {
            titles << form->itemAt(row, QFormLayout::LabelRole)->widget();
            width = std::max(width, titles.constLast()->sizeHint().width());
        }
    }
    for (QWidget *title : qAsConst(titles)) {
        title->setMinimumWidth(width);
    }
}

} // namespace

IdentityPanel::IdentityPanel(QWidget *parent)
    : QWidget(parent)
{
    auto *controller = new QGroupBox(tr("Controller"), this);
    auto *controllerForm = new QFormLayout(controller);
    m_connection = addField(controllerForm, tr("Connection"), QStringLiteral("label_connection"));
    m_hostName = addField(controllerForm, tr("Host name"), QStringLiteral("label_hostName"));
    m_serial = addField(controllerForm, tr("Serial number"), QStringLiteral("label_serial"));
    m_model = addField(controllerForm, tr("Model"), QStringLiteral("label_model"));
    m_ptVersion =
        addField(controllerForm, tr("Tracking software"), QStringLiteral("label_ptVersion"));
    m_interfaceVersion =
        addField(controllerForm, tr("Interface"), QStringLiteral("label_interfaceVersion"));
    m_ctVersion = addField(controllerForm, tr("Firmware"), QStringLiteral("label_ctVersion"));

    auto *active = new QGroupBox(tr("Active configuration"), this);
    auto *activeForm = new QFormLayout(active);
    m_activeDescription =
        addField(activeForm, tr("Description"), QStringLiteral("label_activeDescription"));
    m_activeConfiguration =
        addField(activeForm, tr("Identifier"), QStringLiteral("label_activeConfiguration"));

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(controller);
    layout->addWidget(active);
    layout->addStretch();
    alignValues(this);
}

void IdentityPanel::showConnection(const QString &connection)
{
    showText(m_connection, connection);
}

void IdentityPanel::showVersions(const BackendVersions &versions)
{
    showText(m_model, versions.systemModel);
    showText(m_ptVersion, versionText(versions.ptVersion));
    showText(m_interfaceVersion, versionText(versions.interfaceVersion));
    showText(m_ctVersion, versionText(versions.ctVersion));
}

void IdentityPanel::showIdentity(const ControllerIdentity &identity)
{
    showText(m_hostName, identity.hostName);
    showText(m_serial, identity.serial);
    showText(m_activeConfiguration, identity.activeConfiguration);
    showText(m_activeDescription, identity.activeDescription);
}

ElidedLabel *IdentityPanel::addField(QFormLayout *form, const QString &title, const QString &name)
{
    auto *value = new ElidedLabel(this);
    value->setObjectName(name);
    value->setAccessibleName(title);
    showText(value, {});
    form->addRow(title, value);
    return value;
}

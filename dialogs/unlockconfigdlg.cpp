#include "dialogs/unlockconfigdlg.h"

#include "ui_unlockconfigdlg.h"

#include "channel/accessibletexts.h"
#include "channel/hostmessages.h"
#include "channel/messagebox.h"
#include "channel/replybuffer.h"
#include "channel/survives.h"
#include "channel/validators.h"

#include <QRegExpValidator>

UnlockConfigDlg::UnlockConfigDlg(IOManager *channel, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::UnlockConfigurationDialog>())
    , m_channel(channel, this)
{
    m_ui->setupUi(this);
    AccessibleTexts::describeControls(this);
    m_ui->lineEdit_password->setValidator(Validators::forPassword(this));
}

UnlockConfigDlg::~UnlockConfigDlg() = default;

int UnlockConfigDlg::update_and_exec(QString config_id)
{
    m_configId = std::move(config_id);
    ReplyBuffer description;
    m_channel.queryString(description.data(), "config desc_of_config %s",
                          m_configId.toLatin1().constData());
    m_ui->label_configuration->setText(tr("unlock configuration %1:").arg(description.text()));
    return exec();
}

void UnlockConfigDlg::on_pushButton_ok_clicked()
{
    if (m_ui->lineEdit_password->text().isEmpty()) {
        MessageBox::warning(this, nullptr, tr("Warning"),
                            tr("Please enter the password for this configuration."));
        return;
    }
    survives(this, [this] { unlock(m_ui->checkBox_use_super_password->isChecked()); });
}

void UnlockConfigDlg::unlock(bool isSuper)
{
    presentPassword(isSuper);
    ReplyBuffer isChangeable;
    if (m_channel.queryString(isChangeable.data(), "config is_changeable") != 0) {
        HostMessages::reportError(&m_channel, QStringLiteral("configuration cannot be checked."));
        return;
    }
    if (isChangeable.text() == QLatin1String("yes")) {
        removePassword(isSuper);
    } else {
        refusePassword(isSuper);
    }
}

void UnlockConfigDlg::presentPassword(bool isSuper)
{
    const QByteArray password = m_ui->lineEdit_password->text().toLatin1();
    if (isSuper) {
        m_channel.sendCommand("config super_password '%s'", password.constData());
    } else {
        m_channel.sendCommand("config password '%s'", password.constData());
    }
}

void UnlockConfigDlg::removePassword(bool isSuper)
{
    m_channel.sendCommand("config new_password none");
    HostMessages::announceActiveConfigurationChanged(&m_channel);
    if (isSuper) {
        // Withdraws the super password; without this it would stay valid for whatever comes next.
        m_channel.sendCommand("config super_password '.'");
    }
    accept();
}

void UnlockConfigDlg::refusePassword(bool isSuper)
{
    // A refused super password is not withdrawn: it has opened nothing.
    const QString text =
        isSuper ? tr("The super password is invalid.") : tr("The password is invalid.");
    if (MessageBox::warning(this, nullptr, tr("Warning"), text) == QMessageBox::NoButton) {
        return;
    }
    m_ui->lineEdit_password->clear();
    m_ui->lineEdit_password->setFocus();
}

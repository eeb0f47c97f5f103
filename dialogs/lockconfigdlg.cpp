#include "dialogs/lockconfigdlg.h"

#include "ui_lockconfigdlg.h"

#include "channel/accessibletexts.h"
#include "channel/hostmessages.h"
#include "channel/messagebox.h"
#include "channel/replybuffer.h"
#include "channel/survives.h"
#include "channel/validators.h"

#include <QRegExpValidator>

LockConfigDlg::LockConfigDlg(IOManager *channel, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::LockConfigurationDialog>())
    , m_channel(channel, this)
{
    m_ui->setupUi(this);
    AccessibleTexts::describeControls(this);
    const QRegExpValidator *validator = Validators::forPassword(this);
    m_ui->lineEdit_new_password->setValidator(validator);
    m_ui->lineEdit_new_password_repeat->setValidator(validator);
}

LockConfigDlg::~LockConfigDlg() = default;

int LockConfigDlg::update_and_exec(QString config_id)
{
    m_configId = std::move(config_id);
    ReplyBuffer description;
    m_channel.queryString(description.data(), "config desc_of_config %s",
                          m_configId.toLatin1().constData());
    m_ui->label_configuration->setText(
        tr("set password for configuration %1").arg(description.text()));
    return exec();
}

void LockConfigDlg::on_pushButton_ok_clicked()
{
    const QString password = m_ui->lineEdit_new_password->text();
    const QString repetition = m_ui->lineEdit_new_password_repeat->text();
    if (password.isEmpty() || repetition.isEmpty()) {
        MessageBox::warning(this, nullptr, tr("Warning"), tr("Password must not be empty."));
        return;
    }
    if (password != repetition) {
        MessageBox::warning(this, nullptr, tr("Warning"),
                            tr("The entered passwords do not match."));
        return;
    }
    survives(this, [this, &password] { lock(password); });
}

void LockConfigDlg::lock(const QString &password)
{
    m_channel.sendCommand("config new_password '%s'", password.toLatin1().constData());
    HostMessages::announceActiveConfigurationChanged(&m_channel);
    accept();
}

#include "dialogs/lockconfigdlg.h"

#include "channel/replybuffer.h"
#include "widgets/accessibletexts.h"
#include "widgets/messagebox.h"
#include "widgets/validators.h"

LockConfigDlg::LockConfigDlg(IOManager *channel, QWidget *parent)
    : QDialog(parent)
    , m_controller(channel, this)
{
    m_ui.setupUi(this);
    AccessibleTexts::describeControls(this);
    const QRegExpValidator *validator = Validators::forPassword(this);
    m_ui.lineEdit_new_password->setValidator(validator);
    m_ui.lineEdit_new_password_repeat->setValidator(validator);
}

int LockConfigDlg::update_and_exec(QString config_id)
{
    m_configId = std::move(config_id);
    const auto showDescription = [this] {
        ReplyBuffer description;
        m_controller.descriptionOf(m_configId, &description);
        m_ui.label_configuration->setText(
            tr("set password for configuration %1").arg(description.text()));
    };
    return m_controller.ownerSurvives(showDescription) ? exec() : int(Rejected);
}

void LockConfigDlg::on_pushButton_ok_clicked()
{
    const QString password = m_ui.lineEdit_new_password->text();
    const QString repetition = m_ui.lineEdit_new_password_repeat->text();
    if (password.isEmpty() || repetition.isEmpty()) {
        MessageBox::show(QMessageBox::Warning, this, nullptr, tr("Warning"),
                         tr("Password must not be empty."));
        return;
    }
    if (password != repetition) {
        MessageBox::show(QMessageBox::Warning, this, nullptr, tr("Warning"),
                         tr("The entered passwords do not match."));
        return;
    }
    m_controller.ownerSurvives([this, &password] { lock(password); });
}

void LockConfigDlg::lock(const QString &password)
{
    m_controller.setPassword(password);
    m_controller.announceActiveConfigurationChanged();
    accept();
}

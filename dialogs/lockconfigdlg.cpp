#include "dialogs/lockconfigdlg.h"

#include "channel/replybuffer.h"
#include "widgets/accessibletexts.h"
#include "widgets/messagebox.h"
#include "widgets/validators.h"

LockConfigDlg::LockConfigDlg(IOManager *channel, QWidget *parent)
    : QDialog(parent)
    , m_controller(channel, this)
{
    setupUi(this);
    AccessibleTexts::describeControls(this);
    const QRegExpValidator *validator = Validators::forPassword(this);
    lineEdit_new_password->setValidator(validator);
    lineEdit_new_password_repeat->setValidator(validator);
}

int LockConfigDlg::update_and_exec(QString config_id)
{
    m_configId = std::move(config_id);
    const auto showDescription = [this] {
        ReplyBuffer description;
        m_controller.descriptionOf(m_configId, &description);
        label_configuration->setText(
            tr("set password for configuration %1").arg(description.text()));
        resize(width(), qMax(height(), heightForWidth(width())));
    };
    return m_controller.ownerSurvives(showDescription) ? exec() : int(Rejected);
}

void LockConfigDlg::on_pushButton_ok_clicked()
{
    const QString password = lineEdit_new_password->text();
    const QString repetition = lineEdit_new_password_repeat->text();
    if (password.isEmpty() || repetition.isEmpty()) {
        MessageBox::warnAbout(password.isEmpty() ? lineEdit_new_password
                                                 : lineEdit_new_password_repeat,
                              nullptr, tr("Warning"), tr("Password must not be empty."));
        return;
    }
    if (password != repetition) {
        MessageBox::warnAbout(lineEdit_new_password_repeat, nullptr, tr("Warning"),
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

#include "dialogs/unlockconfigdlg.h"

#include "channel/replybuffer.h"
#include "widgets/accessibletexts.h"
#include "widgets/messagebox.h"
#include "widgets/validators.h"

UnlockConfigDlg::UnlockConfigDlg(IOManager *channel, QWidget *parent)
    : QDialog(parent)
    , m_controller(channel, this)
{
    m_ui.setupUi(this);
    AccessibleTexts::describeControls(this);
    m_ui.lineEdit_password->setValidator(Validators::forPassword(this));
}

int UnlockConfigDlg::update_and_exec(QString config_id)
{
    m_configId = std::move(config_id);
    const auto showDescription = [this] {
        ReplyBuffer description;
        m_controller.descriptionOf(m_configId, &description);
        m_ui.label_configuration->setText(tr("unlock configuration %1:").arg(description.text()));
    };
    return m_controller.ownerSurvives(showDescription) ? exec() : int(Rejected);
}

void UnlockConfigDlg::on_pushButton_ok_clicked()
{
    if (m_ui.lineEdit_password->text().isEmpty()) {
        MessageBox::show(QMessageBox::Warning, this, nullptr, tr("Warning"),
                         tr("Please enter the password for this configuration."));
        return;
    }
    m_controller.ownerSurvives([this] { unlock(m_ui.checkBox_use_super_password->isChecked()); });
}

void UnlockConfigDlg::unlock(bool isSuper)
{
    presentPassword(isSuper);
    ReplyBuffer isChangeable;
    if (!m_controller.reportUnless(m_controller.isChangeable(&isChangeable),
                                   "configuration cannot be checked.")) {
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
    const QString password = m_ui.lineEdit_password->text();
    if (isSuper) {
        m_controller.presentSuperPassword(password);
    } else {
        m_controller.presentPassword(password);
    }
}

void UnlockConfigDlg::removePassword(bool isSuper)
{
    m_controller.removePassword();
    m_controller.announceActiveConfigurationChanged();
    if (isSuper) {
        // Withdraws the super password; without this it would stay valid for whatever comes next.
        m_controller.withdrawSuperPassword();
    }
    accept();
}

void UnlockConfigDlg::refusePassword(bool isSuper)
{
    // A refused super password is not withdrawn: it has opened nothing.
    const QString text =
        isSuper ? tr("The super password is invalid.") : tr("The password is invalid.");
    if (MessageBox::show(QMessageBox::Warning, this, nullptr, tr("Warning"), text)
        == QMessageBox::NoButton) {
        return;
    }
    m_ui.lineEdit_password->clear();
    m_ui.lineEdit_password->setFocus();
}

#include "dialogs/unlockconfigdlg.h"

#include "channel/replybuffer.h"
#include "widgets/accessibletexts.h"
#include "widgets/messagebox.h"
#include "widgets/validators.h"

UnlockConfigDlg::UnlockConfigDlg(IOManager *channel, QWidget *parent)
    : QDialog(parent)
    , m_controller(channel, this)
{
    setupUi(this);
    AccessibleTexts::describeControls(this);
    lineEdit_password->setValidator(Validators::forPassword(this));
}

int UnlockConfigDlg::update_and_exec(QString config_id)
{
    m_configId = std::move(config_id);
    const auto showDescription = [this] {
        ReplyBuffer description;
        m_controller.descriptionOf(m_configId, &description);
        label_configuration->setText(tr("unlock configuration %1:").arg(description.text()));
        resize(width(), qMax(height(), heightForWidth(width())));
    };
    return m_controller.ownerSurvives(showDescription) ? exec() : int(Rejected);
}

void UnlockConfigDlg::on_pushButton_ok_clicked()
{
    if (lineEdit_password->text().isEmpty()) {
        MessageBox::warnAbout(lineEdit_password, nullptr, tr("Warning"),
                              tr("Please enter the password for this configuration."));
        return;
    }
    m_controller.ownerSurvives([this] { unlock(checkBox_use_super_password->isChecked()); });
}

void UnlockConfigDlg::unlock(bool isSuper)
{
    const QString password = lineEdit_password->text();
    isSuper ? m_controller.presentSuperPassword(password) : m_controller.presentPassword(password);
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
    lineEdit_password->clear();
    lineEdit_password->setFocus();
}

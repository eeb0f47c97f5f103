#include "dialogs/editconfigdlg.h"

#include "channel/quotes.h"
#include "channel/replybuffer.h"
#include "widgets/accessibletexts.h"
#include "widgets/displayfield.h"
#include "widgets/messagebox.h"
#include "widgets/validators.h"

EditConfigDlg::EditConfigDlg(IOManager *channel, QWidget *parent)
    : QDialog(parent)
    , m_controller(channel, this)
{
    setupUi(this);
    AccessibleTexts::describeControls(this);
    const QRegExpValidator *validator = Validators::forText(this);
    lineEdit_owner->setValidator(validator);
    lineEdit_desc->setValidator(validator);
}

int EditConfigDlg::update_and_exec(QString config_id)
{
    m_configId = std::move(config_id);
    const auto showConfiguration = [this] {
        ReplyBuffer owner;
        m_controller.ownerOf(m_configId, &owner);
        ReplyBuffer description;
        m_controller.descriptionOf(m_configId, &description);

        lineEdit_owner->setText(withoutDoubleQuotes(owner.text()));
        lineEdit_desc->setText(withoutDoubleQuotes(description.text()));
        showAsDisplay(lineEdit_configId);
        lineEdit_configId->setText(m_configId);
        lineEdit_configId->home(false);
    };
    return m_controller.ownerSurvives(showConfiguration) ? exec() : int(Rejected);
}

void EditConfigDlg::on_pushButton_ok_clicked()
{
    // The validator stops quotes, except in a text that was stored with a character it does not
    // know: Qt then lets every character through.
    const QString owner = withoutDoubleQuotes(lineEdit_owner->text());
    const QString description = withoutDoubleQuotes(lineEdit_desc->text());
    if (description.isEmpty()) {
        // Without a parent, unlike that of a new configuration.
        MessageBox::warnAbout(lineEdit_desc, nullptr, tr("Warning"),
                              tr("Configuration description must not be empty."));
        return;
    }
    m_controller.ownerSurvives([&] { store(owner, description); });
}

void EditConfigDlg::store(const QString &owner, const QString &description)
{
    // Owner and description go to the active configuration, so this one has to be it.
    m_controller.activate(m_configId);
    m_controller.setOwner(owner);
    m_controller.setDescription(description);
    m_controller.announceActiveConfigurationChanged();
    accept();
}

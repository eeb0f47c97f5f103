#include "dialogs/newconfigurationdlg.h"

#include "channel/identifiers.h"
#include "channel/replybuffer.h"
#include "widgets/accessibletexts.h"
#include "widgets/messagebox.h"
#include "widgets/validators.h"

namespace {
constexpr int creationTimeoutMs = 20000;
}

NewConfigurationDlg::NewConfigurationDlg(IOManager *channel, QWidget *parent)
    : QDialog(parent)
    , m_controller(channel, this)
{
    setupUi(this);
    AccessibleTexts::describeControls(this);
    const QRegExpValidator *validator = Validators::forText(this);
    lineEdit_desc->setValidator(validator);
    lineEdit_owner->setValidator(validator);
}

void NewConfigurationDlg::on_pushButton_create_clicked()
{
    if (lineEdit_desc->text().isEmpty()) {
        MessageBox::warnAbout(lineEdit_desc, this, tr("Warning"),
                              tr("Please enter a configuration description."));
        return;
    }
    m_controller.ownerSurvives([this] { createAndAnnounce(); });
}

void NewConfigurationDlg::createAndAnnounce()
{
    setCursor(Qt::WaitCursor);
    createConfiguration();
    describeConfiguration();
    setCursor(Qt::ArrowCursor);
    accept();
    // Not before the dialog has closed: listeners may take their time.
    m_controller.announceActiveConfigurationChanged();
}

void NewConfigurationDlg::createConfiguration()
{
    // Asked for even when nothing is cloned; the controller always sees the same sequence.
    ReplyBuffer active;
    m_controller.activeConfiguration(&active);
    const QString stamp = Identifiers::newStamp();
    m_controller.setTimeout(creationTimeoutMs, 1);
    if (radioButton_clone->isChecked()) {
        m_controller.createClone(stamp, active.text());
    } else {
        m_controller.createConfiguration(stamp);
    }
}

void NewConfigurationDlg::describeConfiguration()
{
    // These name no configuration: the one just created is the active one.
    m_controller.removePassword();
    m_controller.setOwnerOfNew(lineEdit_owner->text());
    m_controller.setDescriptionOfNew(lineEdit_desc->text());
}

#include "dialogs/newconfigurationdlg.h"

#include "ui_newconfigurationdlg.h"

#include "channel/accessibletexts.h"
#include "channel/hostmessages.h"
#include "channel/identifiers.h"
#include "channel/messagebox.h"
#include "channel/replybuffer.h"
#include "channel/survives.h"
#include "channel/validators.h"

#include <QRegExpValidator>

namespace {
constexpr int creationTimeoutMs = 20000;
}

NewConfigurationDlg::NewConfigurationDlg(IOManager *channel, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::NewConfigurationDialog>())
    , m_channel(channel, this)
{
    m_ui->setupUi(this);
    AccessibleTexts::describeControls(this);
    const QRegExpValidator *validator = Validators::forText(this);
    m_ui->lineEdit_desc->setValidator(validator);
    m_ui->lineEdit_owner->setValidator(validator);
}

NewConfigurationDlg::~NewConfigurationDlg() = default;

int NewConfigurationDlg::update_and_exec()
{
    return exec();
}

void NewConfigurationDlg::on_pushButton_create_clicked()
{
    if (m_ui->lineEdit_desc->text().isEmpty()) {
        MessageBox::warning(this, this, tr("Warning"),
                            tr("Please enter a configuration description."));
        return;
    }
    survives(this, [this] { createAndAnnounce(); });
}

void NewConfigurationDlg::createAndAnnounce()
{
    setCursor(Qt::WaitCursor);
    createConfiguration();
    describeConfiguration();
    setCursor(Qt::ArrowCursor);
    accept();
    // Not before the dialog has closed: listeners may take their time.
    HostMessages::announceActiveConfigurationChanged(&m_channel);
}

void NewConfigurationDlg::createConfiguration()
{
    // Asked for even when nothing is cloned; the controller always sees the same sequence.
    ReplyBuffer active;
    m_channel.queryString(active.data(), "config active_config");
    const QByteArray stamp = Identifiers::newStamp().toLatin1();
    m_channel.setTimeout(0, creationTimeoutMs, 1);
    ReplyBuffer unused;
    if (m_ui->radioButton_clone->isChecked()) {
        m_channel.sendCommandReply(unused.data(), "veltra2 config clone_config config%s %s",
                                   stamp.constData(), active.text().toLatin1().constData());
    } else {
        m_channel.sendCommandReply(unused.data(), "veltra2 config new_config config%s",
                                   stamp.constData());
    }
}

void NewConfigurationDlg::describeConfiguration()
{
    // These name no configuration: the one just created is the active one.
    m_channel.sendCommand("config new_password none");
    // The blank after the closing quote is part of these two commands.
    m_channel.sendCommand("config owner \"%s\" ",
                          m_ui->lineEdit_owner->text().toLatin1().constData());
    m_channel.sendCommand("config desc \"%s\" ",
                          m_ui->lineEdit_desc->text().toLatin1().constData());
}

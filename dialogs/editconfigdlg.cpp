#include "dialogs/editconfigdlg.h"

#include "ui_editconfigdlg.h"

#include "channel/accessibletexts.h"
#include "channel/hostmessages.h"
#include "channel/messagebox.h"
#include "channel/quotes.h"
#include "channel/replybuffer.h"
#include "channel/survives.h"
#include "channel/validators.h"

#include <QRegExpValidator>

EditConfigDlg::EditConfigDlg(IOManager *channel, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::EditConfigDialog>())
    , m_channel(channel, this)
{
    m_ui->setupUi(this);
    AccessibleTexts::describeControls(this);
    const QRegExpValidator *validator = Validators::forText(this);
    m_ui->lineEdit_owner->setValidator(validator);
    m_ui->lineEdit_desc->setValidator(validator);
}

EditConfigDlg::~EditConfigDlg() = default;

int EditConfigDlg::update_and_exec(QString config_id)
{
    m_configId = std::move(config_id);
    const QByteArray id = m_configId.toLatin1();
    ReplyBuffer owner;
    m_channel.queryString(owner.data(), "config owner_of_config %s", id.constData());
    ReplyBuffer description;
    m_channel.queryString(description.data(), "config desc_of_config %s", id.constData());

    m_ui->lineEdit_owner->setText(withoutDoubleQuotes(owner.text()));
    m_ui->lineEdit_desc->setText(withoutDoubleQuotes(description.text()));
    m_ui->lineEdit_configId->setText(m_configId);
    m_ui->lineEdit_configId->home(false);
    return exec();
}

void EditConfigDlg::on_pushButton_ok_clicked()
{
    // The validator stops quotes, except in a text that was stored with a character it does not
    // know: Qt then lets every character through.
    const QString owner = withoutDoubleQuotes(m_ui->lineEdit_owner->text());
    const QString description = withoutDoubleQuotes(m_ui->lineEdit_desc->text());
    if (description.isEmpty()) {
        // Without a parent, unlike that of a new configuration.
        MessageBox::warning(this, nullptr, tr("Warning"),
                            tr("Configuration description must not be empty."));
        return;
    }
    survives(this, [&] { store(owner, description); });
}

void EditConfigDlg::store(const QString &owner, const QString &description)
{
    // Owner and description go to the active configuration, so this one has to be it.
    m_channel.sendCommand("config active_config %s", m_configId.toLatin1().constData());
    m_channel.sendCommand("config owner \"%s\"", owner.toLatin1().constData());
    m_channel.sendCommand("config desc \"%s\"", description.toLatin1().constData());
    HostMessages::announceActiveConfigurationChanged(&m_channel);
    accept();
}

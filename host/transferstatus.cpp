#include "host/transferstatus.h"

#include "simulator/channelobserver.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>

namespace {

constexpr int barWidth = 20; // in average characters
constexpr int mostChunks = 10000;

// The module's first question of an automatic backup, which it asks for nothing else. It does not
// return to the event loop before the backup is over.
const char *const automaticBackupBegins = "status active";

} // namespace

TransferStatus::TransferStatus(QWidget *parent)
    : QWidget(parent)
    , m_label(new QLabel(this))
    , m_bar(new QProgressBar(this))
{
    m_label->setObjectName(QStringLiteral("label_transfer"));
    m_label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_label->setMinimumWidth(
        fontMetrics().horizontalAdvance(tr("Automatic backup: chunk %1 of %1").arg(mostChunks)));
    m_bar->setObjectName(QStringLiteral("progressBar_transfer"));
    m_bar->setAccessibleName(tr("Progress of the transfer"));
    m_bar->setFixedWidth(barWidth * fontMetrics().averageCharWidth());
    // A place kept free spares a new layout, which would need the event loop.
    QSizePolicy policy = m_bar->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_bar->setSizePolicy(policy);
    m_bar->hide();

    m_endOfBackup.setSingleShot(true);
    connect(&m_endOfBackup, &QTimer::timeout, this, &TransferStatus::endAutomaticBackup);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_bar);
    layout->addWidget(m_label);
}

void TransferStatus::follow(const Exchange &exchange)
{
    if (exchange.command == automaticBackupBegins) {
        m_progress = {};
        m_isAutomaticBackup = true;
        m_endOfBackup.start();
        showProgress();
    }
    const TransferProgress::State oldState = m_progress.state();
    const int oldPercent = m_progress.percent();
    m_progress.follow(exchange.command, exchange.answer, exchange.result);
    if (m_progress.state() != oldState || m_progress.percent() != oldPercent) {
        showProgress();
    }
}

void TransferStatus::showProgress()
{
    m_label->setText(m_progress.text(m_isAutomaticBackup ? tr("Automatic backup") : QString()));
    m_bar->setValue(m_progress.percent());
    m_bar->setVisible(m_progress.state() == TransferProgress::State::Running);
    repaint();
}

void TransferStatus::endAutomaticBackup()
{
    m_isAutomaticBackup = false;
    if (m_progress.state() == TransferProgress::State::Idle) {
        m_label->clear(); // none was made
    }
}

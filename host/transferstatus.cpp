#include "host/transferstatus.h"

#include "simulator/channelobserver.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>

namespace {

constexpr int barWidth = 20; // in average characters

} // namespace

TransferStatus::TransferStatus(QWidget *parent)
    : QWidget(parent)
    , m_label(new QLabel(this))
    , m_bar(new QProgressBar(this))
{
    m_label->setObjectName(QStringLiteral("label_transfer"));
    m_label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_label->setMinimumWidth(
        fontMetrics().horizontalAdvance(tr("Download: chunk %1 of %2").arg(100000).arg(100000)));
    m_bar->setObjectName(QStringLiteral("progressBar_transfer"));
    m_bar->setAccessibleName(tr("Progress of the transfer"));
    m_bar->setFixedWidth(barWidth * fontMetrics().averageCharWidth());
    // A place kept free spares a new layout, which would need the event loop.
    QSizePolicy policy = m_bar->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_bar->setSizePolicy(policy);
    m_bar->hide();

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_bar);
    layout->addWidget(m_label);
}

void TransferStatus::follow(const Exchange &exchange)
{
    const TransferProgress::State oldState = m_progress.state();
    const int oldPercent = m_progress.percent();
    m_progress.follow(exchange.command, exchange.answer, exchange.result);
    if (m_progress.state() != oldState || m_progress.percent() != oldPercent) {
        showProgress();
    }
}

void TransferStatus::showProgress()
{
    m_label->setText(m_progress.text());
    m_bar->setValue(m_progress.percent());
    m_bar->setVisible(m_progress.state() == TransferProgress::State::Running);
    repaint();
}

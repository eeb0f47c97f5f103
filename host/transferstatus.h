#pragma once

#include "host/transferprogress.h"

#include <QWidget>

class QLabel;
class QProgressBar;
struct Exchange;

/// Shows the progress of a transfer in the status bar.
///
/// It paints at once whenever the percentage or the state has changed: the module keeps the event
/// loop busy until its transfer is over.
class TransferStatus : public QWidget
{
    Q_OBJECT

public:
    explicit TransferStatus(QWidget *parent = nullptr);

    /// Takes one command into account.
    void follow(const Exchange &exchange);

private:
    void showProgress();

    TransferProgress m_progress;
    QLabel *m_label;
    QProgressBar *m_bar;
};

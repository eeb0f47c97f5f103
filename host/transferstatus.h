#pragma once

#include "host/transferprogress.h"

#include <QTimer>
#include <QWidget>

class QLabel;
class QProgressBar;
struct Exchange;

/// Shows the progress of a transfer in the status bar, and whether it belongs to the automatic
/// backup.
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
    void endAutomaticBackup();

    TransferProgress m_progress;
    bool m_isAutomaticBackup = false;
    QTimer m_endOfBackup;
    QLabel *m_label;
    QProgressBar *m_bar;
};

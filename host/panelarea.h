#pragma once

#include <QScrollArea>

/// Shows a panel in its whole width, and in the height that there is: it scrolls where that is too
/// little.
class PanelArea : public QScrollArea
{
    Q_OBJECT

public:
    explicit PanelArea(QWidget *panel, QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;
};

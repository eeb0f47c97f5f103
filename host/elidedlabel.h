#pragma once

#include <QLabel>

/// A label for one line of text that takes the width that it is given: a longer text ends in an
/// ellipsis, and a tool tip shows the whole of it. Once the label has the focus, the text can be
/// selected from its beginning to its end.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool isTooLong() const;
};

#pragma once

#include <QLabel>

/// A plain text of any length that fits any width: it breaks between words where it can, within a
/// word where it must.
///
/// QLabel breaks between words only, so that one long word would widen its dialog beyond the
/// screen. Once shown, the label keeps the height that the text needs in the present width, and the
/// dialog around it grows with it.
class WrappingLabel : public QLabel
{
public:
    /// Empty at first.
    explicit WrappingLabel(QWidget *parent = nullptr);

    /// Any width; the height that the text needs in the present one, a single line until shown.
    QSize minimumSizeHint() const override;
    /// What the text needs when it is broken to fit @p width pixels.
    int heightForWidth(int width) const override;

private:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
};

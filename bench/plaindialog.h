#pragma once

#include <QWidget>

#include <functional>
#include <vector>

/// A dialog with as many widgets of the same kinds as another one, without names, texts, properties
/// or connections: what a dialog cannot do without, and what its cost is compared with.
class PlainDialog
{
public:
    /// Takes note of the widgets of @p original, which is not kept.
    explicit PlainDialog(const QWidget *original);

    /// Makes the dialog.
    QWidget *make(QWidget *parent) const;

private:
    std::function<QWidget *(QWidget *parent)> m_make;
    std::vector<PlainDialog> m_children;
};

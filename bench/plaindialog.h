#pragma once

#include <QVariant>
#include <QWidget>

#include <functional>
#include <vector>

/// A dialog with as many widgets of the same kinds as another one, without names, properties or
/// connections: what a dialog cannot do without, and what its cost is compared with.
class PlainDialog
{
public:
    enum class Texts { None, Same };

    /// Takes note of the widgets of @p original, which is not kept, and perhaps of their texts.
    PlainDialog(const QWidget *original, Texts texts);

    /// Makes the dialog.
    QWidget *make(QWidget *parent) const;

private:
    std::function<QWidget *(QWidget *parent)> m_make;
    QVariant m_text;
    std::vector<PlainDialog> m_children;
};

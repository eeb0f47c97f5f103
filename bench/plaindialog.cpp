#include "bench/plaindialog.h"

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

using Maker = std::function<QWidget *(QWidget *parent)>;

template <typename Widget>
bool makes(const QWidget *original, Maker *maker)
{
    if (qobject_cast<const Widget *>(original) == nullptr) {
        return false;
    }
    *maker = [](QWidget *parent) { return new Widget(parent); };
    return true;
}

// Widgets of these kinds make what is inside them by themselves.
Maker makerOfControl(const QWidget *original)
{
    Maker maker;
    makes<QTableWidget>(original, &maker) || makes<QPushButton>(original, &maker)
        || makes<QRadioButton>(original, &maker) || makes<QCheckBox>(original, &maker)
        || makes<QLineEdit>(original, &maker) || makes<QLabel>(original, &maker)
        || makes<QFrame>(original, &maker);
    return maker;
}

Maker makerOfContainer(const QWidget *original)
{
    Maker maker;
    makes<QDialog>(original, &maker) || makes<QWidget>(original, &maker);
    return maker;
}

} // namespace

PlainDialog::PlainDialog(const QWidget *original, Texts texts)
    : m_make(makerOfControl(original))
{
    if (texts == Texts::Same) {
        m_text = original->property("text");
    }
    if (m_make) {
        return;
    }
    m_make = makerOfContainer(original);
    const auto children = original->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget *child : children) {
        m_children.emplace_back(child, texts);
    }
}

QWidget *PlainDialog::make(QWidget *parent) const
{
    QWidget *widget = m_make(parent);
    if (m_text.isValid()) {
        widget->setProperty("text", m_text);
    }
    if (m_children.empty()) {
        return widget;
    }
    auto *layout = new QVBoxLayout(widget);
    for (const PlainDialog &child : m_children) {
        QWidget *made = child.make(widget);
        if (!made->isWindow()) {
            layout->addWidget(made);
        }
    }
    return widget;
}

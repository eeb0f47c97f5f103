#pragma once

#include <QDialog>

/// Texts for people who do not see the screen.
namespace AccessibleTexts {

/// Gives each control of @p dialog its What's This text as its accessible description: screen
/// readers tell descriptions, but not all of them tell What's This texts.
inline void describeControls(const QDialog *dialog)
{
    const QList<QWidget *> widgets = dialog->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (widget->focusPolicy() != Qt::NoFocus && !widget->whatsThis().isEmpty()) {
            widget->setAccessibleDescription(widget->whatsThis());
        }
    }
}

} // namespace AccessibleTexts

#include "widgets/accessibletexts.h"

#include <QDialog>

void AccessibleTexts::describeControls(const QDialog *dialog)
{
    const QList<QWidget *> widgets = dialog->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (widget->focusPolicy() != Qt::NoFocus && !widget->whatsThis().isEmpty()) {
            widget->setAccessibleDescription(widget->whatsThis());
        }
    }
}

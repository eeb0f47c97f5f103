#pragma once

#include <QLineEdit>

/// Makes a field that only displays look like it in the present palette, and be as easy to read as
/// the labels around it. Due before each showing, since the palette may change.
inline void showAsDisplay(QLineEdit *field)
{
    QPalette palette = field->parentWidget()->palette();
    palette.setColor(QPalette::Base, palette.color(QPalette::Active, QPalette::Window));
    palette.setColor(QPalette::Text, palette.color(QPalette::Active, QPalette::WindowText));
    field->setPalette(palette);
}

#pragma once

#include <QString>
#include <QWidget>

/// What a user does to a window, as real key and mouse events on widgets found by their object
/// names. A name that does not exist ends the test program.
namespace UserInput {

QWidget *widgetNamed(const QWidget *window, const QString &objectName);

/// The same, as the class it is.
template <typename Widget>
Widget *named(const QWidget *window, const char *objectName)
{
    auto *widget = qobject_cast<Widget *>(widgetNamed(window, QString::fromLatin1(objectName)));
    if (!widget) {
        qFatal("'%s' is of another class", objectName);
    }
    return widget;
}

/// Types @p text at the end of a line edit, one key after the other.
void type(const QWidget *window, const char *lineEdit, const QString &text);
/// Clicks a push, radio or check button with the mouse.
void click(const QWidget *window, const char *button);
/// Presses a key where the window has its focus.
void press(QWidget *window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

/// The name of the widget that has the window's focus, empty if there is none.
QString focusOf(const QWidget *window);
/// What a line edit holds.
QString textOf(const QWidget *window, const char *lineEdit);

} // namespace UserInput

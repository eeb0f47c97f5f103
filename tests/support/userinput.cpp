#include "tests/support/userinput.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QTest>

QWidget *UserInput::widgetNamed(const QWidget *window, const QString &objectName)
{
    auto *widget = window->findChild<QWidget *>(objectName);
    if (!widget) {
        qFatal("there is no '%s'", qPrintable(objectName));
    }
    return widget;
}

void UserInput::type(const QWidget *window, const char *lineEdit, const QString &text)
{
    auto *field = named<QLineEdit>(window, lineEdit);
    field->end(false);
    for (const QChar character : text) {
        if (character.unicode() < 0x80) {
            QTest::keyClick(field, character.toLatin1());
        } else {
            QTest::sendKeyEvent(QTest::Click, field, static_cast<Qt::Key>(character.unicode()),
                                QString(character), Qt::NoModifier);
        }
    }
}

void UserInput::click(const QWidget *window, const char *button)
{
    auto *widget = named<QAbstractButton>(window, button);
    // At the left end, where check and radio buttons have their indicators.
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(8, widget->height() / 2));
}

void UserInput::press(QWidget *window, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QWidget *focused = window->focusWidget();
    QTest::keyClick(focused ? focused : window, key, modifiers);
}

QString UserInput::focusOf(const QWidget *window)
{
    const QWidget *focused = window->focusWidget();
    return focused ? focused->objectName() : QString();
}

QString UserInput::textOf(const QWidget *window, const char *lineEdit)
{
    return named<QLineEdit>(window, lineEdit)->text();
}

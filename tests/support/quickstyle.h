#pragma once

#include <QApplication>
#include <QEvent>
#include <QHash>
#include <QIcon>
#include <QProxyStyle>

/// Makes windows quick to open, for those who open thousands: Qt's own icons, of which a file
/// dialog decodes dozens, are decoded once, and nothing is painted that nobody looks at.
class QuickStyle final : public QProxyStyle
{
public:
    /// From now on, for the whole program.
    static void use()
    {
        static auto *const style = new QuickStyle; // the application's
        if (QApplication::style() != style) {
            QApplication::setStyle(style);
            qApp->installEventFilter(style);
        }
    }

    QIcon standardIcon(StandardPixmap pixmap, const QStyleOption *option,
                       const QWidget *widget) const override
    {
        QIcon &icon = m_icons[pixmap];
        if (icon.isNull()) {
            icon = QProxyStyle::standardIcon(pixmap, option, widget);
        }
        return icon;
    }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        return event->type() == QEvent::Paint;
    }

private:
    mutable QHash<int, QIcon> m_icons;
};

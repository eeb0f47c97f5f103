#include "host/darkcolours.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

namespace {

constexpr QColor ground(0x40, 0x42, 0x47);
constexpr QColor deepGround(0x1e, 0x1f, 0x22);
constexpr QColor plainText(0xdf, 0xe1, 0xe5);
constexpr QColor fadedText(0x97, 0x99, 0x9d);
constexpr QColor accent(0x3d, 0x7d, 0xca);

QPalette darkPalette()
{
    QPalette palette(ground); // shades and bevels follow from the ground
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::ToolTipText, QPalette::HighlightedText}) {
        palette.setColor(role, plainText);
        palette.setColor(QPalette::Disabled, role, fadedText);
    }
    palette.setColor(QPalette::PlaceholderText, fadedText);
    palette.setColor(QPalette::Base, deepGround);
    palette.setColor(QPalette::AlternateBase, deepGround.lighter(125));
    palette.setColor(QPalette::ToolTipBase, deepGround);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, ground.lighter(150));
    palette.setColor(QPalette::Link, accent.lighter());
    return palette;
}

} // namespace

void useDarkColours()
{
    // Desktop styles bring colours of their own; this one takes ours.
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(darkPalette());
}

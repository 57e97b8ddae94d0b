#pragma once

#include <QRect>
#include <QSize>

// The frame's design measures, in twips, and the unit that turns them into pixels. A twelfth
// of a twip-based measure (a 1.25 scale over the usual 15 twips a pixel) keeps the panels'
// fields comfortably legible on a 1920x1080 screen.
namespace ShellLayout {

constexpr int AppWidthTwips = 13500;
constexpr int AppHeightTwips = 7890;
constexpr int ToolbarHeightTwips = 735;
constexpr int LeftColumnTwips = 2160;  // lblHidden's Left
constexpr int PanelHeightTwips = 6840; // lblHiddenBOTTOM's Top

constexpr int Px(int twips) {
    return (twips * 2 + 12) / 24; // twips / 12, rounded
}

// Where everything goes in a client area: the toolbar across the top, the left column of width
// L, the panel beside it and the status bar below both. Only the panels stretch: the status
// bar keeps its height, so the relations of the load hold at any size.
struct Geometry {
    QRect toolbar;
    QRect column;
    QRect panel;
    QRect statusBar;
    int panelHeight; // T
};
Geometry Arrange(QSize client, int toolbarHeight, int leftColumn, int statusBarHeight);

} // namespace ShellLayout

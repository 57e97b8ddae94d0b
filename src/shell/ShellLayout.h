#pragma once

// The frame's design measures, in twips, and the unit that turns them into pixels. A twelfth
// of a twip-based measure (a 1.25 scale over the usual 15 twips a pixel) keeps the panels'
// fields comfortably legible on a 1920x1080 screen. The layouts hold these as fixed sizes and
// stretch factors; nothing is placed by hand.
namespace ShellLayout {

constexpr int AppWidthTwips = 13500;
constexpr int AppHeightTwips = 7890;
constexpr int ToolbarHeightTwips = 735;
constexpr int LeftColumnTwips = 2160;  // lblHidden's Left
constexpr int PanelHeightTwips = 6840; // lblHiddenBOTTOM's Top
constexpr int StatusBarHeightTwips = AppHeightTwips - PanelHeightTwips;

constexpr int Px(int twips) {
    return (twips * 2 + 12) / 24; // twips / 12, rounded
}

} // namespace ShellLayout

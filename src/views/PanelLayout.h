#pragma once

// The list panel's measures, in points (device-independent pixels). The
// panel's widgets are laid out with exactly these, so that where a row or a
// round button sits follows from the panel's size alone; the end-to-end
// driver clicks by the same numbers. Plain constants: no toolkit here.
namespace platform::qt::panelLayout {

// Around the whole content of the panel.
constexpr int scenePadding = 20;
// Between the application menu and the list below it.
constexpr int sectionSpacing = 16;
// The application menu's button.
constexpr int menuButtonHeight = 24;

// One window row: the round buttons and the title, with room above and
// below. The title's line fits the row's text size with a little to spare.
constexpr int rowVerticalPadding = 4;
constexpr int rowContentHeight = 16;
constexpr int rowHeight = rowContentHeight + 2 * rowVerticalPadding;
// Rows are set apart by a hairline with this space on either side.
constexpr int rowSpacing = 4;
constexpr int dividerHeight = 1;
constexpr int rowPitch = rowHeight + 2 * rowSpacing + dividerHeight;

// The round buttons at a row's leading edge, and the space after each.
constexpr int trafficButtonSide = 12;
constexpr int trafficButtonSpacing = 6;

// The widest a row's title may be for the panel to fit a work area this
// wide: the panel's paddings and the round buttons before the title take
// the rest.
constexpr int widestRowTitle(int workAreaWidth) {
    return workAreaWidth - 2 * scenePadding - 3 * (trafficButtonSide + trafficButtonSpacing);
}

// The top of the first row, from the top of the panel's content.
constexpr int firstRowTop = scenePadding + menuButtonHeight + sectionSpacing;

// The height of the panel's content with this many rows (at least one).
constexpr int contentHeight(int rows) {
    return firstRowTop + rows * rowPitch - 2 * rowSpacing - dividerHeight + scenePadding;
}

}  // namespace platform::qt::panelLayout

#include "PanelMap.h"

#include "views/PanelLayout.h"

namespace e2e {

using namespace platform::qt::panelLayout;

std::optional<int> PanelMap::rowCount() const {
    for (int rows = 1; contentHeight(rows) <= content_.height; ++rows) {
        if (contentHeight(rows) == content_.height)
            return rows;
    }
    return std::nullopt;
}

Point PanelMap::menuButton() const {
    return {content_.x + content_.width / 2, content_.y + scenePadding + menuButtonHeight / 2};
}

int PanelMap::rowTop(int index) const {
    return content_.y + firstRowTop + index * rowPitch;
}

Point PanelMap::row(int index) const {
    const Geometry title = titleArea(index);
    return {title.x + title.width / 2, rowTop(index) + rowHeight / 2};
}

Point PanelMap::roundButton(int row, RoundButton which) const {
    const int left = content_.x + scenePadding +
                     static_cast<int>(which) * (trafficButtonSide + trafficButtonSpacing);
    return {left + trafficButtonSide / 2, rowTop(row) + rowHeight / 2};
}

Geometry PanelMap::titleArea(int row) const {
    const int left = content_.x + scenePadding + 3 * (trafficButtonSide + trafficButtonSpacing);
    return {left, rowTop(row) + rowVerticalPadding,
            content_.x + content_.width - scenePadding - left, rowContentHeight};
}

}  // namespace e2e

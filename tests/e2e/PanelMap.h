#pragma once

#include <optional>

#include "Geometry.h"

namespace e2e {

// Where things are on the shown panel, worked out from its content's size
// and the measures its widgets are laid out with. All click arithmetic of
// the tests is here.
class PanelMap {
  public:
    enum class RoundButton { close = 0, minimize = 1, fullScreen = 2 };

    explicit PanelMap(Geometry content) : content_(content) {}

    const Geometry& content() const { return content_; }

    // The number of window rows the panel's height makes room for; nothing
    // when the height fits no number of rows (the empty or error text).
    std::optional<int> rowCount() const;

    Point menuButton() const;
    // A point on the row clear of its round buttons.
    Point row(int index) const;
    Point roundButton(int row, RoundButton which) const;
    // Where the row's title is drawn.
    Geometry titleArea(int row) const;

  private:
    int rowTop(int index) const;

    Geometry content_;
};

}  // namespace e2e

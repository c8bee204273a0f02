#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/StatusBar.h"

namespace platform::sim {

class SimStatusBarButton final : public StatusBarButton {
  public:
    void setImage(const Image& image) override { image_ = image; }
    const std::optional<Image>& image() const { return image_; }

  private:
    std::optional<Image> image_;
};

class SimStatusItem final : public StatusItem {
  public:
    SimStatusItem(double length, bool hasButton);

    StatusBarButton* button() override { return button_.get(); }
    void setMenu(std::shared_ptr<Menu> menu) override { menu_ = std::move(menu); }
    std::shared_ptr<Menu> menu() const override { return menu_; }

    double length() const { return length_; }
    // Null when the item has no button.
    SimStatusBarButton* simButton() const { return button_.get(); }

  private:
    double length_;
    std::unique_ptr<SimStatusBarButton> button_;
    std::shared_ptr<Menu> menu_;
};

// The status bar of the simulated desktop. Its items have buttons unless a
// test asks for a bar that gives none.
class SimStatusBar final : public StatusBar {
  public:
    std::shared_ptr<StatusItem> statusItemWithLength(double length) override;

    void setGivesButtons(bool gives) { givesButtons_ = gives; }
    const std::vector<std::shared_ptr<SimStatusItem>>& items() const { return items_; }

  private:
    bool givesButtons_ = true;
    std::vector<std::shared_ptr<SimStatusItem>> items_;
};

}  // namespace platform::sim

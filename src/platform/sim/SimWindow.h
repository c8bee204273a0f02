#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Window.h"

namespace platform::sim {

// One of our own windows on the simulated desktop. It keeps what it was told
// and a log of the calls that change what is on screen, so that tests can
// check their order.
class SimWindow final : public Window {
  public:
    enum class Kind { window, panel };

    // Which window of a desktop is key: one at a time.
    struct KeyFocus {
        const SimWindow* window = nullptr;
    };

    SimWindow(Kind kind, WindowStyleMask styleMask,
              std::shared_ptr<KeyFocus> focus = std::make_shared<KeyFocus>());
    ~SimWindow() override;
    SimWindow(const SimWindow&) = delete;
    SimWindow& operator=(const SimWindow&) = delete;

    std::string title() const override { return title_; }
    void setTitle(const std::string& title) override { title_ = title; }
    WindowStyleMask styleMask() const override { return styleMask_; }
    void setStyleMask(WindowStyleMask mask) override { styleMask_ = mask; }
    WindowLevel level() const override { return level_; }
    void setLevel(WindowLevel level) override { level_ = level; }
    bool hidesOnDeactivate() const override { return hidesOnDeactivate_; }
    void setHidesOnDeactivate(bool hides) override { hidesOnDeactivate_ = hides; }
    bool becomesKeyOnlyIfNeeded() const override { return becomesKeyOnlyIfNeeded_; }
    void setBecomesKeyOnlyIfNeeded(bool value) override { becomesKeyOnlyIfNeeded_ = value; }
    bool titlebarAppearsTransparent() const override { return titlebarAppearsTransparent_; }
    void setTitlebarAppearsTransparent(bool value) override { titlebarAppearsTransparent_ = value; }

    CGRect frame() const override { return frame_; }
    void setFrameOrigin(CGPoint origin) override;
    double alphaValue() const override { return alpha_; }
    void setAlphaValue(double alpha) override;

    bool isVisible() const override { return visible_; }
    void makeKeyAndOrderFront() override;
    void orderFront() override;
    void close() override;

    void setDelegate(WindowDelegate* delegate) override { delegate_ = delegate; }
    WindowDelegate* delegate() const override { return delegate_; }
    void setContentView(std::shared_ptr<ContentView> view) override;

    // Scripting and inspection.
    Kind kind() const { return kind_; }
    bool isKeyWindow() const { return focus_->window == this; }
    // The frame's size, as the content would give it.
    void setContentSize(CGSize size) { frame_.size = size; }
    const std::shared_ptr<ContentView>& contentView() const { return contentView_; }
    // The user pressed the window's close button.
    void performClose() { close(); }
    // "setFrameOrigin 10 20", "setAlphaValue 0.5", "orderFront",
    // "makeKeyAndOrderFront", "close".
    const std::vector<std::string>& calls() const { return calls_; }
    void clearCalls() { calls_.clear(); }

  private:
    Kind kind_;
    std::string title_;
    WindowStyleMask styleMask_;
    WindowLevel level_ = windowLevel::normal;
    bool hidesOnDeactivate_;
    bool becomesKeyOnlyIfNeeded_ = false;
    bool titlebarAppearsTransparent_ = false;
    CGRect frame_;
    double alpha_ = 1.0;
    bool visible_ = false;
    std::shared_ptr<KeyFocus> focus_;
    WindowDelegate* delegate_ = nullptr;
    std::shared_ptr<ContentView> contentView_;
    std::vector<std::string> calls_;
};

}  // namespace platform::sim

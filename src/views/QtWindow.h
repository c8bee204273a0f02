#pragma once

#include <QMargins>
#include <QSize>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/Window.h"
#include "views/OncePerTurn.h"
#include "views/QtWindowExposure.h"

class QRect;
class QVBoxLayout;
class QWidget;

namespace platform::qt {

// One of our windows or panels as a top-level Qt widget. The frame is in
// the program's bottom-left points, converted from Qt's top-left pixels of
// the primary screen; the size follows the content. A close from the window
// manager goes the same way as close(): the delegate is told, then the
// window hides.
class QtWindow final : public Window {
  public:
    enum class Kind { window, panel };
    // Runs before every showing, to give the native window the desktop
    // properties the application's activation policy asks for.
    using ShowPreparation = std::function<void(QWidget*)>;

    QtWindow(Kind kind, WindowStyleMask styleMask, ShowPreparation prepareForShow = {});
    ~QtWindow() override;
    QtWindow(const QtWindow&) = delete;
    QtWindow& operator=(const QtWindow&) = delete;

    std::string title() const override;
    void setTitle(const std::string& title) override;
    WindowStyleMask styleMask() const override { return styleMask_; }
    void setStyleMask(WindowStyleMask mask) override;
    WindowLevel level() const override { return level_; }
    void setLevel(WindowLevel level) override;
    bool hidesOnDeactivate() const override { return hidesOnDeactivate_; }
    void setHidesOnDeactivate(bool hides) override { hidesOnDeactivate_ = hides; }
    bool becomesKeyOnlyIfNeeded() const override { return becomesKeyOnlyIfNeeded_; }
    void setBecomesKeyOnlyIfNeeded(bool value) override { becomesKeyOnlyIfNeeded_ = value; }
    // There is no title bar of our own to make transparent; kept as told.
    bool titlebarAppearsTransparent() const override { return titlebarAppearsTransparent_; }
    void setTitlebarAppearsTransparent(bool value) override { titlebarAppearsTransparent_ = value; }

    CGRect frame() const override;
    void setFrameOrigin(CGPoint origin) override;
    double alphaValue() const override { return alpha_; }
    void setAlphaValue(double alpha) override;

    bool isVisible() const override;
    void makeKeyAndOrderFront() override;
    void orderFront() override;
    void close() override;

    void setDelegate(WindowDelegate* delegate) override { delegate_ = delegate; }
    WindowDelegate* delegate() const override { return delegate_; }
    void setContentView(std::shared_ptr<ContentView> view) override;

    QWidget* widget() const;
    Kind kind() const { return kind_; }
    // What the window manager's frame adds to the size of a window's
    // widget, as far as the window knows it, also while it is hidden; none
    // for a widget that isn't a window's.
    static QSize frameSizeOf(const QWidget& windowWidget);

  private:
    class Widget;

    void applyWindowFlags();
    QRect expectedFrameGeometry() const;
    void show(bool activating);
    void hideOnDeactivation();
    void keepPlacedOrigin();

    Kind kind_;
    WindowStyleMask styleMask_;
    WindowLevel level_ = windowLevel::normal;
    bool hidesOnDeactivate_;
    bool becomesKeyOnlyIfNeeded_ = false;
    bool titlebarAppearsTransparent_ = false;
    double alpha_ = 1.0;
    // The window manager's frame around the content, once known.
    mutable std::optional<QMargins> frameMargins_;
    // Whether the window manager's answer about the frame was waited for,
    // which is done once.
    mutable bool frameExtentsAwaited_ = false;
    std::optional<CGPoint> placedOrigin_;
    int heightWhenPlaced_ = 0;
    bool awaitingDecoration_ = false;
    WindowDelegate* delegate_ = nullptr;
    ShowPreparation prepareForShow_;
    std::unique_ptr<Widget> widget_;
    QVBoxLayout* layout_;
    // The request makes the native window; asked once the turn's changes of
    // flags are over, it is made once instead of again for each change (Qt
    // makes it anew when the flags change).
    OncePerTurn frameExtentsRequest_;
    std::shared_ptr<ContentView> contentView_;
    // For a panel only.
    std::unique_ptr<x11::QtWindowExposure> exposure_;
};

}  // namespace platform::qt

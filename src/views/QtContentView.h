#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/Window.h"

namespace platform::qt {

// A window's content as the Qt views build it: one widget. The content view
// owns the widget until a window takes it in, and again after the window
// lets it go.
class QtContentView final : public ContentView {
  public:
    explicit QtContentView(QWidget* widget) : widget_(widget) {}
    ~QtContentView() override {
        if (widget_ && !widget_->parent())
            delete widget_.data();
    }
    QtContentView(const QtContentView&) = delete;
    QtContentView& operator=(const QtContentView&) = delete;

    QWidget* widget() const { return widget_.data(); }

  private:
    QPointer<QWidget> widget_;
};

}  // namespace platform::qt

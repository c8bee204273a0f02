#pragma once

#include <QWidget>
#include <memory>

#include "settings/ShortcutView.h"

namespace platform::qt {

class RecorderControlWidget;

// The Settings window's shortcut field: a recorder control made, updated
// and listened to as the shortcut view says.
class ShortcutViewWidget final : public QWidget {
    Q_OBJECT

  public:
    explicit ShortcutViewWidget(const tarnwick::ShortcutView& view, QWidget* parent = nullptr);

    // Passes the view's parameters on to the control again.
    void updateView(const tarnwick::ShortcutView& view);

    RecorderControlWidget* recorderControl() const { return control_; }
    const std::shared_ptr<tarnwick::ShortcutView::Coordinator>& coordinator() const {
        return coordinator_;
    }

  private:
    std::shared_ptr<tarnwick::ShortcutView::Coordinator> coordinator_;
    RecorderControlWidget* control_;
};

}  // namespace platform::qt

#pragma once

#include <QWidget>

#include "firstrun/PermissionRequestView.h"
#include "platform/Subscription.h"

class QLabel;
class QPushButton;

namespace platform::qt {

// The two steps that ask for the accessibility permission and relaunch the
// program: the seal and the enabled state of "Relaunch App" follow the
// view's model as it changes.
class PermissionRequestWidget final : public QWidget {
    Q_OBJECT

  public:
    explicit PermissionRequestWidget(tarnwick::PermissionRequestView& view,
                                     QWidget* parent = nullptr);

    QLabel* seal() const { return seal_; }
    QPushButton* permissionButton() const { return permissionButton_; }
    QPushButton* relaunchButton() const { return relaunchButton_; }

  private:
    void redraw();

    tarnwick::PermissionRequestView& view_;
    QLabel* seal_;
    QPushButton* permissionButton_;
    QPushButton* relaunchButton_;
    platform::Subscription changes_;
};

}  // namespace platform::qt

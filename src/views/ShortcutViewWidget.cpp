#include "views/ShortcutViewWidget.h"

#include <QHBoxLayout>

#include "views/RecorderControlWidget.h"

namespace platform::qt {

ShortcutViewWidget::ShortcutViewWidget(const tarnwick::ShortcutView& view, QWidget* parent)
    : QWidget(parent),
      coordinator_(view.makeCoordinator()),
      control_(new RecorderControlWidget(view.makeView(coordinator_), this)) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(control_);
    updateView(view);
}

void ShortcutViewWidget::updateView(const tarnwick::ShortcutView& view) {
    view.updateView(*control_->control());
}

}  // namespace platform::qt

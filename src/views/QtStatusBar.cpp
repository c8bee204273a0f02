#include "views/QtStatusBar.h"

#include <QCursor>
#include <QMenu>
#include <QSystemTrayIcon>

#include "views/QtImages.h"
#include "views/QtMenus.h"

namespace platform::qt {

// The item shows the program's icon from the start, so that it is visible
// before it is given an image of its own.
QtStatusItem::QtStatusItem() : trayIcon_(std::make_unique<QSystemTrayIcon>()) {
    trayIcon_->setToolTip(QStringLiteral("Tarnwick"));
    trayIcon_->setIcon(iconFor(Image::resource("StatusBarIcon")));
    QObject::connect(trayIcon_.get(), &QSystemTrayIcon::activated, trayIcon_.get(),
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger && qtMenu_) {
                             qtMenu_->popup(QCursor::pos());
                         }
                     });
    trayIcon_->show();
}

QtStatusItem::~QtStatusItem() {
    trayIcon_->setContextMenu(nullptr);
}

void QtStatusItem::setImage(const Image& image) {
    const QIcon icon = iconFor(image);
    if (!icon.isNull())
        trayIcon_->setIcon(icon);
}

void QtStatusItem::setMenu(std::shared_ptr<Menu> menu) {
    menu_ = std::move(menu);
    trayIcon_->setContextMenu(nullptr);
    qtMenu_ = std::make_unique<QMenu>();
    followMenu(*qtMenu_, menu_);
    trayIcon_->setContextMenu(qtMenu_.get());
}

std::shared_ptr<StatusItem> QtStatusBar::statusItemWithLength(double) {
    return std::make_shared<QtStatusItem>();
}

}  // namespace platform::qt

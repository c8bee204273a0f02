#include "support/NotificationCenter.h"

namespace quillbox {

NotificationCenter& NotificationCenter::defaultCenter() {
    static NotificationCenter center;
    return center;
}

platform::Subscription NotificationCenter::addObserver(
    std::string name, std::function<void(const Notification&)> observer) {
    return posted_.connect(
        [name = std::move(name), observer = std::move(observer)](const Notification& notification) {
            if (notification.name == name)
                observer(notification);
        });
}

}  // namespace quillbox

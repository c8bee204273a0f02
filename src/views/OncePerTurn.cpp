#include "views/OncePerTurn.h"

#include <QMetaObject>
#include <utility>

namespace platform::qt {

OncePerTurn::OncePerTurn(std::function<void()> action) : action_(std::move(action)) {}

void OncePerTurn::request() {
    if (requested_)
        return;
    requested_ = true;
    QMetaObject::invokeMethod(
        &receiver_,
        [this] {
            requested_ = false;
            action_();
        },
        Qt::QueuedConnection);
}

}  // namespace platform::qt

#pragma once

#include <QObject>
#include <functional>

namespace platform::qt {

// An action that runs in the next turn of Qt's event loop, once however
// often it is asked for in this one: many changes in a turn are answered
// by one piece of work after them. A turn that is asked for while the
// action runs gets a turn of its own. Nothing runs once the helper is gone.
class OncePerTurn {
  public:
    explicit OncePerTurn(std::function<void()> action);
    OncePerTurn(const OncePerTurn&) = delete;
    OncePerTurn& operator=(const OncePerTurn&) = delete;

    void request();

  private:
    std::function<void()> action_;
    bool requested_ = false;
    // The receiver of the queued call: it goes with the helper, and the
    // call with it.
    QObject receiver_;
};

}  // namespace platform::qt

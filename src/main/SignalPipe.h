#pragma once

#include <functional>
#include <initializer_list>
#include <vector>

#include "platform/Subscription.h"

namespace tarnwick {

// Turns signals into calls on the main loop: the handler only writes the
// signal's number into a pipe, and the main loop reads it and calls
// onSignal. One instance at a time; the signals get their default handling
// back when it goes.
class SignalPipe {
  public:
    SignalPipe(std::initializer_list<int> signalNumbers, std::function<void(int)> onSignal);
    ~SignalPipe();
    SignalPipe(const SignalPipe&) = delete;
    SignalPipe& operator=(const SignalPipe&) = delete;

  private:
    void drain();

    int readEnd_ = -1;
    int writeEnd_ = -1;
    std::vector<int> handledSignals_;
    std::function<void(int)> onSignal_;
    platform::Token watch_;
};

}  // namespace tarnwick

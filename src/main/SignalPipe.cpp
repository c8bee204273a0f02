#include "main/SignalPipe.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "platform/Platform.h"
#include "support/Fatal.h"

namespace tarnwick {

namespace {

volatile std::sig_atomic_t signalWriteEnd = -1;

extern "C" void writeSignalToPipe(int signal) {
    const int savedErrno = errno;
    const auto byte = static_cast<unsigned char>(signal);
    if (::write(signalWriteEnd, &byte, 1) < 0) {
        // A full pipe already holds a signal to handle.
    }
    errno = savedErrno;
}

void setHandler(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

}  // namespace

SignalPipe::SignalPipe(std::initializer_list<int> signalNumbers, std::function<void(int)> onSignal)
    : handledSignals_(signalNumbers), onSignal_(std::move(onSignal)) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        quillbox::fatalError("Cannot make the pipe for signals");
    }
    readEnd_ = ends[0];
    writeEnd_ = ends[1];
    signalWriteEnd = writeEnd_;
    watch_ = platform::mainLoop().watchFileDescriptor(readEnd_, [this] { drain(); });
    for (int signal : handledSignals_)
        setHandler(signal, writeSignalToPipe);
}

SignalPipe::~SignalPipe() {
    for (int signal : handledSignals_)
        setHandler(signal, SIG_DFL);
    platform::mainLoop().unwatch(watch_);
    signalWriteEnd = -1;
    ::close(readEnd_);
    ::close(writeEnd_);
}

void SignalPipe::drain() {
    unsigned char byte = 0;
    while (::read(readEnd_, &byte, 1) == 1)
        onSignal_(byte);
}

}  // namespace tarnwick

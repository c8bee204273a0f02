#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "platform/update/MainLoopMailbox.h"

namespace platform::update {

struct TransferLimits {
    std::uint64_t maximumBytes = 8 * 1024 * 1024;
    long connectTimeoutSeconds = 20;
    // A transfer that receives nothing for this long has stalled.
    long stallSeconds = 30;
    long maximumRedirects = 5;
};

enum class TransferFailure {
    none,
    cancelled,
    insecureAddress,  // neither HTTPS nor this machine's own loopback
    untrustedServer,  // the server's certificate doesn't verify
    unreachable,
    connectionLost,
    stalled,
    tooLarge,
    httpError,
    tooManyRedirects,
    other,
};

struct TransferResult {
    TransferFailure failure = TransferFailure::none;
    std::string body;
    long httpStatus = 0;
    std::string detail;  // the transfer library's own words, for the log
};

// Plain HTTP is for this machine's loopback addresses only (a server a test
// runs); everything else goes over HTTPS.
bool isPermittedAddress(const std::string& url);

// One download into memory, run on a thread of its own so that the main
// loop never waits on the network. Progress and the result arrive on the
// main loop through the mailbox; after cancel() or the transfer's end
// neither is called any more. The mailbox must outlive the transfer.
class Transfer {
  public:
    using Progress = std::function<void(std::uint64_t received, std::uint64_t expected)>;
    using Completion = std::function<void(TransferResult)>;

    Transfer(MainLoopMailbox& mailbox, std::string url, TransferLimits limits, Progress progress,
             Completion completion);
    // Cancels, and waits for the thread to end.
    ~Transfer();
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    void cancel();

    struct State;

  private:
    std::shared_ptr<State> state_;
    std::thread thread_;
};

}  // namespace platform::update

#include "platform/update/Transfer.h"

#include <atomic>
#include <cctype>
#include <chrono>
#include <optional>

#include "platform/update/CurlLibrary.h"

namespace platform::update {

struct Transfer::State {
    MainLoopMailbox* mailbox = nullptr;
    std::string url;
    TransferLimits limits;
    Progress progress;
    Completion completion;
    // Set on the main loop; read by the thread to stop, and by the
    // deliveries to stay silent.
    std::atomic<bool> cancelled{false};
    // What the thread waits on for the network; cancel() wakes it there,
    // so that a transfer the server doesn't answer ends at once and not at
    // the network library's next progress tick, about a second later.
    // Made before the thread starts and cleaned up after it ended.
    CURLM* multi = nullptr;
    // Null when the network library can't be loaded: the transfer fails.
    const CurlLibrary* library = CurlLibrary::get();

    // The thread's own.
    std::string body;
    bool overLimit = false;
    std::chrono::steady_clock::time_point lastReport{};
};

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto progressInterval = std::chrono::milliseconds(100);

std::string lowercase(std::string text) {
    for (auto& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

bool isLoopbackHost(const std::string& host) {
    const auto name = lowercase(host);
    return name == "localhost" || name == "[::1]" || name.starts_with("127.");
}

struct UrlParts {
    std::string scheme;
    std::string host;
};

std::optional<UrlParts> partsOf(const CurlLibrary& library, const std::string& url) {
    CURLU* handle = library.url();
    std::optional<UrlParts> parts;
    char* scheme = nullptr;
    char* host = nullptr;
    if (library.urlSet(handle, CURLUPART_URL, url.c_str(), 0) == CURLUE_OK &&
        library.urlGet(handle, CURLUPART_SCHEME, &scheme, 0) == CURLUE_OK &&
        library.urlGet(handle, CURLUPART_HOST, &host, 0) == CURLUE_OK) {
        parts = UrlParts{lowercase(scheme), host};
    }
    library.free(scheme);
    library.free(host);
    library.urlCleanup(handle);
    return parts;
}

bool isLoopbackHttp(const UrlParts& parts) {
    return parts.scheme == "http" && isLoopbackHost(parts.host);
}

bool isPermitted(const std::optional<UrlParts>& parts) {
    return parts && (parts->scheme == "https" || isLoopbackHttp(*parts));
}

using SharedState = std::shared_ptr<Transfer::State>;

// The callbacks' context is the thread's shared hold on the state, so that
// what they post keeps the state alive.
Transfer::State& stateOf(void* context) {
    return **static_cast<SharedState*>(context);
}

std::size_t receive(char* data, std::size_t size, std::size_t count, void* context) {
    auto& state = stateOf(context);
    const auto bytes = size * count;
    if (state.body.size() + bytes > state.limits.maximumBytes) {
        state.overLimit = true;
        return 0;
    }
    state.body.append(data, bytes);
    return bytes;
}

int reportProgress(void* context, curl_off_t expected, curl_off_t received, curl_off_t,
                   curl_off_t) {
    const auto& shared = *static_cast<SharedState*>(context);
    auto& state = *shared;
    if (state.cancelled)
        return 1;
    const auto now = Clock::now();
    if (!state.progress || now - state.lastReport < progressInterval)
        return 0;
    state.lastReport = now;
    state.mailbox->post([shared, received, expected] {
        if (!shared->cancelled)
            shared->progress(static_cast<std::uint64_t>(received),
                             static_cast<std::uint64_t>(expected));
    });
    return 0;
}

TransferFailure failureOf(CURLcode code, const Transfer::State& state) {
    switch (code) {
        case CURLE_OK:
            return TransferFailure::none;
        case CURLE_ABORTED_BY_CALLBACK:
            return TransferFailure::cancelled;
        case CURLE_UNSUPPORTED_PROTOCOL:
            return TransferFailure::insecureAddress;
        case CURLE_PEER_FAILED_VERIFICATION:
        case CURLE_SSL_CONNECT_ERROR:
        case CURLE_SSL_CERTPROBLEM:
        case CURLE_SSL_CACERT_BADFILE:
            return TransferFailure::untrustedServer;
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_COULDNT_RESOLVE_PROXY:
        case CURLE_COULDNT_CONNECT:
            return TransferFailure::unreachable;
        case CURLE_OPERATION_TIMEDOUT:
            return TransferFailure::stalled;
        case CURLE_RECV_ERROR:
        case CURLE_SEND_ERROR:
        case CURLE_PARTIAL_FILE:
        case CURLE_GOT_NOTHING:
            return TransferFailure::connectionLost;
        case CURLE_FILESIZE_EXCEEDED:
            return TransferFailure::tooLarge;
        case CURLE_WRITE_ERROR:
            return state.overLimit ? TransferFailure::tooLarge : TransferFailure::other;
        case CURLE_HTTP_RETURNED_ERROR:
            return TransferFailure::httpError;
        case CURLE_TOO_MANY_REDIRECTS:
            return TransferFailure::tooManyRedirects;
        default:
            return TransferFailure::other;
    }
}

void configure(const CurlLibrary& library, CURL* curl, SharedState& shared, bool loopback) {
    auto& state = *shared;
    library.easySetopt(curl, CURLOPT_URL, state.url.c_str());
    library.easySetopt(curl, CURLOPT_NOSIGNAL, 1L);
    library.easySetopt(curl, CURLOPT_PROTOCOLS_STR, loopback ? "http" : "https");
    library.easySetopt(curl, CURLOPT_REDIR_PROTOCOLS_STR, loopback ? "http,https" : "https");
    library.easySetopt(curl, CURLOPT_SSL_VERIFYPEER, 1L);
    library.easySetopt(curl, CURLOPT_SSL_VERIFYHOST, 2L);
    library.easySetopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
    library.easySetopt(curl, CURLOPT_MAXREDIRS, state.limits.maximumRedirects);
    library.easySetopt(curl, CURLOPT_CONNECTTIMEOUT, state.limits.connectTimeoutSeconds);
    library.easySetopt(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
    library.easySetopt(curl, CURLOPT_LOW_SPEED_TIME, state.limits.stallSeconds);
    library.easySetopt(curl, CURLOPT_MAXFILESIZE_LARGE,
                       static_cast<curl_off_t>(state.limits.maximumBytes));
    library.easySetopt(curl, CURLOPT_FAILONERROR, 1L);
    library.easySetopt(curl, CURLOPT_USERAGENT, "Tarnwick updater");
    library.easySetopt(curl, CURLOPT_WRITEFUNCTION, receive);
    library.easySetopt(curl, CURLOPT_WRITEDATA, &shared);
    library.easySetopt(curl, CURLOPT_NOPROGRESS, 0L);
    library.easySetopt(curl, CURLOPT_XFERINFOFUNCTION, reportProgress);
    library.easySetopt(curl, CURLOPT_XFERINFODATA, &shared);
}

// The easy handle's transfer on the state's multi handle, waiting in a way
// cancel() can wake; the easy handle's own result, or cancelled.
CURLcode perform(const CurlLibrary& library, CURL* curl, Transfer::State& state) {
    if (!state.multi)
        return library.easyPerform(curl);
    library.multiAddHandle(state.multi, curl);
    CURLcode code = CURLE_ABORTED_BY_CALLBACK;
    while (!state.cancelled) {
        int running = 0;
        if (library.multiPerform(state.multi, &running) != CURLM_OK) {
            code = CURLE_FAILED_INIT;
            break;
        }
        if (running == 0) {
            int queued = 0;
            const CURLMsg* message = library.multiInfoRead(state.multi, &queued);
            code = message && message->msg == CURLMSG_DONE ? message->data.result : CURLE_OK;
            break;
        }
        // The library shortens the wait to its own next deadline.
        library.multiPoll(state.multi, nullptr, 0, 1000, nullptr);
    }
    library.multiRemoveHandle(state.multi, curl);
    return code;
}

TransferResult run(SharedState& shared) {
    auto& state = *shared;
    TransferResult result;
    if (!state.library) {
        result.failure = TransferFailure::other;
        result.detail = "The network library can't be loaded.";
        return result;
    }
    const auto& library = *state.library;
    const auto parts = partsOf(library, state.url);
    if (!isPermitted(parts)) {
        result.failure = TransferFailure::insecureAddress;
        return result;
    }
    CURL* curl = library.easyInit();
    if (!curl) {
        result.failure = TransferFailure::other;
        return result;
    }
    char errorText[CURL_ERROR_SIZE] = {};
    library.easySetopt(curl, CURLOPT_ERRORBUFFER, errorText);
    configure(library, curl, shared, isLoopbackHttp(*parts));
    const auto code = perform(library, curl, state);
    library.easyGetinfo(curl, CURLINFO_RESPONSE_CODE, &result.httpStatus);
    library.easyCleanup(curl);
    result.failure = failureOf(code, state);
    result.detail = errorText[0] ? errorText : library.easyStrerror(code);
    if (result.failure == TransferFailure::none)
        result.body = std::move(state.body);
    return result;
}

}  // namespace

bool isPermittedAddress(const std::string& url) {
    const auto* library = CurlLibrary::get();
    return library && isPermitted(partsOf(*library, url));
}

Transfer::Transfer(MainLoopMailbox& mailbox, std::string url, TransferLimits limits,
                   Progress progress, Completion completion)
    : state_(std::make_shared<State>()) {
    state_->mailbox = &mailbox;
    state_->url = std::move(url);
    state_->limits = limits;
    state_->progress = std::move(progress);
    state_->completion = std::move(completion);
    if (state_->library)
        state_->multi = state_->library->multiInit();
    thread_ = std::thread([state = state_]() mutable {
        auto result = run(state);
        state->mailbox->post([state, result = std::move(result)]() mutable {
            if (!state->cancelled)
                state->completion(std::move(result));
        });
    });
}

Transfer::~Transfer() {
    cancel();
    if (thread_.joinable())
        thread_.join();
    if (state_->multi)
        state_->library->multiCleanup(state_->multi);
    state_->multi = nullptr;
}

void Transfer::cancel() {
    state_->cancelled = true;
    if (state_->multi)
        state_->library->multiWakeup(state_->multi);
}

}  // namespace platform::update

#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace testsupport {

// A small HTTP/1.1 server on 127.0.0.1 with a port of its own, for tests
// that download over a real socket. Each path answers as set up; a request
// for any other path gets 404. Every connection is served on a thread of its
// own and closed after one answer.
class LoopbackServer {
  public:
    struct Response {
        enum class Behaviour {
            complete,    // the whole body
            dropMidway,  // half the body, then the connection is closed
            stall,       // the headers, then nothing until the server stops
            silent,      // nothing at all: not even the headers
        };
        int status = 200;
        std::string body{};
        std::string contentType = "application/octet-stream";
        std::string location{};  // for a redirect
        Behaviour behaviour = Behaviour::complete;
    };

    LoopbackServer();
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    void serve(const std::string& path, Response response);
    void serve(const std::string& path, std::string body) {
        serve(path, Response{.body = std::move(body)});
    }
    // "http://127.0.0.1:PORT/path"
    std::string url(const std::string& path) const;
    // The paths asked for, in order.
    std::vector<std::string> requests() const;

  private:
    void acceptLoop();
    void answer(int connection);

    int listener_ = -1;
    int stopPipe_[2] = {-1, -1};
    std::uint16_t port_ = 0;
    mutable std::mutex mutex_;
    std::map<std::string, Response> responses_;
    std::vector<std::string> requests_;
    std::vector<std::thread> connections_;
    std::thread acceptor_;
};

}  // namespace testsupport

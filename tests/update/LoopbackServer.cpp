#include "LoopbackServer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace testsupport {

namespace {

void sendAll(int fd, const std::string& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const auto n = ::send(fd, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (n <= 0)
            return;
        sent += static_cast<std::size_t>(n);
    }
}

// The request line's path, once the headers have arrived.
std::string readRequestPath(int fd) {
    std::string request;
    char buffer[4096];
    while (request.find("\r\n\r\n") == std::string::npos && request.size() < 65536) {
        const auto n = ::recv(fd, buffer, sizeof buffer, 0);
        if (n <= 0)
            break;
        request.append(buffer, static_cast<std::size_t>(n));
    }
    const auto start = request.find(' ');
    const auto end = request.find(' ', start + 1);
    if (start == std::string::npos || end == std::string::npos)
        return {};
    return request.substr(start + 1, end - start - 1);
}

const char* reasonOf(int status) {
    switch (status) {
        case 200:
            return "OK";
        case 302:
            return "Found";
        case 404:
            return "Not Found";
        default:
            return "Status";
    }
}

}  // namespace

LoopbackServer::LoopbackServer() {
    listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (::bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listener_, 16) != 0 ||
        ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length) != 0 ||
        ::pipe2(stopPipe_, O_CLOEXEC) != 0) {
        std::abort();
    }
    port_ = ntohs(address.sin_port);
    acceptor_ = std::thread([this] { acceptLoop(); });
}

LoopbackServer::~LoopbackServer() {
    ::close(stopPipe_[1]);
    acceptor_.join();
    for (auto& connection : connections_)
        connection.join();
    ::close(stopPipe_[0]);
    ::close(listener_);
}

void LoopbackServer::serve(const std::string& path, Response response) {
    std::lock_guard lock(mutex_);
    responses_[path] = std::move(response);
}

std::string LoopbackServer::url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(port_) + path;
}

std::vector<std::string> LoopbackServer::requests() const {
    std::lock_guard lock(mutex_);
    return requests_;
}

void LoopbackServer::acceptLoop() {
    for (;;) {
        pollfd fds[2] = {{listener_, POLLIN, 0}, {stopPipe_[0], POLLIN, 0}};
        if (::poll(fds, 2, -1) < 0)
            continue;
        if (fds[1].revents)
            return;
        const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            continue;
        connections_.emplace_back([this, connection] {
            answer(connection);
            ::close(connection);
        });
    }
}

void LoopbackServer::answer(int connection) {
    const auto path = readRequestPath(connection);
    Response response{.status = 404, .body = "not here"};
    {
        std::lock_guard lock(mutex_);
        requests_.push_back(path);
        if (auto it = responses_.find(path); it != responses_.end())
            response = it->second;
    }
    const auto waitForStop = [this] {
        pollfd stop{stopPipe_[0], POLLIN, 0};
        ::poll(&stop, 1, -1);
    };
    if (response.behaviour == Response::Behaviour::silent) {
        waitForStop();
        return;
    }
    std::string head = "HTTP/1.1 " + std::to_string(response.status) + " " +
                       reasonOf(response.status) + "\r\nContent-Type: " + response.contentType +
                       "\r\nContent-Length: " + std::to_string(response.body.size()) +
                       "\r\nConnection: close\r\n";
    if (!response.location.empty())
        head += "Location: " + response.location + "\r\n";
    sendAll(connection, head + "\r\n");
    switch (response.behaviour) {
        case Response::Behaviour::complete:
            sendAll(connection, response.body);
            break;
        case Response::Behaviour::dropMidway:
            sendAll(connection, response.body.substr(0, response.body.size() / 2));
            break;
        case Response::Behaviour::stall:
            waitForStop();
            break;
        case Response::Behaviour::silent:
            break;
    }
}

}  // namespace testsupport

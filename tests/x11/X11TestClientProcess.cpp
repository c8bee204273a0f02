#include "X11TestClientProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace x11test {

namespace {
using Clock = std::chrono::steady_clock;

Clock::time_point deadlineAfter(double seconds) {
    return Clock::now() +
           std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

int millisecondsUntil(Clock::time_point deadline) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return left > 0 ? static_cast<int>(left) : 0;
}
}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments) {
    int toChild[2];
    int fromChild[2];
    if (::pipe2(toChild, O_CLOEXEC) != 0 || ::pipe2(fromChild, O_CLOEXEC) != 0) {
        throw std::runtime_error("cannot make pipes");
    }
    pid_ = ::fork();
    if (pid_ == 0) {
        ::dup2(toChild[0], STDIN_FILENO);
        ::dup2(fromChild[1], STDOUT_FILENO);
        std::vector<char*> argv;
        for (const auto& argument : arguments)
            argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        ::execvp(argv[0], argv.data());
        ::_exit(127);
    }
    ::close(toChild[0]);
    ::close(fromChild[1]);
    input_ = toChild[1];
    output_ = fromChild[0];
}

ChildProcess::~ChildProcess() {
    ::close(input_);
    if (!waitForExit(2)) {
        ::kill(pid_, SIGKILL);
        waitForExit(2);
    }
    ::close(output_);
}

bool ChildProcess::waitForExit(double seconds) {
    const auto deadline = deadlineAfter(seconds);
    while (pid_ > 0 && ::waitpid(pid_, nullptr, WNOHANG) != pid_) {
        if (Clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    pid_ = -std::abs(pid_);
    return true;
}

std::string ChildProcess::readLine(double seconds) {
    const auto deadline = deadlineAfter(seconds);
    for (;;) {
        const auto end = buffered_.find('\n');
        if (end != std::string::npos) {
            std::string line = buffered_.substr(0, end);
            buffered_.erase(0, end + 1);
            return line;
        }
        pollfd fd{output_, POLLIN, 0};
        if (::poll(&fd, 1, millisecondsUntil(deadline)) <= 0)
            return "";
        char buffer[4096];
        const ssize_t count = ::read(output_, buffer, sizeof buffer);
        if (count <= 0)
            return "";
        buffered_.append(buffer, static_cast<std::size_t>(count));
    }
}

bool ChildProcess::send(const std::string& line) {
    const std::string sent = line + "\n";
    return ::write(input_, sent.data(), sent.size()) == static_cast<ssize_t>(sent.size());
}

TestClient::TestClient() : process_({X11_TEST_CLIENT_PATH}) {
    if (process_.readLine(10) != "ready")
        throw std::runtime_error("the test client didn't start");
}

xcb_window_t TestClient::create(const std::string& name, const std::string& title) {
    const auto answer = expectOk("create " + name + " " + title);
    return static_cast<xcb_window_t>(std::strtoul(answer.c_str() + 3, nullptr, 16));
}

long TestClient::churnResult() {
    const auto answer = process_.readLine(0);
    if (answer.empty())
        return -1;
    if (answer.rfind("ok ", 0) != 0)
        throw std::runtime_error("churn failed: " + answer);
    return std::atol(answer.c_str() + 3);
}

std::string TestClient::expectOk(const std::string& command, double seconds) {
    const auto answer = process_.send(command) ? process_.readLine(seconds) : "";
    if (answer.rfind("ok", 0) != 0)
        throw std::runtime_error(command + " failed: " + answer);
    return answer;
}

}  // namespace x11test

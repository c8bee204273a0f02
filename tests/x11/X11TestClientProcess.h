#pragma once

#include <sys/types.h>
#include <xcb/xproto.h>

#include <string>
#include <vector>

namespace x11test {

// A running child process driven by lines on its standard input, answering
// with lines on its standard output: the test client, or any program.
class ChildProcess {
  public:
    // Starts the program with the arguments; the first argument is the path.
    explicit ChildProcess(const std::vector<std::string>& arguments);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t pid() const { return pid_; }
    bool isRunning();
    // Sends one line and waits for the next line of output; empty after the
    // time runs out or when the child has gone.
    std::string ask(const std::string& line, double seconds = 10);
    bool send(const std::string& line);
    std::string readLine(double seconds);
    // Waits for the child to end by itself.
    bool waitForExit(double seconds);

  private:
    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string buffered_;
};

// The test client: a process that makes and changes windows on command.
class TestClient {
  public:
    TestClient();

    pid_t pid() const { return process_.pid(); }
    // Creates a window under the name; its X id.
    xcb_window_t create(const std::string& name, const std::string& title = "");
    void retitle(const std::string& name, const std::string& title);
    void move(const std::string& name, int x, int y);
    void claimPid(const std::string& name, pid_t pid);
    void destroy(const std::string& name);
    // Starts making and ending windows as fast as it can for the time.
    void startChurn(double seconds);
    // How many windows the churn made, once it is over; -1 before.
    long churnResult();

  private:
    void expectOk(const std::string& command);

    ChildProcess process_;
};

}  // namespace x11test

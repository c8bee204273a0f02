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

    // Negative once the child has ended and been reaped.
    pid_t pid() const { return pid_; }
    bool send(const std::string& line);
    // The next line of output; empty after the time runs out or when the
    // child has gone.
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
    void retitle(const std::string& name, const std::string& title) {
        expectOk("title " + name + " " + title);
    }
    void move(const std::string& name, int x, int y) {
        expectOk("move " + name + " " + std::to_string(x) + " " + std::to_string(y));
    }
    void claimPid(const std::string& name, pid_t pid) {
        expectOk("pid " + name + " " + std::to_string(pid));
    }
    void destroy(const std::string& name) { expectOk("destroy " + name); }
    // What the windows created from now on say of themselves: their
    // WM_CLASS, their application id (empty: none), and their kind
    // ("normal", "dock", "desktop", "skip-taskbar").
    void setWindowClass(const std::string& instanceName, const std::string& className) {
        expectOk("class " + instanceName + " " + className);
    }
    void setApplicationId(const std::string& id) { expectOk("appid " + (id.empty() ? "-" : id)); }
    void setWindowKind(const std::string& kind) { expectOk("kind " + kind); }
    // Starts making and ending windows as fast as it can for the time.
    void startChurn(double seconds) { process_.send("churn " + std::to_string(seconds)); }
    // How many windows the churn made, once it is over; -1 before.
    long churnResult();

  private:
    // The answer to the command, which must begin with "ok".
    std::string expectOk(const std::string& command, double seconds = 10);

    ChildProcess process_;
};

}  // namespace x11test

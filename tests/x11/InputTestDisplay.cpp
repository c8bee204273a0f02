#include "x11/InputTestDisplay.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace x11test {

namespace {

std::string readLine(int fd) {
    std::string line;
    char c = 0;
    while (::read(fd, &c, 1) == 1 && c != '\n')
        line += c;
    return line;
}

int runQuietly(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str());
}

}  // namespace

InputTestDisplay::InputTestDisplay() {
    int fds[2];
    if (::pipe(fds) != 0)
        return;
    server_ = ::fork();
    if (server_ == 0) {
        ::close(fds[0]);
        const std::string displayFd = std::to_string(fds[1]);
        const int devNull = ::open("/dev/null", O_WRONLY);
        ::dup2(devNull, 1);
        ::dup2(devNull, 2);
        ::execlp("Xvfb", "Xvfb", "-displayfd", displayFd.c_str(), "-screen", "0", "1280x800x24",
                 "-nolisten", "tcp", "-noreset", static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ::close(fds[1]);
    const std::string number = server_ > 0 ? readLine(fds[0]) : std::string();
    ::close(fds[0]);
    if (!number.empty())
        name_ = ":" + number;
}

InputTestDisplay::~InputTestDisplay() {
    if (server_ <= 0)
        return;
    ::kill(server_, SIGTERM);
    ::waitpid(server_, nullptr, 0);
}

bool InputTestDisplay::setLayouts(const std::string& layouts) const {
    return runQuietly("setxkbmap -display " + name_ + " " + layouts) == 0;
}

FakeInput::FakeInput(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (!xcb_connection_has_error(connection_)) {
        root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    }
}

FakeInput::~FakeInput() {
    xcb_disconnect(connection_);
}

void FakeInput::fake(std::uint8_t type, std::uint8_t detail, int x, int y) {
    xcb_test_fake_input(connection_, type, detail, XCB_CURRENT_TIME, root_,
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
}

void FakeInput::press(xcb_keycode_t key) {
    fake(XCB_KEY_PRESS, key);
}
void FakeInput::release(xcb_keycode_t key) {
    fake(XCB_KEY_RELEASE, key);
}
void FakeInput::tap(xcb_keycode_t key) {
    press(key);
    release(key);
}
void FakeInput::movePointer(int x, int y) {
    fake(XCB_MOTION_NOTIFY, 0, x, y);
}

xcb_atom_t FakeInput::atom(const char* name) {
    auto* reply = xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr);
    const xcb_atom_t value = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return value;
}

void FakeInput::sync() {
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

}  // namespace x11test

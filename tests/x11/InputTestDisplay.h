#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <string>

namespace x11test {

// A private X server (Xvfb) for the input tests, which change the keymap and
// press keys: on the shared desktop they would disturb tests running beside
// them. It lives as long as this object.
class InputTestDisplay {
  public:
    InputTestDisplay();
    ~InputTestDisplay();
    InputTestDisplay(const InputTestDisplay&) = delete;
    InputTestDisplay& operator=(const InputTestDisplay&) = delete;

    bool started() const { return !name_.empty(); }
    const std::string& name() const { return name_; }

    // Loads layouts as a keyboard configuration tool does ("us", "ru,us").
    bool setLayouts(const std::string& layouts) const;

  private:
    pid_t server_ = -1;
    std::string name_;
};

// Presses keys and moves the pointer through the test extension, on a
// connection of its own, and waits until the server has done it.
class FakeInput {
  public:
    explicit FakeInput(const std::string& display);
    ~FakeInput();
    FakeInput(const FakeInput&) = delete;
    FakeInput& operator=(const FakeInput&) = delete;

    xcb_connection_t* connection() const { return connection_; }
    xcb_window_t root() const { return root_; }

    void press(xcb_keycode_t key);
    void release(xcb_keycode_t key);
    void tap(xcb_keycode_t key);
    void movePointer(int x, int y);
    // Waits until every request so far has been carried out.
    void sync();
    // The atom of that name, made if the server has none yet.
    xcb_atom_t atom(const char* name);

  private:
    void fake(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0);

    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_NONE;
};

}  // namespace x11test

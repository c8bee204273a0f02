#pragma once

#include <sys/types.h>
#include <xcb/xproto.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform::x11 {

// The widths the window manager's frame adds on each side of a client.
struct X11FrameExtents {
    std::uint32_t left = 0;
    std::uint32_t right = 0;
    std::uint32_t top = 0;
    std::uint32_t bottom = 0;
};

// What the backend remembers of one managed client window, kept current from
// the X events about it.
struct X11WindowState {
    // The process standing for the window's application: the owning process,
    // or the one that stands for the application the owner belongs to when
    // several processes are one application. Zero when no owner is known.
    pid_t pid = 0;
    pid_t claimedPid = 0;
    pid_t connectionPid = 0;

    std::optional<std::string> netName;  // _NET_WM_NAME, UTF-8
    std::optional<std::string> wmName;   // WM_NAME, converted to UTF-8
    std::vector<xcb_atom_t> types;
    bool hidden = false;
    bool fullScreen = false;
    bool skipTaskbar = false;
    // Absent when the window manager publishes no list: everything allowed.
    std::optional<std::vector<xcb_atom_t>> allowedActions;

    // The client area in root coordinates, top-left origin, inside the border.
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    X11FrameExtents extents;

    // When the window last became the active one (0: never) and its place in
    // the stacking order (higher is nearer the top).
    std::uint64_t activationSerial = 0;
    std::uint32_t stackingIndex = 0;

    // The frame the window manager draws around the client, in top-left
    // root coordinates.
    double frameLeft() const { return double(x) - extents.left; }
    double frameTop() const { return double(y) - extents.top; }
    double frameWidth() const { return double(width) + extents.left + extents.right; }
    double frameHeight() const { return double(height) + extents.top + extents.bottom; }
    bool frameHolds(double pointX, double pointY) const {
        return pointX >= frameLeft() && pointX < frameLeft() + frameWidth() &&
               pointY >= frameTop() && pointY < frameTop() + frameHeight();
    }

    const std::optional<std::string>& title() const { return netName ? netName : wmName; }
    // The owning process: the window's own claim, else the X server's word
    // about the connection that made it.
    pid_t processPid() const { return claimedPid > 0 ? claimedPid : connectionPid; }
    void settlePid() { pid = processPid(); }
    bool allows(xcb_atom_t action) const {
        if (!allowedActions)
            return true;
        for (auto allowed : *allowedActions) {
            if (allowed == action)
                return true;
        }
        return false;
    }
};

}  // namespace platform::x11

#pragma once

#include <compare>
#include <cstdint>
#include <memory>

#include "platform/Image.h"
#include "platform/Menu.h"

namespace platform {

// How the application takes part in the desktop. Stored and logged by its
// raw value, which may be one the platform doesn't know.
enum class ActivationPolicy : std::int64_t {
    regular = 0,     // in the taskbar and app switcher
    accessory = 1,   // no taskbar presence; windows can still come forward
    prohibited = 2,  // never activates
};

// The direction the user interface reads in. Raw values are the platform's.
enum class UserInterfaceLayoutDirection : int {
    leftToRight = 0,
    rightToLeft = 1,
};

// The version of the operating system, in the platform's numbering.
struct OperatingSystemVersion {
    int majorVersion = 0;
    int minorVersion = 0;
    int patchVersion = 0;

    friend auto operator<=>(const OperatingSystemVersion&, const OperatingSystemVersion&) = default;
};

// The first version whose windows take the newer layouts (a Settings window
// in tabs). Desktops other than the platform's own draw their windows so,
// and answer with it.
inline constexpr OperatingSystemVersion tabbedSettingsVersion{15, 0, 0};

// The running program itself, as the platform sees it.
class Application {
  public:
    virtual ~Application() = default;

    virtual ActivationPolicy activationPolicy() const = 0;
    virtual bool setActivationPolicy(ActivationPolicy policy) = 0;

    virtual void activate() = 0;
    virtual bool isActive() const = 0;

    virtual std::shared_ptr<Menu> mainMenu() const = 0;
    virtual void setMainMenu(std::shared_ptr<Menu> menu) = 0;

    // The reading direction of the application's interface; left to right
    // unless a backend knows better.
    virtual UserInterfaceLayoutDirection userInterfaceLayoutDirection() const {
        return UserInterfaceLayoutDirection::leftToRight;
    }

    virtual OperatingSystemVersion operatingSystemVersion() const { return tabbedSettingsVersion; }
    bool isOperatingSystemAtLeastVersion(const OperatingSystemVersion& version) const {
        return operatingSystemVersion() >= version;
    }

    // The program's own icon, as the onboarding and About windows show it.
    virtual Image applicationIconImage() const { return Image::resource("AppIcon"); }

    // Ends the program through the platform's own quit path.
    virtual void terminate() = 0;
};

}  // namespace platform

#pragma once

#include <QDBusConnection>
#include <QString>
#include <map>
#include <mutex>
#include <variant>

#include "platform/PowerManagement.h"

namespace platform::sessionbus {

// Power assertions held through the desktop's screen-saver inhibition
// service on the session bus (org.freedesktop.ScreenSaver), where one
// answers; where none does, through the fallback given (the X server's
// screen-saver suspension). Each assertion is one inhibition, asked for
// under the application's name with the assertion's name as the reason.
class SessionBusScreenSaverInhibition final : public PowerManagement {
  public:
    // The fallback must outlive this object.
    SessionBusScreenSaverInhibition(QString applicationName, PowerManagement& fallback,
                                    QDBusConnection bus = QDBusConnection::sessionBus());

    std::optional<AssertionID> assertionCreateWithName(const std::string& name) override;
    void assertionRelease(AssertionID assertion) override;

    // Whether the assertion is held by the session-bus service rather than
    // the fallback.
    bool isHeldByService(AssertionID assertion);

  private:
    struct Inhibition {
        quint32 cookie;
    };
    struct FallbackAssertion {
        AssertionID id;
    };
    using Held = std::variant<Inhibition, FallbackAssertion>;

    std::optional<quint32> inhibit(const QString& reason);
    void uninhibit(quint32 cookie);

    QString applicationName_;
    PowerManagement& fallback_;
    QDBusConnection bus_;
    std::mutex mutex_;
    std::map<AssertionID, Held> held_;
    AssertionID lastID_ = 0;
};

}  // namespace platform::sessionbus

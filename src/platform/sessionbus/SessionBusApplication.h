#pragma once

#include <QDBusConnection>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

class QDBusVirtualObject;

namespace platform::sessionbus {

// One copy of the program per session, through a well-known name on the
// session bus. The copy that owns the name answers the desktop's
// application interface (org.freedesktop.Application) on the object path
// made from the name; a later start finds the name taken and hands its
// request to the owner instead of running.
class SessionBusApplication {
  public:
    // What a later start asks of the running copy: an empty action is a
    // plain activation, anything else one of the program's named actions.
    using RequestHandler = std::function<void(const std::string& action)>;

    // What a claim does when another process owns the name.
    enum class WhenOwned {
        refuse,  // nothing is claimed
        queue,   // the name passes to this claim once the owner lets it go
    };

    // Owns the name, or waits in the bus's queue for it, and answers
    // requests with the handler; nothing when the claim was refused.
    static std::unique_ptr<SessionBusApplication> claim(const QString& name, RequestHandler handler,
                                                        QDBusConnection bus,
                                                        WhenOwned whenOwned = WhenOwned::refuse);
    ~SessionBusApplication();
    SessionBusApplication(const SessionBusApplication&) = delete;
    SessionBusApplication& operator=(const SessionBusApplication&) = delete;

    // Asks the owner of the name for the action (empty: activation) and
    // waits for its answer. True when it answered without an error.
    static bool ask(const QString& name, const std::string& action, QDBusConnection bus);

    // Waits, running the events of this thread, until some process owns the
    // name or the time is up. True when it is owned.
    static bool waitForOwner(const QString& name, QDBusConnection bus,
                             std::chrono::milliseconds timeout);

    // "harrowmere.Tarnwick" answers on "/harrowmere/Tarnwick".
    static QString objectPathFor(const QString& name);

  private:
    SessionBusApplication(QString name, QDBusConnection bus);

    QString name_;
    QDBusConnection bus_;
    std::unique_ptr<QDBusVirtualObject> object_;
};

}  // namespace platform::sessionbus

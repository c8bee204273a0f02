#include "platform/sessionbus/SessionBusApplication.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusVirtualObject>
#include <QEventLoop>
#include <QTimer>
#include <QVariantMap>

namespace platform::sessionbus {

namespace {

const QString applicationInterface = QStringLiteral("org.freedesktop.Application");

// How long a later start waits for the running copy, which answers from its
// event loop.
constexpr int answerTimeoutMs = 10'000;

const char* const introspection = R"(<interface name="org.freedesktop.Application">
  <method name="Activate"><arg type="a{sv}" name="platform_data" direction="in"/></method>
  <method name="Open">
    <arg type="as" name="uris" direction="in"/>
    <arg type="a{sv}" name="platform_data" direction="in"/>
  </method>
  <method name="ActivateAction">
    <arg type="s" name="action_name" direction="in"/>
    <arg type="av" name="parameter" direction="in"/>
    <arg type="a{sv}" name="platform_data" direction="in"/>
  </method>
</interface>
)";

// The running copy's side: each call is answered at once, and the handler
// is called with what it asked for.
class ApplicationObject final : public QDBusVirtualObject {
  public:
    explicit ApplicationObject(SessionBusApplication::RequestHandler handler)
        : handler_(std::move(handler)) {}

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() != applicationInterface)
            return false;
        const auto arguments = message.arguments();
        std::optional<std::string> action;
        if (message.member() == QLatin1String("Activate")) {
            action = std::string();
        } else if (message.member() == QLatin1String("Open")) {
            // The program opens no files: opening is an activation.
            action = std::string();
        } else if (message.member() == QLatin1String("ActivateAction") && !arguments.isEmpty()) {
            action = arguments.front().toString().toStdString();
        }
        if (!action) {
            connection.send(message.createErrorReply(QDBusError::UnknownMethod,
                                                     QStringLiteral("No such method")));
            return true;
        }
        connection.send(message.createReply());
        handler_(*action);
        return true;
    }

    QString introspect(const QString&) const override { return QString::fromUtf8(introspection); }

  private:
    SessionBusApplication::RequestHandler handler_;
};

}  // namespace

SessionBusApplication::SessionBusApplication(QString name, QDBusConnection bus)
    : name_(std::move(name)), bus_(std::move(bus)) {}

SessionBusApplication::~SessionBusApplication() {
    if (name_.isEmpty())
        return;
    bus_.unregisterObject(objectPathFor(name_));
    bus_.unregisterService(name_);
}

std::unique_ptr<SessionBusApplication> SessionBusApplication::claim(const QString& name,
                                                                    RequestHandler handler,
                                                                    QDBusConnection bus,
                                                                    WhenOwned whenOwned) {
    if (!bus.isConnected() || !bus.interface())
        return nullptr;
    std::unique_ptr<SessionBusApplication> application(new SessionBusApplication(name, bus));
    application->object_ = std::make_unique<ApplicationObject>(std::move(handler));
    // The object is in place before the name is, so that no request finds
    // the name without it.
    if (!bus.registerVirtualObject(objectPathFor(name), application->object_.get()))
        return nullptr;
    // The bus gives the name to one of two claims at the same moment; the
    // other is told at once, or waits in the queue for it.
    const bool queue = whenOwned == WhenOwned::queue;
    const auto reply = bus.interface()->registerService(
        name,
        queue ? QDBusConnectionInterface::QueueService : QDBusConnectionInterface::DontQueueService,
        QDBusConnectionInterface::DontAllowReplacement);
    const bool claimed =
        reply.isValid() && (reply.value() == QDBusConnectionInterface::ServiceRegistered ||
                            (queue && reply.value() == QDBusConnectionInterface::ServiceQueued));
    if (!claimed) {
        bus.unregisterObject(objectPathFor(name));
        application->name_.clear();
        return nullptr;
    }
    return application;
}

bool SessionBusApplication::ask(const QString& name, const std::string& action,
                                QDBusConnection bus) {
    if (!bus.isConnected())
        return false;
    QDBusMessage call;
    if (action.empty()) {
        call = QDBusMessage::createMethodCall(name, objectPathFor(name), applicationInterface,
                                              QStringLiteral("Activate"));
        call << QVariantMap();
    } else {
        call = QDBusMessage::createMethodCall(name, objectPathFor(name), applicationInterface,
                                              QStringLiteral("ActivateAction"));
        call << QString::fromStdString(action) << QVariantList() << QVariantMap();
    }
    const auto reply = bus.call(call, QDBus::Block, answerTimeoutMs);
    return reply.type() == QDBusMessage::ReplyMessage;
}

bool SessionBusApplication::waitForOwner(const QString& name, QDBusConnection bus,
                                         std::chrono::milliseconds timeout) {
    if (!bus.isConnected() || !bus.interface())
        return false;
    // Watching first, so that an owner that comes between the look and the
    // wait is not missed.
    QDBusServiceWatcher watcher(name, bus, QDBusServiceWatcher::WatchForRegistration);
    QEventLoop loop;
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &loop, &QEventLoop::quit);
    QTimer::singleShot(timeout, &loop, &QEventLoop::quit);
    if (!bus.interface()->isServiceRegistered(name))
        loop.exec();
    return bus.interface()->isServiceRegistered(name);
}

QString SessionBusApplication::objectPathFor(const QString& name) {
    return QLatin1Char('/') + QString(name).replace(QLatin1Char('.'), QLatin1Char('/'));
}

}  // namespace platform::sessionbus

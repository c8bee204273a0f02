#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <vector>

namespace testsupport {

// The Qt application object the bus tests share; made at the first call.
inline QCoreApplication& busTestApplication() {
    static int argc = 1;
    static char name[] = "sessionbus_tests";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);
    return app;
}

// A session bus of the test's own, ended with the test.
class PrivateSessionBus {
  public:
    PrivateSessionBus() {
        busTestApplication();
        daemon_.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
        if (daemon_.waitForStarted(5000) && daemon_.waitForReadyRead(5000))
            address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    }
    ~PrivateSessionBus() {
        for (const auto& name : names_)
            QDBusConnection::disconnectFromBus(name);
        daemon_.kill();
        daemon_.waitForFinished(5000);
    }
    PrivateSessionBus(const PrivateSessionBus&) = delete;
    PrivateSessionBus& operator=(const PrivateSessionBus&) = delete;

    bool isRunning() const { return !address_.isEmpty(); }
    const QString& address() const { return address_; }
    // A connection of its own to the bus, as another process would have.
    QDBusConnection connect(const QString& name) {
        names_.push_back(name);
        return QDBusConnection::connectToBus(address_, name);
    }

  private:
    QProcess daemon_;
    QString address_;
    std::vector<QString> names_;
};

}  // namespace testsupport

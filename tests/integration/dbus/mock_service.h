#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantList>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/linux/dbus/dbus_call.h"
#include "private_bus.h"

namespace marzipel::dbustest {

/// A python3-dbusmock service, ready (its name owned) once constructed; throws when it is not
/// within a deadline.
class MockService {
public:
    /// `templateName` is one of ours in mocks/ (without ".py") or one that dbusmock ships.
    MockService(const std::string& templateName, const QString& busName, bool systemBus,
                const std::string& parametersJson = "{}")
        : name_(busName), systemBus_(systemBus) {
        const auto own = std::filesystem::path(MOCKS_DIR) / (templateName + ".py");
        const std::string templateArgument =
            std::filesystem::exists(own) ? own.string() : templateName;
        process_ = Child({DBUSMOCK_PYTHON, "-m", "dbusmock", systemBus ? "--system" : "--session",
                          "--template", templateArgument, "--parameters", parametersJson});
        if (!waitUntil([&] { return dbus::hasOwner(bus(), name_); }))
            throw std::runtime_error("mock " + templateName + " did not appear on the bus");
    }
    ~MockService() { stop(); }

    pid_t pid() const { return process_.pid(); }
    QDBusConnection bus() const {
        return systemBus_ ? QDBusConnection::systemBus() : QDBusConnection::sessionBus();
    }
    /// Ends the service and waits until its name has left the bus.
    void stop() {
        if (process_.pid() <= 0) return;
        process_.stop();
        if (!waitUntil([&] { return !dbus::hasOwner(bus(), name_); }))
            throw std::runtime_error("mock name stayed on the bus");
    }

    /// Arguments of each call of `method` on the object at `path`, oldest first.
    std::vector<QVariantList> calls(const QString& path, const QString& method) const {
        const QDBusMessage reply = control(path, "GetMethodCalls", {method});
        std::vector<QVariantList> result;
        const QDBusArgument list = reply.arguments().at(0).value<QDBusArgument>();
        list.beginArray();
        while (!list.atEnd()) {
            qulonglong timestamp = 0;
            QVariantList arguments;
            list.beginStructure();
            list >> timestamp >> arguments;
            list.endStructure();
            result.push_back(arguments);
        }
        list.endArray();
        return result;
    }
    /// Calls a method of dbusmock's own control interface on the object at `path`; throws when
    /// it fails.
    QDBusMessage control(const QString& path, const QString& method,
                         const QVariantList& arguments) const {
        QDBusMessage message =
            QDBusMessage::createMethodCall(name_, path, "org.freedesktop.DBus.Mock", method);
        message.setArguments(arguments);
        const QDBusMessage reply = bus().call(message, QDBus::Block, 5000);
        if (reply.type() != QDBusMessage::ReplyMessage)
            throw std::runtime_error(method.toStdString() + " failed: " + dbus::errorText(reply));
        return reply;
    }

private:
    Child process_;
    QString name_;
    bool systemBus_;
};

inline const QString kKeyboardPath = QStringLiteral("/org/freedesktop/UPower/KbdBacklight");

/// A stand-in UPower keyboard backlight with levels 0 to `max`, now at `level`.
inline std::unique_ptr<MockService> startKeyboardBacklight(int max = 3, int level = 2) {
    return std::make_unique<MockService>(
        "upower_kbd_backlight", "org.freedesktop.UPower", true,
        "{\"max\": " + std::to_string(max) + ", \"level\": " + std::to_string(level) + "}");
}

/// Makes later reads of a stand-in UPower keyboard fail, as a controller that does not answer.
inline void failKeyboardReads(const MockService& keyboard) {
    keyboard.control(kKeyboardPath, "AddMethod",
                     {"org.freedesktop.UPower.KbdBacklight", "GetBrightness", "", "i",
                      "raise dbus.exceptions.DBusException('the EC did not answer', "
                      "name='org.freedesktop.UPower.GeneralError')"});
}

/// The levels set on a stand-in UPower keyboard, oldest first.
inline std::vector<int> keyboardLevelsSet(const MockService& keyboard) {
    std::vector<int> levels;
    for (const QVariantList& arguments : keyboard.calls(kKeyboardPath, "SetBrightness"))
        levels.push_back(arguments.at(0).toInt());
    return levels;
}

}  // namespace marzipel::dbustest

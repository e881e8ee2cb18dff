#include "mock_service.h"

#include <QDBusArgument>
#include <filesystem>
#include <stdexcept>

#include "platform/linux/dbus_call.h"

namespace marzipel::dbustest {

MockService::MockService(const std::string& templateName, const QString& busName, bool systemBus,
                         const std::string& parametersJson)
    : name_(busName), systemBus_(systemBus) {
    const std::filesystem::path own = std::filesystem::path(MOCKS_DIR) / (templateName + ".py");
    const std::string templateArgument = std::filesystem::exists(own) ? own.string() : templateName;
    process_ = Child({DBUSMOCK_PYTHON, "-m", "dbusmock", systemBus ? "--system" : "--session",
                      "--template", templateArgument, "--parameters", parametersJson});
    if (!waitUntil([&] { return dbus::hasOwner(bus(), name_); }))
        throw std::runtime_error("mock " + templateName + " did not appear on the bus");
}

QDBusConnection MockService::bus() const {
    return systemBus_ ? QDBusConnection::systemBus() : QDBusConnection::sessionBus();
}

void MockService::stop() {
    if (process_.pid() <= 0) return;
    process_.stop();
    if (!waitUntil([&] { return !dbus::hasOwner(bus(), name_); }))
        throw std::runtime_error("mock name stayed on the bus");
}

std::vector<QVariantList> MockService::calls(const QString& path, const QString& method) const {
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

QDBusMessage MockService::control(const QString& path, const QString& method,
                                  const QVariantList& arguments) const {
    QDBusMessage message =
        QDBusMessage::createMethodCall(name_, path, "org.freedesktop.DBus.Mock", method);
    message.setArguments(arguments);
    const QDBusMessage reply = bus().call(message, QDBus::Block, 5000);
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error(method.toStdString() + " failed: " + dbus::errorText(reply));
    return reply;
}

}  // namespace marzipel::dbustest

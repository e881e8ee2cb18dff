#include "platform/linux/windows/window_report_reader.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QVariantMap>
#include <cmath>

namespace marzipel {
namespace {

std::string readProcessId(const QVariant& value, std::int32_t& processId) {
    double number = 0;
    if (value.metaType().id() == QMetaType::Int) {
        number = value.toInt();
    } else if (value.metaType().id() == QMetaType::Double) {
        number = value.toDouble();
        if (number != std::floor(number)) return "pid is not a whole number";
    } else {
        return "pid is not a number";
    }
    if (number <= 0 || number > kMaxProcessId) return "pid is out of range";
    processId = static_cast<std::int32_t>(number);
    return {};
}

std::string readName(const QVariantMap& map, const QString& key, std::string& name) {
    const auto found = map.constFind(key);
    if (found == map.constEnd()) return {};
    if (found->metaType().id() != QMetaType::QString) return key.toStdString() + " is not text";
    const QString text = found->toString();
    if (text.size() > kMaxReportedNameLength) return key.toStdString() + " is too long";
    name = text.toStdString();
    return {};
}

std::string readWindow(const QVariantMap& map, ReportedWindow& window) {
    if (!map.contains(QStringLiteral("pid"))) return "a window has no pid";
    if (std::string fault =
            readProcessId(map.value(QStringLiteral("pid")), window.identity.processId);
        !fault.empty())
        return fault;
    const QVariant fullScreen = map.value(QStringLiteral("fullScreen"));
    if (fullScreen.isValid() && fullScreen.metaType().id() != QMetaType::Bool)
        return "fullScreen is not a boolean";
    window.fullScreen = fullScreen.toBool();
    std::string applicationId;
    for (auto [key, name] : {std::pair{QStringLiteral("desktopFileName"), &applicationId},
                             {QStringLiteral("resourceName"), &window.identity.instance},
                             {QStringLiteral("resourceClass"), &window.identity.className}}) {
        if (std::string fault = readName(map, key, *name); !fault.empty()) return fault;
    }
    if (!applicationId.empty()) window.identity.applicationId = applicationId;
    return {};
}

bool isMap(const QDBusArgument& argument) {
    return argument.currentSignature() == QLatin1String("a{sv}");
}

std::string readElements(const QDBusArgument& list, std::vector<WindowIdentity>& read) {
    while (!list.atEnd()) {
        if (read.size() == kMaxReportedWindows) return "too many windows";
        QDBusVariant element;
        list >> element;
        const QVariant value = element.variant();
        if (value.metaType().id() != qMetaTypeId<QDBusArgument>() ||
            !isMap(value.value<QDBusArgument>()))
            return "a window is not an a{sv}";
        ReportedWindow window;
        if (std::string fault = readWindow(qdbus_cast<QVariantMap>(value), window); !fault.empty())
            return fault;
        read.push_back(std::move(window.identity));
    }
    return {};
}

}  // namespace

std::string WindowReportReader::readActive(const QDBusMessage& call,
                                           std::optional<ReportedWindow>& window) {
    if (call.signature() != QLatin1String("a{sv}"))
        return "expected a{sv}, got " + call.signature().toStdString();
    const QVariantMap map = qdbus_cast<QVariantMap>(call.arguments().constFirst());
    if (map.isEmpty()) {
        window.reset();
        return {};
    }
    ReportedWindow read;
    if (std::string fault = readWindow(map, read); !fault.empty()) return fault;
    window = std::move(read);
    return {};
}

std::string WindowReportReader::readWindows(const QDBusMessage& call,
                                            std::vector<WindowIdentity>& windows) {
    if (call.signature() != QLatin1String("av"))
        return "expected av, got " + call.signature().toStdString();
    const QDBusArgument list = call.arguments().constFirst().value<QDBusArgument>();
    std::vector<WindowIdentity> read;
    list.beginArray();
    const std::string fault = readElements(list, read);
    // Also after a fault: the reader of the message is freed only when its array ends.
    list.endArray();
    if (fault.empty()) windows = std::move(read);
    return fault;
}

}  // namespace marzipel

#include "platform/linux/windows/window_report_reader.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QVariantMap>
#include <cmath>

namespace marzipel {
namespace {

Result<std::int32_t> readProcessId(const QVariant& value) {
    double number = 0;
    if (value.metaType().id() == QMetaType::Int) {
        number = value.toInt();
    } else if (value.metaType().id() == QMetaType::Double) {
        number = value.toDouble();
        if (number != std::floor(number)) return Status::failure("pid is not a whole number");
    } else {
        return Status::failure("pid is not a number");
    }
    if (number <= 0 || number > kMaxProcessId) return Status::failure("pid is out of range");
    return static_cast<std::int32_t>(number);
}

/// The text under `key`; empty when there is none.
Result<std::string> readName(const QVariantMap& map, const QString& key) {
    const auto found = map.constFind(key);
    if (found == map.constEnd()) return std::string();
    if (found->metaType().id() != QMetaType::QString) {
        return Status::failure(key.toStdString() + " is not text");
    }
    const QString text = found->toString();
    if (text.size() > kMaxReportedNameLength) {
        return Status::failure(key.toStdString() + " is too long");
    }
    return text.toStdString();
}

Result<ReportedWindow> readWindow(const QVariantMap& map) {
    if (!map.contains(QStringLiteral("pid"))) return Status::failure("a window has no pid");
    const Result<std::int32_t> processId = readProcessId(map.value(QStringLiteral("pid")));
    if (!processId.ok()) return processId.status();
    ReportedWindow window;
    window.identity.processId = processId.value();
    const QVariant fullScreen = map.value(QStringLiteral("fullScreen"));
    if (fullScreen.isValid() && fullScreen.metaType().id() != QMetaType::Bool)
        return Status::failure("fullScreen is not a boolean");
    window.fullScreen = fullScreen.toBool();
    std::string applicationId;
    for (auto [key, name] : {std::pair{QStringLiteral("desktopFileName"), &applicationId},
                             {QStringLiteral("resourceName"), &window.identity.instance},
                             {QStringLiteral("resourceClass"), &window.identity.className}}) {
        Result<std::string> read = readName(map, key);
        if (!read.ok()) return read.status();
        *name = std::move(read).value();
    }
    if (!applicationId.empty()) window.identity.applicationId = applicationId;
    return window;
}

bool isMap(const QDBusArgument& argument) {
    return argument.currentSignature() == QLatin1String("a{sv}");
}

Result<std::vector<WindowIdentity>> readElements(const QDBusArgument& list) {
    std::vector<WindowIdentity> read;
    while (!list.atEnd()) {
        if (read.size() == kMaxReportedWindows) return Status::failure("too many windows");
        QDBusVariant element;
        list >> element;
        const QVariant value = element.variant();
        if (value.metaType().id() != qMetaTypeId<QDBusArgument>() ||
            !isMap(value.value<QDBusArgument>()))
            return Status::failure("a window is not an a{sv}");
        Result<ReportedWindow> window = readWindow(qdbus_cast<QVariantMap>(value));
        if (!window.ok()) return window.status();
        read.push_back(std::move(window).value().identity);
    }
    return read;
}

}  // namespace

Result<std::optional<ReportedWindow>> WindowReportReader::readActive(const QDBusMessage& call) {
    if (call.signature() != QLatin1String("a{sv}"))
        return Status::failure("expected a{sv}, got " + call.signature().toStdString());
    const QVariantMap map = qdbus_cast<QVariantMap>(call.arguments().constFirst());
    if (map.isEmpty()) return std::optional<ReportedWindow>();
    Result<ReportedWindow> window = readWindow(map);
    if (!window.ok()) return window.status();
    return std::optional<ReportedWindow>(std::move(window).value());
}

Result<std::vector<WindowIdentity>> WindowReportReader::readWindows(const QDBusMessage& call) {
    if (call.signature() != QLatin1String("av"))
        return Status::failure("expected av, got " + call.signature().toStdString());
    const QDBusArgument list = call.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    Result<std::vector<WindowIdentity>> windows = readElements(list);
    // Also after a fault: the reader of the message is freed only when its array ends.
    list.endArray();
    return windows;
}

}  // namespace marzipel

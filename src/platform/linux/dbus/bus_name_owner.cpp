#include "platform/linux/dbus/bus_name_owner.h"

#include <QDBusServiceWatcher>

#include "platform/linux/dbus/dbus_call.h"

namespace marzipel {

BusNameOwner::BusNameOwner(QDBusConnection bus, QString name)
    : name_(std::move(name)),
      watcher_(std::make_unique<QDBusServiceWatcher>(name_, bus,
                                                     QDBusServiceWatcher::WatchForOwnerChange)) {
    QObject::connect(watcher_.get(), &QDBusServiceWatcher::serviceOwnerChanged, watcher_.get(),
                     [this](const QString&, const QString&, const QString& newOwner) {
                         owner_ = newOwner;
                         if (changed_) changed_(owner_);
                     });
    // After the watch is in place, so that no change falls between the two.
    const Result<QVariant> owner = dbus::firstResult(
        dbus::call(bus, dbus::busDaemon(), QStringLiteral("GetNameOwner"), {name_}));
    if (owner.ok()) owner_ = owner.value().toString();
}

BusNameOwner::~BusNameOwner() = default;

}  // namespace marzipel

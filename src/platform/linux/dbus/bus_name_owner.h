#pragma once

#include <QDBusConnection>
#include <QString>
#include <functional>
#include <memory>

class QDBusServiceWatcher;

namespace marzipel {

/// Which connection owns a well-known name on a bus, kept current from the bus's own
/// announcements, so asking costs no call. The bus announces a new owner before that owner
/// can send anything, so a message is checked against the owner of its moment. Main thread
/// only.
class BusNameOwner {
public:
    /// Asks the bus once (a blocking call) and then follows its announcements.
    BusNameOwner(QDBusConnection bus, QString name);
    ~BusNameOwner();
    BusNameOwner(const BusNameOwner&) = delete;
    BusNameOwner& operator=(const BusNameOwner&) = delete;

    const QString& name() const { return name_; }
    /// The owner's unique name, empty when the name has none.
    const QString& owner() const { return owner_; }
    /// Called after every change of owner with the new one (empty when the name was released
    /// or its owner left the bus).
    void setChangedHandler(std::function<void(const QString& owner)> handler) {
        changed_ = std::move(handler);
    }

private:
    QString name_;
    QString owner_;
    std::unique_ptr<QDBusServiceWatcher> watcher_;
    std::function<void(const QString&)> changed_;
};

}  // namespace marzipel

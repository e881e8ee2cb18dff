#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantList>
#include <string>
#include <vector>

#include "private_bus.h"

namespace marzipel::dbustest {

/// A python3-dbusmock service, ready (its name owned) once constructed; throws when it is not
/// within a deadline.
class MockService {
public:
    /// `templateName` is one of ours in mocks/ (without ".py") or one that dbusmock ships.
    MockService(const std::string& templateName, const QString& busName, bool systemBus,
                const std::string& parametersJson = "{}");
    ~MockService() { stop(); }

    pid_t pid() const { return process_.pid(); }
    QDBusConnection bus() const;
    /// Ends the service and waits until its name has left the bus.
    void stop();

    /// Arguments of each call of `method` on the object at `path`, oldest first.
    std::vector<QVariantList> calls(const QString& path, const QString& method) const;
    /// Calls a method of dbusmock's own control interface on the object at `path`; throws when
    /// it fails.
    QDBusMessage control(const QString& path, const QString& method,
                         const QVariantList& arguments) const;

private:
    Child process_;
    QString name_;
    bool systemBus_;
};

}  // namespace marzipel::dbustest

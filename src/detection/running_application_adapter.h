#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/workspace.h"

namespace marzipel {

/// The trigger logic's view of one running application, usually the frontmost one.
class RunningApplicationProtocol {
public:
    virtual ~RunningApplicationProtocol() = default;
    /// The wrapped application.
    virtual const RunningApplication& application() const = 0;

    /// Its bundle identifier, when it has one.
    const std::optional<std::string>& bundleIdentifier() const {
        return application().bundleIdentifier;
    }
    /// Whether the same process occurs in `applications`.
    bool isAmong(const std::vector<RunningApplication>& applications) const;
};

/// Holds one running application for the length of one event. Two adapters are equal when they
/// wrap the same process.
class RunningApplicationAdapter final : public RunningApplicationProtocol {
public:
    explicit RunningApplicationAdapter(RunningApplication application)
        : application_(std::move(application)) {}

    const RunningApplication& application() const override { return application_; }

    friend bool operator==(const RunningApplicationAdapter& a, const RunningApplicationAdapter& b) {
        return a.application_ == b.application_;
    }

private:
    RunningApplication application_;
};

}  // namespace marzipel

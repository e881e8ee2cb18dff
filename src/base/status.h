#pragma once

#include <cassert>
#include <optional>
#include <string>
#include <utility>

namespace marzipel {

/// The outcome of an operation: success, or failure with a message saying what failed.
class [[nodiscard]] Status {
public:
    Status() = default;
    static Status failure(std::string message) { return Status(std::move(message)); }

    bool ok() const { return ok_; }
    /// Empty on success.
    const std::string& message() const { return message_; }

private:
    explicit Status(std::string message) : ok_(false), message_(std::move(message)) {}

    bool ok_ = true;
    std::string message_;
};

/// A value, or the failed Status that stands in its place.
template <class T>
class [[nodiscard]] Result {
public:
    Result(T value) : value_(std::move(value)) {}
    /// `failed` must not be ok.
    Result(Status failed) : status_(std::move(failed)) { assert(!status_.ok()); }

    bool ok() const { return status_.ok(); }
    /// Only when ok().
    const T& value() const& {
        assert(ok());
        return *value_;
    }
    T&& value() && {
        assert(ok());
        return std::move(*value_);
    }
    /// The value, or `fallback` on failure.
    T valueOr(T fallback) const { return ok() ? *value_ : std::move(fallback); }
    const Status& status() const { return status_; }

private:
    std::optional<T> value_;
    Status status_;
};

}  // namespace marzipel

#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace marzipel {

/// Sets (or with nothing, unsets) an environment variable and puts the old value back on exit.
class ScopedEnv {
public:
    ScopedEnv(std::string name, std::optional<std::string> value) : name_(std::move(name)) {
        if (const char* old = std::getenv(name_.c_str())) saved_ = old;
        set(value);
    }
    ~ScopedEnv() { set(saved_); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

    void set(const std::optional<std::string>& value) {
        value ? setenv(name_.c_str(), value->c_str(), 1) : unsetenv(name_.c_str());
    }

private:
    std::string name_;
    std::optional<std::string> saved_;
};

}  // namespace marzipel

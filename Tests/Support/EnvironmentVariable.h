#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

namespace brimvale::testing {

/// Gives a variable of the environment another value, or none, while the object lives.
class EnvironmentVariable {
public:
    EnvironmentVariable(std::string name, const std::optional<std::string> &value) : name_(std::move(name)) {
        if (const char *before = std::getenv(name_.c_str()))
            before_ = before;
        assign(value);
    }
    ~EnvironmentVariable() { assign(before_); }
    EnvironmentVariable(const EnvironmentVariable &) = delete;
    EnvironmentVariable &operator=(const EnvironmentVariable &) = delete;

private:
    void assign(const std::optional<std::string> &value) const {
        if (value)
            setenv(name_.c_str(), value->c_str(), 1);
        else
            unsetenv(name_.c_str());
    }

    std::string name_;
    std::optional<std::string> before_;
};

} // namespace brimvale::testing

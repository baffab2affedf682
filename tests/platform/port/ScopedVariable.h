#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "tests/support/Environment.h"

/// Gives an environment variable a value, or none, while it lives.
class ScopedVariable {
public:
    ScopedVariable(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
        if (const char* before = std::getenv(name_.c_str())) before_ = before;
        assign(value);
    }
    ~ScopedVariable() { assign(before_); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    void assign(const std::optional<std::string>& value) const { testing_support::setVariable(name_, value); }

    std::string name_;
    std::optional<std::string> before_;
};

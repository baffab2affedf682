#pragma once

#include <string>

#include "tests/platform/port/ScopedVariable.h"

/// Makes a locale, by its POSIX name, the user's while it lives.
class UserLocale {
public:
    explicit UserLocale(const std::string& name) : all_("LC_ALL", name) {}

private:
    ScopedVariable all_;
};

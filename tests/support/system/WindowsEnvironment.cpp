#include <cstdlib>
#include <filesystem>

#include "tests/support/Environment.h"

namespace testing_support {
namespace {

std::wstring widened(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).wstring();
}

}  // namespace

void setVariable(const std::string& name, const std::optional<std::string>& value) {
    // An empty value takes the variable away.
    ::_wputenv_s(widened(name).c_str(), widened(value.value_or("")).c_str());
}

}  // namespace testing_support

#pragma once

#include <optional>
#include <string>

namespace testing_support {

/// Gives an environment variable of this process a value, or none. The text is UTF-8.
void setVariable(const std::string& name, const std::optional<std::string>& value);

}  // namespace testing_support

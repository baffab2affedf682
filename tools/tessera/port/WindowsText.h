#pragma once

#include <string>
#include <string_view>

// The system speaks UTF-16, the tool UTF-8.

namespace Tool::port {

/// A lone surrogate becomes U+FFFD, and so does what is no UTF-8.
std::string narrowed(std::wstring_view text);
std::wstring widened(std::string_view utf8);

}  // namespace Tool::port

#pragma once

#include <string>
#include <system_error>

namespace Platform::port {

/// What people are told of an error, in UTF-8.
std::string messageOf(const std::error_code& error);

}  // namespace Platform::port

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Tool {

/// The text as it may be shown on a terminal: control characters, escape sequences with them, and marks
/// that turn the direction of writing become \u{1b} and the like; bytes that are no UTF-8 become \x{ff} and the like.
std::string displayable(std::string_view utf8);

/// A JSON document with the same characters, which JSON lets stand, written as \u009b and the like.
std::string displayableJson(std::string_view json);

/// How many columns of a terminal a displayable text takes: two for Hangul and other wide characters,
/// none for combining ones.
std::size_t displayWidth(std::string_view utf8);

/// The beginning of a displayable text that fits into that many columns; with an ellipsis when something was cut.
std::string cutToWidth(std::string_view utf8, std::size_t columns);

}  // namespace Tool

#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// Without the blanks and tabs around it.
std::string_view trimmed(std::string_view text);
std::u16string_view trimmed(std::u16string_view text);

/// The text with every end of a line as a line feed alone.
std::string withLineFeeds(std::string_view text);
std::u16string withLineFeeds(std::u16string_view text);

}  // namespace Tool

#pragma once

#include <string>
#include <string_view>

#include "tessera/platform/base/Types.h"

namespace Tool {

/// Without the blanks and tabs around it.
std::string_view trimmed(std::string_view text);
WStringView trimmed(WStringView text);

/// The text with every end of a line as a line feed alone.
std::string withLineFeeds(std::string_view text);
WString withLineFeeds(WStringView text);

}  // namespace Tool

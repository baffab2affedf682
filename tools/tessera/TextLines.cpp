#include "TextLines.h"

#include <algorithm>

namespace Tool {

bool TextLines::next(std::string_view& line) {
    if (rest_.empty()) return false;
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    line = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    return true;
}

}  // namespace Tool

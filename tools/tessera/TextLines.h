#pragma once

#include <string_view>

namespace Tool {

/// A text line by line. It is borrowed, and so are the lines.
class TextLines {
public:
    explicit TextLines(std::string_view text) : rest_(text) {}

    /// The next line without its line feed and the carriage return before that; false after the last one.
    bool next(std::string_view& line);

private:
    std::string_view rest_;
};

}  // namespace Tool

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tessera/platform/base/CString.h"

namespace Tool {

/// A text file in UTF-8 or UTF-16LE, with a byte-order mark or without, line by line.
class TextLines {
public:
    /// Reads the whole file. Throws a Failure that says what is wrong: it cannot be read, is no file, is
    /// empty, or is text in neither encoding.
    explicit TextLines(const std::string& path);

    /// The next line without its line feed and the carriage return before that; false after the last one.
    bool next(CString& line);

private:
    enum class Encoding { utf8, utf16 };

    void recognise();
    void check();
    bool nextBytes(std::string_view& line);
    bool hasMark(std::string_view mark);

    std::string path_;
    std::string bytes_;
    Encoding encoding_ = Encoding::utf8;
    std::size_t start_ = 0;     ///< Behind the byte-order mark.
    std::size_t position_ = 0;  ///< Where the next line begins.
};

}  // namespace Tool

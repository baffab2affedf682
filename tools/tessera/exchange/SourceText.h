#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// A file to import: its bytes without a byte-order mark, and the encoding that they are in, as far as it is known.
class SourceText {
public:
    /// `encoding` is what the user says; when it is empty the bytes say it. Throws a Failure that names the file when
    /// it is empty, or UTF-16 that is cut off or broken.
    SourceText(std::string path, std::string bytes, const std::string& encoding);

    const std::string& path() const { return path_; }
    /// In an encoding in which ASCII characters are themselves: UTF-16 is UTF-8 here.
    std::string_view bytes() const { return std::string_view(bytes_).substr(start_); }
    /// Empty when nobody knows.
    const std::string& encoding() const { return encoding_; }
    bool isEncodingSaid() const { return wasSaid_; }

    /// All of it in UTF-8. Throws a Failure that names the first line that is in no known encoding.
    std::string utf8() const;

private:
    void recode();

    std::string path_;
    std::string bytes_;
    std::size_t start_ = 0;
    std::string encoding_;
    bool wasSaid_;
    bool isUtf8_ = false;  ///< For certain.
};

}  // namespace Tool

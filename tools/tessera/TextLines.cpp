#include "TextLines.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>

#include "Failure.h"
#include "System.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t longestFile = std::size_t{1} << 30;

/// Answers why the path cannot be read as a file at all; empty when it can.
std::string whyNotReadable(const std::string& path) {
    std::error_code error;
    const auto type = std::filesystem::status(pathOf(path), error).type();
    switch (type) {
        case std::filesystem::file_type::regular:
        case std::filesystem::file_type::fifo:
            return {};
        case std::filesystem::file_type::not_found:
            return "there is no such file";
        case std::filesystem::file_type::directory:
            return "is a folder, not a file";
        default:
            return error ? error.message() : "is no regular file";
    }
}

std::string contentOf(const std::string& path) {
    if (const std::string why = whyNotReadable(path); !why.empty()) throw Failure(path + ": " + why);
    std::ifstream file(pathOf(path), std::ios::binary);
    if (!file) throw Failure(path + ": cannot be read: " + std::strerror(errno));
    std::error_code unknown;  // of a pipe
    const auto size = std::filesystem::file_size(pathOf(path), unknown);
    std::string bytes;
    if (!unknown) bytes.reserve(std::min<std::size_t>(size, longestFile) + 1);
    char block[1 << 16];
    while (file.read(block, sizeof block), file.gcount() > 0) {
        bytes.append(block, static_cast<std::size_t>(file.gcount()));
        if (bytes.size() > longestFile) throw Failure(path + ": is larger than 1 GiB");
    }
    if (file.bad()) throw Failure(path + ": cannot be read to its end");
    return bytes;
}

WCHAR unitAt(std::string_view bytes, std::size_t index) {
    const auto low = static_cast<unsigned char>(bytes[2 * index]);
    const auto high = static_cast<unsigned char>(bytes[2 * index + 1]);
    return static_cast<WCHAR>(low | high << 8);
}

CString utf16Of(std::string_view bytes) {
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = unitAt(bytes, i);
    return CString(std::u16string_view(text));
}

bool isWellFormed(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool high = (text[i] & 0xFC00) == 0xD800;
        const bool low = (text[i] & 0xFC00) == 0xDC00;
        if (low) return false;
        if (!high) continue;
        if (++i == text.size() || (text[i] & 0xFC00) != 0xDC00) return false;
    }
    return true;
}

/// A UTF-16LE text has a zero as the second byte of each Latin character, and of the first line feed: one
/// stands early. A zero further on may as well be a stray one in UTF-8.
bool beginsLikeUtf16(std::string_view bytes) {
    const std::size_t header = std::min(bytes.size(), bytes.find('\n') + 2);
    for (std::size_t i = 1; i < header; i += 2) {
        if (bytes[i] == '\0') return true;
    }
    return false;
}

bool isUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size() - 1);
        if (!textOfUtf8(bytes.substr(0, end + 1))) return false;
        bytes.remove_prefix(end + 1);
    }
    return true;
}

}  // namespace

TextLines::TextLines(const std::string& path) : path_(path), bytes_(contentOf(path)) {
    recognise();
    check();
    position_ = start_;
}

bool TextLines::hasMark(std::string_view mark) {
    if (!bytes_.starts_with(mark)) return false;
    start_ = mark.size();
    return true;
}

void TextLines::recognise() {
    if (hasMark("\xFF\xFE"sv)) {
        encoding_ = Encoding::utf16;
    } else if (hasMark("\xFE\xFF"sv)) {
        throw Failure(path_ + ": is UTF-16 in big-endian order; save it as UTF-8 or UTF-16LE");
    } else if (!hasMark("\xEF\xBB\xBF"sv) && bytes_.find('\0') != std::string::npos) {
        encoding_ = beginsLikeUtf16(bytes_) || !isUtf8(bytes_) ? Encoding::utf16 : Encoding::utf8;
    }
}

void TextLines::check() {
    if (bytes_.size() == start_) throw Failure(path_ + ": is empty");
    if (encoding_ == Encoding::utf16 && bytes_.size() % 2 != 0)
        throw Failure(path_ + ": is cut off: UTF-16 text has an even number of bytes, not " +
                      std::to_string(bytes_.size()));
    position_ = start_;
    std::string_view line;
    for (int number = 1; nextBytes(line); ++number) {
        const bool good =
            encoding_ == Encoding::utf16 ? isWellFormed(utf16Of(line).view()) : textOfUtf8(line).has_value();
        if (!good) throw Failure(path_ + ": line " + std::to_string(number) + " is neither UTF-8 nor UTF-16LE text");
    }
}

/// The bytes up to the next line feed, which is passed over.
bool TextLines::nextBytes(std::string_view& line) {
    const std::string_view rest = std::string_view(bytes_).substr(position_);
    if (rest.empty()) return false;
    std::size_t end = rest.find('\n');
    // In UTF-16 the byte of a line feed may also be half of another character.
    while (encoding_ == Encoding::utf16 && end != std::string_view::npos &&
           (end % 2 != 0 || unitAt(rest, end / 2) != u'\n'))
        end = rest.find('\n', end + 1);
    line = rest.substr(0, end);
    const std::size_t feed = encoding_ == Encoding::utf16 ? 2 : 1;
    position_ = end == std::string_view::npos ? bytes_.size() : position_ + end + feed;
    return true;
}

bool TextLines::next(CString& line) {
    std::string_view bytes;
    if (!nextBytes(bytes)) return false;
    line = encoding_ == Encoding::utf16 ? utf16Of(bytes) : textOfUtf8(bytes).value_or(CString());
    if (!line.IsEmpty() && line[line.GetLength() - 1] == u'\r') line.Delete(line.GetLength() - 1);
    return true;
}

}  // namespace Tool

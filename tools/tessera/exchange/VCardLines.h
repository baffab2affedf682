#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "VCardProperty.h"

namespace Tool {

/// The lines of cards, each put together from the lines of the file that it is broken into: folded, or broken softly
/// in quoted-printable. Works on bytes, since a fold may stand within a character. The bytes are borrowed.
class VCardLines {
public:
    explicit VCardLines(std::string_view bytes) : rest_(bytes) {}

    /// The next line that is not blank; false after the last. A fold of version 2.1 keeps its blank.
    bool next(std::string& line, VCardVersion version);
    /// Of the line that `next` gave: where it begins in the file, counted from 1.
    int number() const { return number_; }

private:
    std::string_view takeRaw();
    std::string_view peekRaw() const;
    void joinSoftBreaks(std::string& line);
    void joinFolds(std::string& line, VCardVersion version);
    void joinBase64(std::string& line);

    std::string_view rest_;
    int taken_ = 0;
    int number_ = 0;
};

}  // namespace Tool

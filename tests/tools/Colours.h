#pragma once

#include <string>

#include "tests/tools/ToolTest.h"

namespace tool_test {

inline const std::string escape = "\x1B";

/// Digits that stand out.
inline std::string marked(const std::string& digits) {
    return escape + "[1;32m" + digits + escape + "[0m";
}

/// A text without the sequences for colours that the tool has.
inline std::string withoutColours(std::string text) {
    for (const std::string sequence : {"[1m", "[1;31m", "[1;32m", "[0m"}) {
        for (std::size_t at; (at = text.find(escape + sequence)) != std::string::npos;)
            text.erase(at, sequence.size() + 1);
    }
    return text;
}

}  // namespace tool_test

#pragma once

#include <cctype>
#include <string>

namespace Tool::port {

/// The name of an encoding without what is spelled in more than one way: "utf-8" is UTF8.
inline std::string plainEncodingName(const std::string& name) {
    std::string plain;
    for (const char ch : name) {
        if (std::isalnum(static_cast<unsigned char>(ch)) != 0)
            plain += static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    }
    return plain;
}

}  // namespace Tool::port

#pragma once

#include <string>

namespace testing_support {

/// A card of these lines, each with its end.
inline std::string vcard(const std::string& lines) {
    return "BEGIN:VCARD\n" + lines + "END:VCARD\n";
}

}  // namespace testing_support

#pragma once

#include <array>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "tessera/database/schema/PropText.h"
#include "tessera/platform/base/Unicode.h"

namespace Database {

inline std::string shown(const CCeDBProp& prop) {
    return utf8Of(renderText(prop).view());
}

__attribute__((format(printf, 1, 2))) inline std::string printed(const char* format, ...) {
    std::array<char, 400> text{};
    va_list values;
    va_start(values, format);
    std::vsnprintf(text.data(), text.size(), format, values);
    va_end(values);
    return text.data();
}

}  // namespace Database

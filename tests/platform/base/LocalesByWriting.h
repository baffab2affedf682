#pragma once

#include <map>
#include <string>

#include <unicode/uloc.h>

#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/base/Unicode.h"
#include "tests/platform/base/UserLocale.h"

/// One locale, by its POSIX name, for each way of writing a date that there is.
inline const std::map<std::string, std::string>& localesByWriting() {
    static const std::map<std::string, std::string> locales = [] {
        std::map<std::string, std::string> found;
        for (int32_t i = 0; i < uloc_countAvailable(); ++i) {
            const std::string name = uloc_getAvailable(i);
            const UserLocale locale(name + ".UTF-8");
            found.emplace(utf8Of(COleDateTime(1990, 3, 5).Format().view()), name + ".UTF-8");
        }
        return found;
    }();
    return locales;
}

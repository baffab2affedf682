#include <algorithm>
#include <array>
#include <initializer_list>
#include <string>
#include <string_view>

#include "tessera/platform/port/DatePattern.h"
#include "tessera/platform/port/Locale.h"
#include "tessera/platform/port/Paths.h"
#include "tessera/platform/port/SystemLocale.h"
#include "tessera/platform/port/ThreadLocal.h"

namespace Platform::port {
namespace {

struct Modifier {
    std::string_view posix;
    std::string_view icuScript;
};

constexpr std::array<Modifier, 3> scripts_ = {{
    {"latin", "Latn"},
    {"cyrillic", "Cyrl"},
    {"devanagari", "Deva"},
}};

std::string_view scriptOf(std::string_view modifier) {
    for (const Modifier& script : scripts_) {
        if (script.posix == modifier) return script.icuScript;
    }
    return {};
}

bool isLocalePart(std::string_view part) {
    return std::all_of(part.begin(), part.end(), [](char ch) {
        return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9');
    });
}

/// "language[_COUNTRY][.charset][@modifier]" as ICU writes it; "" for what is not of that form.
std::string icuNameOf(std::string_view posixName) {
    const std::size_t at = posixName.find('@');
    const std::string_view modifier = at == std::string_view::npos ? std::string_view() : posixName.substr(at + 1);
    const std::string_view place = posixName.substr(0, posixName.find_first_of(".@"));
    if (place == "C" || place == "POSIX") return {};

    const std::size_t underscore = place.find('_');
    const std::string_view language = place.substr(0, underscore);
    const std::string_view country =
        underscore == std::string_view::npos ? std::string_view() : place.substr(underscore + 1);
    if (language.empty() || !isLocalePart(language) || !isLocalePart(country)) return {};

    std::string name(language);
    for (const std::string_view part : {scriptOf(modifier), country}) {
        if (!part.empty()) name.append("_").append(part);
    }
    return name;
}

/// The first variable that is set decides; an empty one counts as not set.
std::string localeOf(std::initializer_list<const char*> variables) {
    for (const char* variable : variables) {
        if (const std::string value = environmentValue(variable); !value.empty()) return icuNameOf(value);
    }
    return systemLocale();
}

struct KnownPattern {
    std::string locale;
    DatePattern pattern = datePatternOf("");
};

}  // namespace

std::string userCollationLocale() {
    return localeOf({"LC_ALL", "LC_COLLATE", "LANG"});
}

DatePattern userDatePattern() {
    // Asking the system is slow and the locale hardly ever changes, but when it does the next call sees it.
    auto& known = ofThisThread<KnownPattern>();
    const std::string locale = localeOf({"LC_ALL", "LC_TIME", "LANG"});
    if (known.locale != locale) known = {locale, datePatternOf(locale)};
    return known.pattern;
}

}  // namespace Platform::port

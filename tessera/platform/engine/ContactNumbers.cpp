#include "tessera/platform/engine/ContactNumbers.h"

#include <algorithm>
#include <array>

#include "tessera/platform/base/TelephoneNumber.h"
#include "tessera/platform/engine/Record.h"
#include "tessera/platform/engine/StoreRules.h"

namespace Platform {
namespace {

/// Mobile, home, business, pager, business fax.
constexpr std::array<CEPROPID, 5> numberProperties{0x3A1C'0000 | kindText, 0x3A09'0000 | kindText,
                                                   0x3A08'0000 | kindText, 0x4009'0000 | kindText,
                                                   0x3A24'0000 | kindText};

std::string reduced(std::string_view text) {
    std::u16string number;
    for (; text.size() >= sizeof(WCHAR); text.remove_prefix(sizeof(WCHAR)))
        number.push_back(static_cast<WCHAR>(static_cast<BYTE>(text[0]) | static_cast<BYTE>(text[1]) << 8));
    std::array<WCHAR, reducedNumberBuffer> buffer;
    reduceNumber(number.c_str(), buffer.data());
    const std::u16string_view characters(buffer.data());
    return {characters.begin(), characters.end()};
}

}  // namespace

bool keepsNumbers(std::u16string_view database) {
    static const std::u16string contacts = foldedName(systemDatabases[0].name);
    return foldedName(database) == contacts;
}

std::vector<std::string> reducedNumbers(std::string_view packed) {
    std::vector<std::string> numbers;
    for (const CEPROPID property : numberProperties) {
        const auto found = findProperty(packed, property);
        if (!found) continue;
        if (std::string number = reduced(found->bytes); !number.empty()) numbers.push_back(std::move(number));
    }
    std::ranges::sort(numbers);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

bool sameNumbers(std::string_view before, std::string_view after) {
    return std::ranges::all_of(numberProperties, [&](CEPROPID property) {
        return findProperty(before, property) == findProperty(after, property);
    });
}

}  // namespace Platform

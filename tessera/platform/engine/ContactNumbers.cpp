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

}  // namespace

bool keepsNumbers(WStringView database) {
    static const WString contacts = foldedName(systemDatabases[0].name);
    return foldedName(database) == contacts;
}

std::vector<std::string> reducedNumbers(std::string_view packed) {
    std::vector<std::string> numbers;
    for (const CEPROPID property : numberProperties) {
        const auto found = findProperty(packed, property);
        if (!found) continue;
        if (std::string number = reducedNumber(unpackedText(found->bytes).c_str()); !number.empty())
            numbers.push_back(std::move(number));
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

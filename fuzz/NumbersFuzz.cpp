// Telephone numbers. The input is one number, as text.

#include <algorithm>
#include <string>
#include <vector>

#include "fuzz/FuzzedInput.h"
#include "tessera/phonebook/model/TelNo.h"

using fuzz::require;

namespace {

bool isCanonical(char16_t ch) {
    return std::u16string_view(u"0123456789PT*#").find(ch) != std::u16string_view::npos;
}

/// The rule of reduction on a whole text at a time.
std::u16string plainlyReduced(std::u16string number) {
    std::u16string prefix;
    if (number.starts_with(u'+')) {
        prefix = u"0";
        number.erase(0, std::min(number.find_first_of(u" -"), number.size()));
    }
    std::erase_if(number, [](char16_t ch) { return !isCanonical(ch); });
    return (prefix + number).substr(0, 32);
}

std::u16string withoutDashes(std::u16string text) {
    std::erase(text, u'-');
    return text;
}

void checkReduction(const std::u16string& number) {
    const CString reduced = PhoneBook::makeCNIP(number.c_str());
    require(reduced.GetLength() <= 32, "a reduced number has at most 32 characters");
    require(std::ranges::all_of(reduced.view(), isCanonical), "a reduced number has canonical characters only");
    require(reduced.view() == plainlyReduced(number), "a number is reduced as the rule says");
    require(PhoneBook::makeCNIP(reduced) == reduced, "a reduced number reduces to itself");

    // On the heap and not one longer, so that the address sanitizer sees a write past its end.
    std::vector<WCHAR> buffer(PhoneBook::nCNIPBufferLength_, u'x');
    PhoneBook::makeCNIP(number.c_str(), buffer.data());
    require(CString(buffer.data()) == reduced, "both forms reduce alike");

    require(PhoneBook::makeCNIP(PhoneBook::makeTelNoStrFromCID(reduced)).view() == PhoneBook::makeCNIP(reduced).view(),
            "a number that is shown reduces to what it was");
}

void checkDisplay(const std::u16string& number) {
    const std::u16string shown(PhoneBook::makeTelNoStrFromCID(number.c_str()).view());
    require(withoutDashes(shown) == withoutDashes(number), "showing a number adds dashes and takes nothing");
    if (number.size() < 5) {
        require(shown == number, "a short number is shown as it is");
        return;
    }
    const std::size_t areaCode = number[0] != u'0' ? 0 : number[1] == u'2' ? 2 : 3;
    require(shown.size() == number.size() + (areaCode > 0 ? 2 : 1), "one dash for the area code, one for the rest");
    require(areaCode == 0 || shown[areaCode] == u'-', "the area code is set off");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::u16string number = fuzz::upToZero(fuzz::textOfBytes(fuzz::FuzzedInput(data, size).rest()));
    checkReduction(number);
    checkDisplay(number);
    return 0;
}

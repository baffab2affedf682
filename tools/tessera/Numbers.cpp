#include "Numbers.h"

#include <algorithm>

#include "CountryCodes.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"

namespace Tool {

namespace {

constexpr WStringView internationalPrefix = TEXT("00");

bool counts(WCHAR ch) {
    return WStringView(TEXT("0123456789PT*#")).find(ch) != WStringView::npos;
}

/// What counts of a number, of any length.
WString reduced(WStringView text) {
    WString kept;
    std::copy_if(text.begin(), text.end(), std::back_inserter(kept), counts);
    return kept;
}

/// Blanks, a parenthesis and the like may stand before the plus sign, digits may not.
bool beginsWithPlus(WStringView text) {
    const auto first = std::find_if(text.begin(), text.end(), [](WCHAR ch) { return ch == u'+' || counts(ch); });
    return first != text.end() && *first == u'+';
}

class Forms {
public:
    void add(WStringView number) {
        const CString form = PhoneBook::PhoneBookDBMgr::makeCNIP(CString(number));
        if (form.IsEmpty() || std::find(forms_.begin(), forms_.end(), form) != forms_.end()) return;
        forms_.push_back(form);
    }

    void addWithAndWithoutZero(const WString& number) {
        if (number.empty()) return;
        add(number);
        if (number.starts_with(u'0')) {
            add(WStringView(number).substr(1));
        } else {
            add(TEXT("0") + number);
        }
    }

    /// `number` begins with its country calling code.
    void addInternational(const WString& number) {
        const WString national = number.substr(countryCodeLength(number));
        if (national.empty()) return;
        add(TEXT("0") + national);  // what the phone book makes of a plus sign, a code and a separator
        addWithAndWithoutZero(national);
        add(WString(internationalPrefix) + number);
    }

    std::vector<CString> take() { return std::move(forms_); }

private:
    std::vector<CString> forms_;
};

}  // namespace

std::vector<CString> formsOf(const CString& received) {
    const WString number = reduced(received.view());
    if (number.empty()) return {};  // the phone book would make a 0 of a plus sign alone
    const bool plus = beginsWithPlus(received.view());
    const bool prefixed = !plus && number.starts_with(internationalPrefix);
    const WString behindPrefix = prefixed ? number.substr(internationalPrefix.size()) : number;

    Forms forms;
    if ((plus || prefixed) && countryCodeLength(behindPrefix) != 0) forms.addInternational(behindPrefix);
    if (!plus) forms.addWithAndWithoutZero(number);
    // A plus sign before no known code: all that is left is what the phone book itself would make of it.
    if (plus && countryCodeLength(behindPrefix) == 0) forms.add(received.view());
    return forms.take();
}

std::vector<TextRange> placesOf(WStringView sought, WStringView number) {
    constexpr std::size_t nowhere = WStringView::npos;
    const std::size_t length = PhoneBook::PhoneBookDBMgr::makeCNIP(CString(number)).view().size();
    WString counted;
    std::vector<std::size_t> places;
    std::size_t start = 0;
    if (number.starts_with(u'+')) {
        counted = TEXT("0");
        places.push_back(nowhere);
        start = std::min(number.find_first_of(TEXT(" -")), number.size());
    }
    for (std::size_t i = start; i < number.size() && counted.size() < length; ++i) {
        if (!counts(number[i])) continue;
        counted += number[i];
        places.push_back(i);
    }
    std::vector<TextRange> ranges;
    if (sought.empty()) return ranges;
    for (std::size_t at = 0; (at = counted.find(sought, at)) != nowhere; at += sought.size()) {
        const std::size_t first = places[at] == nowhere ? at + 1 : at;
        const std::size_t last = at + sought.size() - 1;
        if (first <= last) ranges.push_back({places[first], places[last] + 1});
    }
    return ranges;
}

std::size_t missingSeparator(WStringView number) {
    if (!number.starts_with(u'+')) return WStringView::npos;
    // The phone book takes all up to the first of these for the code.
    const WStringView code = number.substr(0, number.find_first_of(TEXT(" -")));
    const WString digits = reduced(code);
    const std::size_t length = countryCodeLength(digits);
    if (length == 0 || length == digits.size()) return WStringView::npos;
    std::size_t behind = 0;
    for (std::size_t passed = 0; passed < length; ++behind) {
        if (counts(code[behind])) ++passed;
    }
    return behind;
}

CString withSeparatedCode(const CString& number) {
    CString separated = number;
    const std::size_t place = missingSeparator(number.view());
    if (place != WStringView::npos) separated.Insert(static_cast<int>(place), u' ');
    return separated;
}

}  // namespace Tool

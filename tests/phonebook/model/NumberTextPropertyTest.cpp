#include <algorithm>
#include <cwchar>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tessera/phonebook/model/NumberText.h"

namespace PhoneBook {
namespace {

// Texts near to numbers: what numbers are made of, in any order and at any length.
rc::Gen<std::string> nearlyNumber() {
    const auto piece = rc::gen::element<std::string>("0", "0x", "0X", "1", "7", "8", "9", "a", "F", "g", "x", "+", "-",
                                                     " ", "\t", "\r", "2147483647", "4294967295", "ffffffff", ",");
    return rc::gen::map(rc::gen::container<std::vector<std::string>>(piece),
                        [](const std::vector<std::string>& pieces) {
                            std::string text;
                            for (const std::string& next : pieces)
                                text += next;
                            return text;
                        });
}

RC_GTEST_PROP(NumberText, ReadsAsTheCLibraryCutToThirtyTwoBits, ()) {
    using Limits = std::numeric_limits<LONG>;
    static_assert(sizeof(long) == 8, "the library's own long is the wider one that the model cuts");
    const std::string text = *nearlyNumber();
    const WString narrow(text.begin(), text.end());
    const std::wstring wide(text.begin(), text.end());

    const long whole = std::wcstol(wide.c_str(), nullptr, 0);

    RC_ASSERT(wcstolText(narrow.c_str()) == std::clamp<long>(whole, Limits::min(), Limits::max()));
    const bool isBeyond = whole > 0xFFFFFFFFl || whole < -0xFFFFFFFFl;
    RC_ASSERT(wcstoulText(narrow.c_str()) == (isBeyond ? 0xFFFFFFFFu : static_cast<DWORD>(whole)));
}

}  // namespace
}  // namespace PhoneBook

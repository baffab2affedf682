#include <algorithm>
#include <iterator>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tessera/phonebook/model/TelNo.h"

namespace PhoneBook {
namespace {

// The definition, read naively: text to text, one rule after the other.
WString reducedNaively(WString text) {
    WString result;
    if (!text.empty() && text.front() == u'+') {
        const std::size_t separator = text.find_first_of(TEXT(" -"));
        text = separator == WString::npos ? TEXT("") : text.substr(separator + 1);
        result = TEXT("0");
    }
    std::ranges::copy_if(text, std::back_inserter(result),
                         [](WCHAR ch) { return WStringView(TEXT("0123456789PT*#")).find(ch) != WString::npos; });
    return result.substr(0, 32);
}

RC_GTEST_PROP(MakeCNIP, FollowsItsDefinition, ()) {
    const auto body = *rc::gen::scale(1.5, rc::gen::container<WString>(rc::gen::element(
                                               u'0', u'1', u'2', u'3', u'7', u'8', u'9', u'P', u'T', u'p', u'*', u'#',
                                               u'+', u'-', u' ', u'(', u')', u'.', u'가', u'５')));
    const WString text = (*rc::gen::arbitrary<bool>() ? TEXT("+") : TEXT("")) + body;

    RC_ASSERT(makeCNIP(text.c_str()).view() == reducedNaively(text));
}

RC_GTEST_PROP(MakeCNIP, LeavesACanonicalNumberAlone, ()) {
    const auto text = *rc::gen::container<WString>(rc::gen::arbitrary<WCHAR>());
    const CString once = makeCNIP(text.c_str());

    RC_ASSERT(makeCNIP(once) == once);
}

RC_GTEST_PROP(MakeTelNoStrFromCID, AddsNothingButDashes, ()) {
    const auto text = *rc::gen::container<WString>(rc::gen::element(u'0', u'1', u'2', u'5', u'9', u'P', u'#'));
    WString shown(makeTelNoStrFromCID(text.c_str()).view());

    std::erase(shown, u'-');

    RC_ASSERT(shown == text);
}

}  // namespace
}  // namespace PhoneBook

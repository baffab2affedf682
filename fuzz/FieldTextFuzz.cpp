// Fields of a record as text. The input is lines, each put into one record: its first character chooses the
// field, from 'A' on, or none ('@'); the rest is the text. 18 and above choose masks that are no field's.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <iterator>
#include <string>

#include "fuzz/FuzzedInput.h"
#include "tessera/phonebook/model/FieldText.h"
#include "tessera/phonebook/model/PBAttributes.h"
#include "tessera/platform/base/COleDateTime.h"

using fuzz::require;
using PhoneBook::PBAttribute;
using PhoneBook::PBRecord;

namespace {

constexpr DWORD settable = 0x007F0FFF;

constexpr DWORD otherMasks[] = {0x40, 0x80, 0xC0, 0x3, 0x10001, 0x007F0FFF, 0x1000, 0x00800000, 0x80000001, 0xFFFFFFFF};

bool sameValue(const PBRecord& left, const PBRecord& right, const PBAttribute& attribute) {
    if (attribute.text != nullptr) return left.*attribute.text == right.*attribute.text;
    if (attribute.number != nullptr) return left.*attribute.number == right.*attribute.number;
    return attribute.date == nullptr || left.*attribute.date == right.*attribute.date;
}

bool sameBut(const PBRecord& left, const PBRecord& right, DWORD mask) {
    return std::ranges::all_of(PhoneBook::aPBAttribute_, [&](const PBAttribute& attribute) {
        return attribute.mask == mask || sameValue(left, right, attribute);
    });
}

/// The C library's own reading, held to 32 bits.
DWORD plainNumber(const CString& text) {
    std::wstring wide;
    for (const WCHAR* unit = text; *unit != u'\0'; ++unit)
        wide += static_cast<wchar_t>(*unit);
    return static_cast<DWORD>(std::clamp<long long>(std::wcstoll(wide.c_str(), nullptr, 0), INT32_MIN, INT32_MAX));
}

DATE plainDay(const CString& text) {
    COleDateTime date;
    date.ParseDateTime(text);
    if (date.GetStatus() != COleDateTime::valid) return 0.0;
    return COleDateTime(date.GetYear(), date.GetMonth(), date.GetDay()).date();
}

void checkField(const PBRecord& record, const PBAttribute& attribute, const CString& text) {
    const CString shown = getPBRecordFieldStr(record, attribute.mask);
    if (attribute.text != nullptr) require(record.*attribute.text == text, "a text field holds the text");
    if (attribute.number != nullptr) {
        require(record.*attribute.number == plainNumber(text), "a number is read as the C library reads it");
    }
    if (attribute.date != nullptr) require(record.*attribute.date == plainDay(text), "a birthday is a day");
    if (attribute.text != nullptr || text.IsEmpty()) {
        require(shown == text, "a text is shown as it is, an empty field as nothing");
        return;
    }

    PBRecord again;
    require(setPBRecordFieldStr(again, attribute.mask, shown) == 1, "what is shown can be set");
    // A text of a negative number, 0x80000000 or above, is beyond what a long holds.
    const bool shownFits = attribute.number == nullptr || record.*attribute.number <= 0x7FFFFFFF;
    require(!shownFits || sameValue(again, record, attribute), "and means the same");
}

void setAndCheck(PBRecord& record, DWORD mask, const CString& text) {
    const PBRecord before = record;
    const bool taken = mask != 0 && (mask & ~settable) == 0;
    require(setPBRecordFieldStr(record, mask, text) == (taken ? 1 : 0), "only masks of fields are taken");
    require(sameBut(before, record, mask), "no other field changes");
    if (!taken) {
        require(record.dwCITypeMask == before.dwCITypeMask, "a mask that is not taken changes nothing");
        return;
    }
    const DWORD expected = text.IsEmpty() ? before.dwCITypeMask & ~mask : before.dwCITypeMask | mask;
    require(record.dwCITypeMask == expected, "the bit says whether there is a text");
    for (const PBAttribute& attribute : PhoneBook::aPBAttribute_) {
        if (attribute.mask == mask) checkField(record, attribute, text);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    setenv("LC_ALL", "ko_KR.UTF-8", 1);
    fuzz::FuzzedInput input(data, size);
    PBRecord record;
    while (!input.atEnd()) {
        const std::size_t chosen =
            static_cast<std::uint8_t>(input.byte() - '@') % (PhoneBook::aPBAttribute_.size() + std::size(otherMasks));
        const DWORD mask = chosen < PhoneBook::aPBAttribute_.size()
                               ? PhoneBook::aPBAttribute_[chosen].mask
                               : otherMasks[chosen - PhoneBook::aPBAttribute_.size()];
        setAndCheck(record, mask, CString(input.line()));
    }
    return 0;
}

#include <cstddef>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tessera/phonebook/model/FieldText.h"
#include "tessera/phonebook/model/PBAttributes.h"
#include "tests/phonebook/model/FieldFlags.h"

namespace PhoneBook {
namespace {

RC_GTEST_PROP(FieldText, ATextThatWasSetReadsBack, ()) {
    const auto& attribute = *rc::gen::suchThat(rc::gen::elementOf(aPBAttribute_),
                                               [](const PBAttribute& candidate) { return candidate.text != nullptr; });
    const auto text = CString(*rc::gen::container<WString>(rc::gen::arbitrary<WCHAR>()));
    PBRecord record;

    setPBRecordFieldStr(record, attribute.mask, text);

    RC_ASSERT(getPBRecordFieldStr(record, attribute.mask) == text);
    RC_ASSERT(record.dwCITypeMask == (text.IsEmpty() ? 0u : attribute.mask));
}

RC_GTEST_PROP(FieldText, ANumberBelowTheSignBitReadsBackAsItself, ()) {
    const DWORD mask = *rc::gen::element(callingScreenFlag, dwPrivateFlag_, dwPrimaryTelNoFlag_);
    const PBAttribute& attribute = aPBAttribute_[static_cast<std::size_t>(getPBDBAttrIDFromCITypeFlag(mask))];
    PBRecord original;
    original.dwCITypeMask = mask;
    original.*attribute.number = *rc::gen::inRange<DWORD>(0, 0x80000000);
    PBRecord copy;

    setPBRecordFieldStr(copy, mask, getPBRecordFieldStr(original, mask));

    RC_ASSERT((copy.*attribute.number) == (original.*attribute.number));
}

RC_GTEST_PROP(FieldText, ABirthdayReadsBackAsTheSameDay, ()) {
    PBRecord original;
    original.dwCITypeMask = birthdayFlag;
    original.dtBirthday = *rc::gen::inRange(-36000, 900000);  // from 1801 to 4364
    PBRecord copy;

    setPBRecordFieldStr(copy, birthdayFlag, getPBRecordFieldStr(original, birthdayFlag));

    RC_ASSERT(copy.dtBirthday == original.dtBirthday);
}

}  // namespace
}  // namespace PhoneBook

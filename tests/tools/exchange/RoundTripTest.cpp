// What is written is read again as the same contact, in every format.

#include <algorithm>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/tools/exchange/Drafts.h"
#include "tests/tools/exchange/Stored.h"
#include "tools/tessera/exchange/CsvWriter.h"
#include "tools/tessera/exchange/FileFormat.h"
#include "tools/tessera/exchange/VCardWriter.h"

using namespace exchange_test;
using Tool::Contact;
using Tool::FileFormat;
using Tool::VCardVersion;

namespace {

/// With everything that means something to one of the formats, and never blank.
rc::Gen<CString> text() {
    const auto units = rc::gen::container<std::vector<std::u16string>>(rc::gen::element<std::u16string>(
        u"a", u"Z", u"n", u"=", u"3D", u" ", u"\t", u",", u";", u":", u"\\", u"\"", u"\n", u"'", u"김", u"힣", u"é",
        u"😀", u"+", u"@", u"\u0001", u"\u2028", u"END:VCARD", u"\nBEGIN:VCARD\n", u"tel:", u"=\r"));
    return rc::gen::map(units, [](const std::vector<std::u16string>& pieces) {
        std::u16string all = u"x";
        for (const std::u16string& piece : pieces)
            all += piece;
        std::erase(all, u'\r');
        return CString(all);
    });
}

void maybe(PBRecord& record, PBDBAttrID field) {
    const PBAttribute& attribute = aPBAttribute_[static_cast<std::size_t>(field)];
    if (!*rc::gen::arbitrary<bool>()) return;
    record.dwCITypeMask |= attribute.mask;
    if (attribute.text != nullptr) record.*attribute.text = *text();
    if (attribute.number != nullptr) record.*attribute.number = *rc::gen::arbitrary<DWORD>();
    if (attribute.date != nullptr) record.*attribute.date = *rc::gen::inRange(-100'000, 900'000);
}

/// A contact as the phone book gives it: with the group among its categories, or not.
Contact anyContact() {
    Contact contact;
    PBRecord& record = contact.record;
    record.strName = *text();
    record.dwCITypeMask = 0x1;
    for (const Tool::Field& field : Tool::fields) {
        if (field.attribute != PBDBATTR_NAME && field.attribute != PBDBATTR_CATEGORIES) maybe(record, field.attribute);
    }
    // A primary number that the contact has is mostly what is primary.
    if (*rc::gen::arbitrary<bool>()) record.dwPrimaryTelephoneNumber = *rc::gen::element<DWORD>(4, 8, 16, 0x400, 0x800);
    // No contact without a birthday has one of these days.
    if (record.dtBirthday == 0 || record.dtBirthday == dtNoBirthday_) record.dwCITypeMask &= ~0x200u;
    record.strCategories = *rc::gen::arbitrary<bool>() ? Tool::asCategory(record.strGroup) : *text();
    if (!record.strCategories.IsEmpty()) record.dwCITypeMask |= 0x2;
    return contact;
}

Contact readableContact() {
    Contact contact = anyContact();
    contact.record = stored(contact.record);
    return contact;
}

}  // namespace

RC_GTEST_PROP(RoundTrip, OfCardsGivesTheSameContacts, ()) {
    const VCardVersion version = *rc::gen::element(VCardVersion::v21, VCardVersion::v30, VCardVersion::v40);
    const Contact first = readableContact();
    const Contact second = readableContact();
    const std::string bytes = Tool::vcardOf(first, version) + Tool::vcardOf(second, version);
    RC_LOG() << bytes;
    const DraftedFile file = cards(bytes);
    RC_ASSERT(file.drafts.size() == 2u);
    RC_ASSERT(describe(stored(file.drafts[0].record)) == describe(first.record));
    RC_ASSERT(describe(stored(file.drafts[1].record)) == describe(second.record));
    RC_ASSERT(file.drafts[0].note() == "");
}

RC_GTEST_PROP(RoundTrip, OfATableGivesTheSameContacts, ()) {
    const Contact first = readableContact();
    const Contact second = readableContact();
    const std::string bytes = Tool::csvHeader() + Tool::csvRowOf(first) + Tool::csvRowOf(second);
    RC_LOG() << bytes;
    RC_ASSERT(Tool::recogniseFormat(sourceOf(bytes)) == FileFormat::csv);
    const DraftedFile file = table(bytes);
    RC_ASSERT(file.drafts.size() == 2u);
    RC_ASSERT(describe(stored(file.drafts[0].record)) == describe(first.record));
    RC_ASSERT(describe(stored(file.drafts[1].record)) == describe(second.record));
    RC_ASSERT(file.drafts[0].note() == "");
}

// What is written is read again as the same contact, in every format and every encoding.

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>
#include <unicode/unistr.h>

#include "tests/tools/exchange/Stored.h"
#include "tests/tools/exchange/WrittenContacts.h"
#include "tools/tessera/exchange/FileFormat.h"

using namespace exchange_test;
using Tool::Contact;
using Tool::FileFormat;
using Tool::VCardVersion;

namespace {

using Pieces = std::vector<WString>;

/// What texts are made of: everything that means something to one of the formats, in characters that CP949 has.
const Pieces koreanPieces = {
    TEXT("a"),           TEXT("Z"),   TEXT("n"), TEXT("="),  TEXT("3D"),     TEXT(" "),         TEXT("\t"),
    TEXT(","),           TEXT(";"),   TEXT(":"), TEXT("\\"), TEXT("\""),     TEXT("\n"),        TEXT("'"),
    TEXT("김"),          TEXT("힣"),  TEXT("+"), TEXT("@"),  TEXT("\u0001"), TEXT("END:VCARD"), TEXT("\nBEGIN:VCARD\n"),
    TEXT("begin:vcard"), TEXT("tel:")};

/// And characters that only Unicode has.
const Pieces allPieces = [] {
    Pieces pieces = koreanPieces;
    pieces.insert(pieces.end(), {TEXT("é"), TEXT("😀"), TEXT("\u2028")});
    return pieces;
}();

/// Never blank.
rc::Gen<CString> text(const Pieces& pieces) {
    return rc::gen::map(rc::gen::container<Pieces>(rc::gen::elementOf(pieces)), [](const Pieces& chosen) {
        WString all = TEXT("x");
        for (const WString& piece : chosen)
            all += piece;
        return CString(all);
    });
}

void maybe(PBRecord& record, PBDBAttrID field, const Pieces& pieces) {
    const PBAttribute& attribute = aPBAttribute_[static_cast<std::size_t>(field)];
    if (!*rc::gen::arbitrary<bool>()) return;
    record.dwCITypeMask |= attribute.mask;
    if (attribute.text != nullptr) record.*attribute.text = *text(pieces);
    if (attribute.number != nullptr) record.*attribute.number = *rc::gen::arbitrary<DWORD>();
    if (attribute.date != nullptr) record.*attribute.date = *rc::gen::inRange(-100'000, 900'000);
}

/// A contact with the group among its categories, or not.
Contact anyContact(const Pieces& pieces) {
    Contact contact;
    PBRecord& record = contact.record;
    record.strName = *text(pieces);
    record.dwCITypeMask = 0x1;
    for (const Tool::Field& field : Tool::fields) {
        if (field.attribute != PBDBATTR_NAME && field.attribute != PBDBATTR_CATEGORIES)
            maybe(record, field.attribute, pieces);
    }
    // A primary number that the contact has is mostly what is primary.
    if (*rc::gen::arbitrary<bool>()) record.dwPrimaryTelephoneNumber = *rc::gen::element<DWORD>(4, 8, 16, 0x400, 0x800);
    // No contact without a birthday has one of these days.
    if (record.dtBirthday == 0 || record.dtBirthday == dtNoBirthday_) record.dwCITypeMask &= ~0x200u;
    record.strCategories = *rc::gen::arbitrary<bool>() ? Tool::asCategory(record.strGroup) : *text(pieces);
    if (!record.strCategories.IsEmpty()) record.dwCITypeMask |= 0x2;
    return contact;
}

/// The same as the phone book gives it.
Contact readableContact(const Pieces& pieces = allPieces) {
    Contact contact = anyContact(pieces);
    contact.record = stored(contact.record);
    return contact;
}

/// UTF-8 in another encoding.
std::string recoded(const std::string& utf8, const char* encoding) {
    const icu::UnicodeString text = icu::UnicodeString::fromUTF8(utf8);
    std::string bytes(static_cast<std::size_t>(text.extract(0, text.length(), nullptr, 0, encoding)), '\0');
    text.extract(0, text.length(), bytes.data(), static_cast<std::uint32_t>(bytes.size()), encoding);
    return bytes;
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

RC_GTEST_PROP(RoundTrip, InUtf16GivesTheSameContacts, ()) {
    const Written how = *rc::gen::elementOf(allWritten);
    const Contact contact = readableContact();
    const std::string mark = *rc::gen::element<std::string>("", "\xEF\xBB\xBF");
    const std::string encoding = *rc::gen::element<std::string>("UTF-16LE", "UTF-16BE");
    const DraftedFile file = readAgain(recoded(mark + written(contact, how), encoding.c_str()), how);
    RC_ASSERT(file.drafts.size() == 1u);
    RC_ASSERT(describe(stored(file.drafts[0].record)) == describe(contact.record));
}

RC_GTEST_PROP(RoundTrip, InAKoreanEncodingGivesTheSameContacts, ()) {
    const Written how = *rc::gen::elementOf(allWritten);
    const Contact contact = readableContact(koreanPieces);
    const DraftedFile file = readAgain(recoded(written(contact, how), "windows-949"), how, "EUC-KR");
    RC_ASSERT(file.drafts.size() == 1u);
    RC_ASSERT(describe(stored(file.drafts[0].record)) == describe(contact.record));
}

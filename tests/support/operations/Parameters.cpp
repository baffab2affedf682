#include "tests/support/operations/Parameters.h"

#include <array>
#include <iterator>

#include "tessera/phonebook/model/TelNo.h"
#include "tessera/platform/base/Unicode.h"

namespace testing_support::work {

using namespace PhoneBook;

namespace {

constexpr const WCHAR* names[] = {TEXT("Kim"),    TEXT("kim"),     TEXT("Kim, Minsu"),     TEXT("김민수"),
                                  TEXT("이영희"), TEXT("박 서연"), TEXT("Ömer"),           TEXT("e\u0301"),
                                  TEXT("\u00e9"), TEXT("😀 Ann"),   TEXT("O'Hara \"Pat\""), TEXT(""),
                                  TEXT("\xD800"), TEXT("A")};

constexpr const WCHAR* numbers[] = {TEXT("010-1234-5678"),
                                    TEXT("01012345678"),
                                    TEXT("1234"),
                                    TEXT("+82 10-1234-5678"),
                                    TEXT("02-333-4444"),
                                    TEXT("023334444"),
                                    TEXT("031 555 6666"),
                                    TEXT("010-1111-2222"),
                                    TEXT(""),
                                    TEXT("1588p*12#"),
                                    TEXT("+8210"),
                                    TEXT("no number"),
                                    TEXT("0"),
                                    TEXT("0212345678901234567890123456789012345678")};

constexpr const WCHAR* groupNames[] = {TEXT("Family"), TEXT("Work"),       TEXT("가족"), TEXT("친구"),
                                       TEXT(""),       TEXT("Say \"hi\""), TEXT("A;B"),  TEXT("family")};

/// How long texts are: the longest but one does fit into a property, the longest does not.
constexpr std::size_t lengths[] = {0, 1, 2, 20, 300, 5'000, 32'735, 33'000};

constexpr DWORD telTypes[] = {0x4, 0x8, 0x10, 0x400, 0x800, 0, 0x14};

constexpr DATE birthdays[] = {0.0, 1.0, 36'526.0, 25'569.5, dtNoBirthday_, -1.0, 2'958'465.0, 1e300};

/// The contact's properties of the numbers that can have a slot, by the place of their types in `telTypes`.
constexpr CEPROPID slotNumbers[] = {ContactProperty::mobileTelephoneNumber, ContactProperty::homeTelephoneNumber,
                                    ContactProperty::businessTelephoneNumber};

CString plus(WStringView text, unsigned number) {
    const std::string digits = std::to_string(number);
    return CString(WString(text) + WString(digits.begin(), digits.end()));
}

}  // namespace

CString textOfContact(CEOID contact, WORD ident) {
    for (const StoredRecord& record : contentsOfDatabase(szContactsDatabase).records) {
        if (record.oid == contact) return record.properties.getProp(ident).getText();
    }
    return CString();
}

CString Parameters::name() {
    return oneIn(4) ? plus(TEXT("Person "), below(100)) : CString(oneOf(names));
}

CString Parameters::number() {
    return oneIn(4) ? plus(TEXT("010-"), below(30)) : CString(oneOf(numbers));
}

CString Parameters::groupName() {
    if (!oneIn(4)) return CString(oneOf(groupNames));
    return row(PBDBTBL_AVAILABLEPBGROUP).properties.getProp(0x301).getText();
}

CString Parameters::categories() {
    CString all;
    for (unsigned count = below(4); count != 0; --count) {
        if (!all.IsEmpty()) all += TEXT(", ");
        all += groupName();
    }
    return all;
}

CString Parameters::text() {
    if (!oneIn(8)) return name();
    const WCHAR unit = oneOf(WStringView(TEXT("a가\"")));
    return CString(WString(oneOf(lengths), unit));
}

DWORD Parameters::slot() {
    static constexpr DWORD unusual[] = {0, 98, 99, 100, 255, 256, 0x8005, 0x10003};
    return oneIn(8) ? oneOf(unusual) : 1 + below(6);
}

DWORD Parameters::telType() {
    return oneOf(telTypes);
}

DWORD Parameters::slotWord() {
    DWORD word = 0;
    for (int shift = 0; shift < 24; shift += 8)
        word |= (oneIn(2) ? 1 + below(6) : DWORD{0}) << shift;
    return word;
}

std::uint64_t Parameters::time() {
    static constexpr std::uint64_t edges[] = {0, 1, std::uint64_t{1} << 63, ~std::uint64_t{0}};
    constexpr std::uint64_t somewhereIn2020 = 132'300'000'000'000'000;
    return oneIn(16) ? oneOf(edges) : somewhereIn2020 + below(200);
}

DWORD Parameters::groupId() {
    return oneIn(16) ? 0x7FFF : 1 + below(12);
}

CEOID Parameters::existing(const WCHAR* database) {
    const StoredDatabase all = contentsOfDatabase(database);
    return all.records.empty() ? 0 : oneOf(all.records).oid;
}

CEOID Parameters::recordOf(const WCHAR* database) {
    if (!oneIn(8)) return existing(database);
    static constexpr CEOID never[] = {0, 1, 0x7FFFFFFF, 0xFFFFFFFF};
    return oneIn(4) ? existing(aszTableName_[1 + below(4)]) : oneOf(never);
}

CEOID Parameters::contact() {
    return recordOf(szContactsDatabase);
}

StoredRecord Parameters::row(int tableId) {
    const StoredDatabase all = contentsOfDatabase(aszTableName_[static_cast<std::size_t>(tableId)]);
    return all.records.empty() ? StoredRecord() : oneOf(all.records);
}

CString Parameters::textFor(PBDBAttrID attribute) {
    if (attribute == PBDBATTR_NAME) return oneIn(8) ? text() : name();
    if (attribute == PBDBATTR_GROUP) return groupName();
    if (attribute == PBDBATTR_CATEGORIES) return categories();
    return isTelNoAttr(attribute) ? number() : text();
}

void Parameters::fill(PBRecord& record, const PBAttribute& attribute) {
    record.dwCITypeMask |= attribute.mask;
    if (attribute.text != nullptr) record.*attribute.text = textFor(attribute.id);
    if (attribute.date != nullptr) record.*attribute.date = oneOf(birthdays);
    if (attribute.number == nullptr) return;
    record.*attribute.number = attribute.id == PBDBATTR_PRIVATE        ? slotWord()
                               : attribute.id == PBDBATTR_PRIMARYTELNO ? telType()
                                                                       : below(1'000);
}

PBRecord Parameters::record(bool mayExtend) {
    PBRecord record;
    const bool extends = mayExtend && oneIn(2);
    for (const PBAttribute& attribute : aPBAttribute_) {
        const bool isOfContact = attribute.place.nTableID == PBDBTBL_POLCONTACTS;
        if (attribute.mask == 0 || (!isOfContact && !extends)) continue;
        if (oneIn(isOfContact ? 2 : 3)) fill(record, attribute);
    }
    return record;
}

SpeedDialInfo Parameters::entry() {
    SpeedDialInfo info;
    info.dwSDialID = slot();
    info.dwOID = contact();
    info.strName = name();
    info.dwTelType = telType();
    info.strTelNo = number();
    info.dwFlags = oneIn(4) ? below(0x100) : 7;
    if (oneIn(2)) return info;
    const unsigned which = below(static_cast<unsigned>(std::size(slotNumbers)));
    info.dwTelType = telTypes[which];
    info.strTelNo = textOfContact(info.dwOID, identOf(slotNumbers[which]));
    return info;
}

PBGroupInfo Parameters::group() {
    PBGroupInfo group;
    group.dwID = groupId();
    group.strName = groupName();
    group.bReject = oneIn(2) ? TRUE : FALSE;
    group.strBellCategory = name();
    group.strBell = name();
    group.strSMSBell = text();
    group.dwFlags = below(256);
    return group;
}

CallEntry Parameters::call() {
    CallEntry call;
    call.ftTimestamp = fileTimeOf(time());
    call.strCID = oneIn(8) ? CString(szWithheldCID_) : oneIn(4) ? number() : makeCNIP(number());
    call.strName = oneIn(2) ? name() : CString();
    call.strCNAP = name();
    call.strCDNIP = number();
    call.dwCallingTime = below(60'000);
    call.dwCallType = below(5);
    call.dwTelType = telType();
    call.dwFlags = below(256);
    return call;
}

// Descriptions

void describe(std::ostream& out, const CString& text) {
    constexpr std::size_t most = 40;
    out << '"' << utf8Of(text.view().substr(0, most)) << '"';
    if (text.view().size() > most) out << "... (" << text.view().size() << ')';
}

void describe(std::ostream& out, const PBRecord& record) {
    out << "{mask 0x" << std::hex << record.dwCITypeMask << std::dec;
    for (const PBAttribute& attribute : aPBAttribute_) {
        if ((record.dwCITypeMask & attribute.mask) == 0) continue;
        out << ", " << attribute.id << ": ";
        if (attribute.text != nullptr) describe(out, record.*attribute.text);
        if (attribute.number != nullptr) out << record.*attribute.number;
        if (attribute.date != nullptr) out << record.*attribute.date;
    }
    out << '}';
}

void describe(std::ostream& out, const SpeedDialInfo& info) {
    out << "{slot " << info.dwSDialID << ", contact " << info.dwOID << ", type " << info.dwTelType << ' ';
    describe(out, info.strTelNo);
    out << '}';
}

void describe(std::ostream& out, const PBGroupInfo& group) {
    out << "{ID " << group.dwID << ' ';
    describe(out, group.strName);
    out << ", " << (group.bReject != FALSE ? "rejected" : "admitted") << '}';
}

void describe(std::ostream& out, const CallEntry& call) {
    out << "{at " << ticksOf(call.ftTimestamp) << " from ";
    describe(out, call.strCID);
    out << " named ";
    describe(out, call.strName);
    out << '}';
}

}  // namespace testing_support::work

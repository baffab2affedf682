#pragma once

#include <concepts>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/support/PhoneBookWork.h"
#include "tests/support/StoreContents.h"

// What the kinds of work are made of: parameters by choice, and how operations are described.

namespace testing_support::work {

/// The parameters of one operation. Few of each kind, so that they meet: names that several contacts have, numbers
/// within other numbers, one number in two spellings.
class Parameters {
public:
    explicit Parameters(Choices& choices) : choices_(choices) {}

    unsigned below(unsigned count) { return choices_.below(count); }
    bool oneIn(unsigned count) { return below(count) == count - 1; }
    template <class Range>
    const auto& oneOf(const Range& all) {
        return all[below(static_cast<unsigned>(std::size(all)))];
    }

    CString name();
    CString number();
    CString groupName();
    /// Names of groups with commas between them; perhaps none.
    CString categories();
    /// Anything: empty, long, and perhaps too long for a property.
    CString text();

    DWORD slot();
    DWORD telType();
    /// A word of slots, one for each of three numbers.
    DWORD slotWord();
    /// A call's time, in ticks.
    std::uint64_t time();
    /// Of a category or a group; none that is so large that the next one would be no ID.
    DWORD groupId();

    /// Mostly of a record that is there; else 0, of another database, or never given.
    CEOID recordOf(const WCHAR* database);
    CEOID contact();
    /// 0 when there is none.
    CEOID existing(const WCHAR* database);
    /// A row of one of the phone book's own tables; empty when there is none.
    StoredRecord row(int tableId);

    /// Some fields of a record, those of the extension row among them or not.
    PhoneBook::PBRecord record(bool mayExtend);
    /// An entry for a slot; half of the time it says what its contact says.
    PhoneBook::SpeedDialInfo entry();
    PhoneBook::PBGroupInfo group();
    PhoneBook::CallEntry call();

private:
    void fill(PhoneBook::PBRecord& record, const PhoneBook::PBAttribute& attribute);
    CString textFor(PhoneBook::PBDBAttrID attribute);

    Choices& choices_;
};

/// A contact's text under one of the contacts database's properties; empty when it has none.
CString textOfContact(CEOID contact, WORD ident);

// Descriptions

void describe(std::ostream& out, const CString& text);
void describe(std::ostream& out, const PhoneBook::PBRecord& record);
void describe(std::ostream& out, const PhoneBook::SpeedDialInfo& info);
void describe(std::ostream& out, const PhoneBook::PBGroupInfo& group);
void describe(std::ostream& out, const PhoneBook::CallEntry& call);
template <std::integral Number>
void describe(std::ostream& out, Number number) {
    out << number;
}

/// The name of an operation and what it is given: insertPBGroup(1, "Family").
template <class... Given>
std::string described(std::string_view name, const Given&... given) {
    std::ostringstream out;
    [[maybe_unused]] const char* separator = "";
    out << name << '(';
    ((out << separator, describe(out, given), separator = ", "), ...);
    out << ')';
    return out.str();
}

/// What is done within becomes durable together; E_FAIL when it could not be begun or kept.
template <class Steps>
HRESULT asOneUnit(Steps&& steps) {
    ObjectStoreBatch batch;
    if (!batch.begun()) return E_FAIL;
    const HRESULT result = steps();
    return batch.end() ? result : E_FAIL;
}

}  // namespace testing_support::work

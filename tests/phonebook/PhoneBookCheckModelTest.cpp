#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "tests/phonebook/CheckedPhoneBook.h"
#include "tests/support/TemporaryStore.h"

// Phone books with anything in them: what mending does, and what it leaves alone.

namespace PhoneBook::check_test {
namespace {

using following::OtherProgram;
using groups_test::addCategory;

// A few of everything, so that they meet.

CString anyName() {
    return CString(*rc::gen::element<WString>(TEXT(""), TEXT("a"), TEXT("b"), TEXT("c")).as("name"));
}

WString anyCategories() {
    return *rc::gen::element<WString>(TEXT(""), TEXT("a"), TEXT("b"), TEXT("a, b"), TEXT("c,a"), TEXT(","),
                                      TEXT("\"a,b\""))
                .as("categories");
}

WString anyNumber() {
    return *rc::gen::element<WString>(TEXT(""), TEXT("1"), TEXT("2"), TEXT("3")).as("number");
}

int anyCount(int most) {
    return *rc::gen::inRange(0, most + 1).as("count");
}

DWORD anySlotWord() {
    const auto byte = [] { return *rc::gen::inRange<DWORD>(0, 4).as("slot in a word"); };
    return byte() | byte() << 8 | byte() << 16;
}

using Numbers = std::array<CString, 3>;

/// What the contacts have, as a plain list beside the store.
struct Contacts {
    std::map<DWORD, Numbers> numbers;

    void add(const OtherProgram& other) {
        const ComPtr<IContact> made = other.newContact();
        const Numbers reduced = {anyNumber().c_str(), anyNumber().c_str(), anyNumber().c_str()};
        testing_support::require(made->put_Categories(Bstr(CString(anyCategories())).get()));
        testing_support::require(made->put_MobileTelephoneNumber(Bstr(reduced[0]).get()));
        testing_support::require(made->put_HomeTelephoneNumber(Bstr(reduced[1]).get()));
        testing_support::require(made->put_BusinessTelephoneNumber(Bstr(reduced[2]).get()));
        testing_support::require(made->Save());
        numbers.emplace(testing_support::oidOf(made), reduced);
    }
    /// One that there is, one that there is not, none, or no answer.
    std::optional<DWORD> any() const {
        std::vector<std::optional<DWORD>> all = {std::nullopt, 0, 9'001, 9'002};
        for (const auto& [oid, unused] : numbers)
            all.insert(all.end(), 3, oid);
        return *rc::gen::elementOf(all).as("contact");
    }
};

void addAnyExtensionRow(const Contacts& contacts) {
    const std::optional<DWORD> contact = contacts.any();
    const CString group = anyName();
    const DWORD slots = anySlotWord();
    if (contact) {
        addExtensionRow(*contact, group, slots);
    } else {
        addRow(PBDBTBL_PHONEBOOKEXT, {CCeDBProp::ofText(0x103, group), CCeDBProp::ofUI4(0x108, slots)});
    }
}

void addAnyGroup() {
    const int id = *rc::gen::inRange(0, 4).as("ID of a group");
    if (id == 0) {
        addRow(PBDBTBL_AVAILABLEPBGROUP, {CCeDBProp::ofText(0x301, anyName())});
    } else {
        addGroup(static_cast<DWORD>(id), anyName());
    }
}

Contacts fillWithAnything() {
    const OtherProgram other;
    Contacts contacts;
    for (int i = anyCount(4); i > 0; --i)
        contacts.add(other);
    for (int i = anyCount(6); i > 0; --i)
        addAnyExtensionRow(contacts);
    for (int i = anyCount(5); i > 0; --i)
        speed_dial::addRow(
            {.slot = *rc::gen::element(0, 1, 2, 3, 100).as("slot"), .telType = 4, .number = anyNumber()});
    for (int i = anyCount(4); i > 0; --i)
        addAnyGroup();
    for (int i = anyCount(4); i > 0; --i)
        addCategory(anyName(), static_cast<std::int16_t>(*rc::gen::inRange(1, 4).as("ID of a category")));
    return contacts;
}

/// What tells one finding from another: not the text, which counts.
auto identityOf(const PhoneBookFinding& each) {
    return std::tuple(each.kind, each.contact, each.row, each.slot, each.group, each.category, each.name);
}
using Identity = decltype(identityOf({}));

std::multiset<Identity> identitiesOf(const Findings& findings,
                                     const std::function<bool(const PhoneBookFinding&)>& wanted) {
    std::multiset<Identity> identities;
    for (const PhoneBookFinding& each : findings) {
        if (wanted(each)) identities.insert(identityOf(each));
    }
    return identities;
}

bool any(const PhoneBookFinding& /*finding*/) {
    return true;
}

/// The slots that hold a number of a contact that there is and whose row names them.
std::set<int> slotsInUse(const Contacts& contacts) {
    std::set<int> inUse;
    for (const following::ExtensionRow& row : following::extensionRows()) {
        const auto contact = contacts.numbers.find(row.contact);
        if (contact == contacts.numbers.end()) continue;
        for (std::size_t i = 0; i < 3; ++i) {
            const int slot = static_cast<int>(row.slots >> (8 * i) & 0xFF);
            for (const speed_dial::Row& dialled : speed_dial::rows()) {
                if (slot != 0 && dialled.slot == slot && CString(dialled.number) == contact->second[i])
                    inUse.insert(slot);
            }
        }
    }
    return inUse;
}

void mendAnything() {
    const testing_support::MemoryStoreMount store;
    CheckedPhoneBook book;
    const Contacts contacts = fillWithAnything();
    const std::set<int> inUse = slotsInUse(contacts);
    const Findings before = book.examine();
    const auto [mended, left] = book.mend();
    const Findings after = book.examine();

    RC_ASSERT(left == after);
    RC_ASSERT(identitiesOf(mended, any) == identitiesOf(before, &PhoneBookFinding::canBeMended));
    const auto saidToStay = identitiesOf(before, std::not_fn(&PhoneBookFinding::canBeMended));
    const auto stayed = identitiesOf(left, any);
    RC_ASSERT(std::ranges::includes(saidToStay, stayed));
    RC_ASSERT(slotsInUse(contacts) == inUse);
    if (std::ranges::none_of(after, &PhoneBookFinding::canBeMended)) {
        const Stored once;
        book.mend();
        RC_ASSERT(once == Stored());
    }
}

TEST(PhoneBookCheckModel, MendsWhatItSaysItCanAndNoSlotInUseIsLost) {
    EXPECT_TRUE(rc::check(mendAnything));
}

}  // namespace
}  // namespace PhoneBook::check_test

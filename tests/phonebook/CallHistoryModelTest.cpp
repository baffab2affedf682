#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>
#include <rapidcheck/state.h>

#include "tests/phonebook/Calls.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"

// The call history against a plain list of calls and a plain phone book: after any run of operations both hold the
// same calls, of the same names, in the same order.

namespace PhoneBook {
namespace {

using calls_test::addRow;
using calls_test::loggedCalls;
using calls_test::LoggedCalls;
using calls_test::rowOf;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

/// A contact, its numbers in the order in which types are tried.
struct Person {
    CString name;
    std::array<CString, 5> numbers;
};

constexpr std::array<DWORD, 5> typeFlags = {0x4, 0x8, 0x10, 0x400, 0x800};

// In the order of their names, and in that order added.
const std::vector<Person>& people() {
    static const std::vector<Person> all = {
        {TEXT("Alpha"), {{{}, TEXT("02-333-4444")}}},
        {TEXT("Kim"), {{TEXT("010-1111-2222")}}},
        {TEXT("Kim"), {{TEXT("010-5555-6666"), TEXT("02-333-4444")}}},
        {TEXT("가나다"), {{{}, {}, TEXT("031-555-6666"), {}, TEXT("0315556666")}}},
        {{}, {{{}, {}, {}, TEXT("012-345-6789")}}},
    };
    return all;
}

rc::Gen<CString> anyOf(std::vector<const WCHAR*> texts) {
    return rc::gen::map(rc::gen::elementOf(std::move(texts)), [](const WCHAR* text) { return CString(text); });
}

rc::Gen<CString> anyCid() {
    // Those of the contacts, one within another, an unknown one, one not reduced, none, a withheld one.
    return anyOf({TEXT("023334444"), TEXT("01011112222"), TEXT("01055556666"), TEXT("0315556666"), TEXT("0123456789"),
                  TEXT("11112222"), TEXT("5551234"), TEXT("010-1111-2222"), TEXT(""), TEXT("발신번호표시제한")});
}

rc::Gen<CString> anyName() {
    return anyOf({TEXT(""), TEXT(""), TEXT("Kim"), TEXT("kIM"), TEXT("가나다"), TEXT("Nobody"), TEXT("K\"im")});
}

rc::Gen<std::uint64_t> anyTime() {
    return rc::gen::oneOf(rc::gen::inRange<std::uint64_t>(0, 40), rc::gen::arbitrary<std::uint64_t>(),
                          rc::gen::element(std::uint64_t{0}, ~std::uint64_t{0}));
}

CallEntry anyCall() {
    CallEntry entry;
    entry.ftTimestamp = fileTimeOf(*anyTime());
    entry.strCID = *anyCid();
    entry.strName = *anyName();
    entry.strCNAP = *anyName();
    entry.strCDNIP = *anyCid();
    entry.dwCallingTime = *rc::gen::arbitrary<DWORD>();
    entry.dwCallType = *rc::gen::arbitrary<DWORD>();
    entry.dwTelType = *rc::gen::element(DWORD{0}, DWORD{0x4}, DWORD{0x12345678});
    entry.dwFlags = *rc::gen::arbitrary<DWORD>();
    return entry;
}

CString digitsOf(const CString& number) {
    CString digits;
    for (int i = 0; i < number.GetLength(); ++i) {
        if (number[i] != u'-') digits += number[i];
    }
    return digits;
}

CString upper(CString text) {
    text.MakeUpper();
    return text;
}

const Person* personNamed(const CString& name) {
    const auto found =
        std::ranges::find_if(people(), [&](const Person& person) { return upper(person.name) == upper(name); });
    return found == people().end() ? nullptr : &*found;
}

const Person* holderOf(const CString& cid) {
    const auto found = std::ranges::find_if(people(), [&](const Person& person) {
        return std::ranges::any_of(person.numbers, [&](const CString& number) { return digitsOf(number) == cid; });
    });
    return found == people().end() ? nullptr : &*found;
}

/// What the phone book makes of a call that is logged.
void complete(CallEntry& entry) {
    entry.dwFlags = 7;
    if (entry.strCID.IsEmpty()) entry.strName = TEXT("번호정보없음");
    if (entry.strCID.IsEmpty() || entry.strCID == TEXT("발신번호표시제한")) return;
    const Person* person = entry.strName.IsEmpty() ? nullptr : personNamed(entry.strName);
    if (person == nullptr) person = holderOf(entry.strCID);
    if (person == nullptr) {
        entry.strName.Empty();  // found within a longer number or not at all
        return;
    }
    for (std::size_t i = 0; i < typeFlags.size(); ++i) {
        if (digitsOf(person->numbers[i]) != entry.strCID) continue;
        entry.dwTelType = typeFlags[i];
        entry.strName = person->numbers[i];
        break;
    }
    if (!person->name.IsEmpty()) entry.strName = person->name;
}

struct ModelCall {
    int key = 0;
    CallEntry entry;
};

/// The calls, newest first. Of one time, the later logged is the newer.
struct Model {
    std::vector<ModelCall> calls;
    int nextKey = 0;

    void add(const CallEntry& entry) {
        const auto older = std::ranges::find_if(calls, [&](const ModelCall& call) {
            return ticksOf(call.entry.ftTimestamp) <= ticksOf(entry.ftTimestamp);
        });
        calls.insert(older, {nextKey++, entry});
    }
    void log(CallEntry entry) {
        if (calls.size() >= 100) calls.pop_back();  // one, however many there are
        complete(entry);
        add(entry);
    }
    const CallEntry* find(int key) const {
        const auto found = std::ranges::find(calls, key, &ModelCall::key);
        return found == calls.end() ? nullptr : &found->entry;
    }
    void erase(int key) {
        std::erase_if(calls, [&](const ModelCall& call) { return call.key == key; });
    }
};

struct System {
    System() {
        for (const Person& person : people()) {
            PBRecord record;
            record.dwCITypeMask = 0xC1D;
            record.strName = person.name;
            record.strMobileTelephoneNumber = person.numbers[0];
            record.strHomeTelephoneNumber = person.numbers[1];
            record.strBusinessTelephoneNumber = person.numbers[2];
            record.strPagerNumber = person.numbers[3];
            record.strBusinessFaxNumber = person.numbers[4];
            RC_ASSERT(book->insertPBRecord(record, nullptr) == S_OK);
        }
    }
    /// Adds a row past the history, as it would be found in a store that has more.
    void addCall(const Model& model, const CallEntry& entry) {
        oids[model.nextKey] = addRow(book.manager(), rowOf(entry));
        RC_ASSERT(oids[model.nextKey] != 0u);
    }
    /// The row that is not known yet.
    DWORD newRow() {
        const std::unique_ptr<Database::Iterator> rows(
            book->getIterator(UINT{PBDBTBL_CALLHISTORY}, 0, nullptr, nullptr));
        std::set<DWORD> known;
        for (const auto& [key, oid] : oids)
            known.insert(oid);
        for (int i = 0; i < rows->getNumItems(); ++i) {
            if (const DWORD oid = rows->getAt(i); !known.contains(oid)) return oid;
        }
        RC_FAIL("no row was added");
        return 0;
    }

    MemoryStoreMount store;
    OpenPhoneBook book;
    std::map<int, DWORD> oids;  ///< Those of deleted calls as well.
};

void holdAgainst(const Model& model, System& system) {
    LoggedCalls expected;
    for (const ModelCall& call : model.calls)
        expected.emplace_back(system.oids.at(call.key), call.entry);
    RC_ASSERT(loggedCalls(system.book.manager()) == expected);

    CallEntry newest;
    CallEntry oldest;
    DWORD oid = 0;
    const HRESULT found = model.calls.empty() ? S_FALSE : S_OK;
    RC_ASSERT(system.book->getMRUCallEntry(&newest) == found);
    RC_ASSERT(newest == (found == S_OK ? expected.front().second : CallEntry()));
    RC_ASSERT(system.book->getLRUCallEntry(&oid, &oldest) == found);
    RC_ASSERT(oldest == (found == S_OK ? expected.back().second : CallEntry()));
    RC_ASSERT(oid == (found == S_OK ? expected.back().first : 0));
}

/// After each command the history must hold what the model holds.
class Command : public rc::state::Command<Model, System> {
public:
    void run(const Model& before, System& system) const override {
        act(before, system);
        Model after = before;
        this->apply(after);
        holdAgainst(after, system);
    }

protected:
    virtual void act(const Model& before, System& system) const = 0;
};

class Insert : public Command {
public:
    void apply(Model& model) const override { model.log(entry); }
    void show(std::ostream& out) const override { out << "insert " << entry; }

protected:
    void act(const Model& before, System& system) const override {
        CallEntry given = entry;
        RC_ASSERT(system.book->insertCallEntry(&given) == S_OK);
        CallEntry expected = entry;
        complete(expected);
        RC_ASSERT(given == expected);
        system.oids[before.nextKey] = system.newRow();
    }

private:
    CallEntry entry = anyCall();
};

class Query : public Command {
public:
    explicit Query(const Model& model) : key(*rc::gen::inRange(0, model.nextKey + 1)) {}
    void show(std::ostream& out) const override { out << "query " << key; }

protected:
    void act(const Model& before, System& system) const override {
        CallEntry read = earlier;
        const auto known = system.oids.find(key);
        RC_ASSERT(system.book->queryCallEntry(known == system.oids.end() ? 0 : known->second, &read) == S_OK);
        CallEntry expected;
        expected.dwFlags = earlier.dwFlags;  // of a call that is not there only the flags stay
        if (const CallEntry* stored = before.find(key); stored != nullptr) expected = *stored;
        RC_ASSERT(read == expected);
    }

private:
    int key;
    CallEntry earlier = anyCall();
};

class Delete : public Command {
public:
    explicit Delete(const Model& model) : key(*rc::gen::inRange(0, model.nextKey + 1)) {}
    void apply(Model& model) const override { model.erase(key); }
    void show(std::ostream& out) const override { out << "delete " << key; }

protected:
    void act(const Model& before, System& system) const override {
        const auto known = system.oids.find(key);
        const DWORD oid = known == system.oids.end() ? 0 : known->second;
        const HRESULT gone = oid == 0 ? E_INVALIDARG : E_FAIL;
        RC_ASSERT(system.book->deleteCallEntry(oid) == (before.find(key) != nullptr ? S_OK : gone));
    }

private:
    int key;
};

class DeleteAll : public Command {
public:
    void apply(Model& model) const override { model.calls.clear(); }
    void show(std::ostream& out) const override { out << "delete all"; }

protected:
    void act(const Model&, System& system) const override { RC_ASSERT(system.book->deleteAllCallEntries() == S_OK); }
};

class Reopen : public Command {
public:
    void show(std::ostream& out) const override { out << "reopen"; }

protected:
    void act(const Model&, System& system) const override {
        RC_ASSERT(system.book->closeDB() == S_OK);
        RC_ASSERT(system.book->openDB(nullptr) == S_OK);
    }
};

/// All is deleted seldom: most is to be seen of a full history.
auto anyCommand(const Model& model) {
    using namespace rc::state::gen;
    return rc::gen::weightedOneOf<std::shared_ptr<const Command::CommandType>>(
        {{60, execOneOfWithArgs<Insert, Insert, Insert, Insert, Query, Query, Delete, Reopen>()(model)},
         {1, execOneOfWithArgs<DeleteAll>()(model)}});
}

RC_GTEST_PROP(CallHistoryModel, HoldsTheNewestCallsUnderAnySequenceOfOperations, ()) {
    Model model;
    System system;
    const int rows = *rc::gen::weightedOneOf<int>({{4, rc::gen::inRange(97, 104)}, {1, rc::gen::inRange(0, 4)}});
    for (int i = 0; i < rows; ++i) {
        CallEntry entry;
        entry.ftTimestamp = fileTimeOf(static_cast<std::uint64_t>(i * 7 % 31));  // in no order, some of one time
        system.addCall(model, entry);
        model.add(entry);
    }
    rc::state::check(model, system, anyCommand);
}

}  // namespace
}  // namespace PhoneBook

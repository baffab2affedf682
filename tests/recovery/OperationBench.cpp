#include "tests/recovery/OperationBench.h"

#include <memory>
#include <sstream>
#include <stdexcept>

#include <sqlite3.h>

#include "tests/phonebook/Calls.h"
#include "tests/phonebook/Following.h"
#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/Builders.h"
#include "tests/support/ToolRunner.h"

namespace recovery {

using PhoneBook::PhoneBookDBMgr;
using speed_dial::dial;
using testing_support::contact;
using testing_support::OpenPhoneBook;

namespace {

void require(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(what);
}

void mount(const std::string& path, const ObjectStore::Options& options = {}) {
    if (!ObjectStore::mount(path, options)) throw std::runtime_error(ObjectStore::errorText());
}

void setSlot(OpenPhoneBook& book, const dial& entry) {
    PhoneBook::SpeedDialInfo info = entry;
    require(book->insertSpeedDialInfo(info.dwSDialID, &info) == S_OK, "a slot was not set");
}

void addContacts(OpenPhoneBook& book, Cast& cast) {
    cast.kim = book.add(contact()
                            .name(TEXT("Kim"))
                            .group(TEXT("Family"))
                            .categories(TEXT("Friends"))
                            .mobile(TEXT("010-1111-2222"))
                            .home(TEXT("02-333-4444"))
                            .business(TEXT("031-555-6666"))
                            .bell(TEXT("waltz.mp3")));
    cast.lee = book.add(contact().name(TEXT("Lee")).group(TEXT("Family")).mobile(TEXT("010-7777-8888")));
    cast.park = book.add(contact().name(TEXT("Park")).mobile(TEXT("010-9999-0000")));
    cast.choi =
        book.add(contact().name(TEXT("Choi")).group(TEXT("Work")).categories(TEXT("Chess")).home(TEXT("02-121-2121")));
    cast.jung = book.add(contact().name(TEXT("Jung")).group(TEXT("Family")).mobile(TEXT("010-3434-5656")));
    cast.yoon = book.add(contact().name(TEXT("Yoon")).group(TEXT("Work")).mobile(TEXT("010-7878-9090")));
    setSlot(book, dial(2).of(cast.kim).mobile(TEXT("010-1111-2222")));
    setSlot(book, dial(3).of(cast.kim).home(TEXT("02-333-4444")));
    setSlot(book, dial(5).of(cast.lee).mobile(TEXT("010-7777-8888")));
    setSlot(book, dial(9).of(cast.yoon).mobile(TEXT("010-7878-9090")));
}

void logCalls(OpenPhoneBook& book) {
    for (const auto& [ticks, number] :
         {std::pair(100, TEXT("01011112222")), {200, TEXT("5550000")}, {300, TEXT("01077778888")}}) {
        PhoneBook::CallEntry call = PhoneBook::calls_test::call(static_cast<std::uint64_t>(ticks), number);
        require(book->insertCallEntry(&call) == S_OK, "a call was not logged");
    }
}

void workOnItElsewhere(Cast& cast) {
    const following::OtherProgram other;
    cast.han = other.addFiled(TEXT("Han"), TEXT("Family, Friends"), TEXT("010-2323-4545"));
    other.file(cast.jung, TEXT("Chess"));
    other.remove(cast.yoon);
    other.add(TEXT("Seo"));
    cast.sports = PhoneBook::groups_test::addCategory(TEXT("Sports"), 7);
}

DWORD rowWith(UINT table, int attr, const CCeDBProp& value) {
    const auto beside = following::openBeside(table);
    const std::unique_ptr<Database::Iterator> each(beside->getIterator(0, nullptr, nullptr));
    while (each->next() == S_OK) {
        if (each->getProp(attr) == value) return each->getCur();
    }
    throw std::runtime_error("there is no such row");
}

void findRows(Cast& cast) {
    using namespace PhoneBook;
    cast.kimsRow = rowWith(PBDBTBL_PHONEBOOKEXT, 0, CCeDBProp::ofUI4(0x100, cast.kim));
    cast.slotRow = rowWith(PBDBTBL_SPEEDDIALNO, 0, CCeDBProp::ofI2(0x200, 5));
    cast.familyRow = rowWith(PBDBTBL_AVAILABLEPBGROUP, 1, CCeDBProp::ofText(0x301, TEXT("Family")));
    cast.call = rowWith(PBDBTBL_CALLHISTORY, 1, CCeDBProp::ofText(0x401, TEXT("5550000")));
}

}  // namespace

PreparedStore prepareStore(void (*alter)(PhoneBookDBMgr&)) {
    const testing_support::TemporaryFolder folder(testing_support::placeInMemory());
    const std::string path = (folder / "store.db").string();
    PreparedStore prepared;
    mount(path, testing_support::quickOptions());
    PhoneBook::groups_test::addCategory(TEXT("Family"), 1);
    prepared.cast.work = PhoneBook::groups_test::addCategory(TEXT("Work"), 2);
    {
        OpenPhoneBook book;
        addContacts(book, prepared.cast);
        logCalls(book);
        workOnItElsewhere(prepared.cast);
        findRows(prepared.cast);
        if (alter != nullptr) alter(book.manager());
    }
    ObjectStore::unmount();
    prepared.bytes = testing_support::readFile(path);
    return prepared;
}

OperationBench::OperationBench(const PreparedStore& prepared) : cast_(prepared.cast) {
    testing_support::writeFile(path(), prepared.bytes);
    mount(path());
    static_cast<void>(manager_->openDB(nullptr));  // a store may have been altered to have no tables
}

OperationBench::~OperationBench() {
    manager_.reset();
    ObjectStore::unmount();
}

CString OperationBench::file(const char* name, WStringView text) const {
    const std::filesystem::path made = folder_ / name;
    testing_support::writeFile(made, testing_support::utf16Bytes(text));
    return made.generic_string<WCHAR>().c_str();
}

void OperationBench::forgetPages() const {
    sqlite3* other = nullptr;
    const bool opened = sqlite3_open(path().c_str(), &other) == SQLITE_OK;
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> closed(other, sqlite3_close);
    require(opened && sqlite3_exec(other, "UPDATE store SET next_id = next_id", nullptr, nullptr, nullptr) == SQLITE_OK,
            "another program cannot write");
}

void OperationBench::remount() const {
    mount(path());
}

BenchState stateOf(OperationBench& bench) {
    std::ostringstream cache;
    for (DWORD slot = 0; slot < PhoneBookDBMgr::nSDialCacheSize_; ++slot) {
        const PhoneBook::SpeedDialInfo& entry = bench.manager().getSDialInfoCache(slot);
        if (!(entry == PhoneBookDBMgr::nullSDialInfo)) cache << "cache " << slot << ": " << entry << '\n';
    }
    return {testing_support::contentsOfStore(), cache.str()};
}

std::string differencesBetween(const BenchState& expected, const BenchState& found) {
    std::string differences = testing_support::differencesBetween(expected.store, found.store);
    if (expected.cache != found.cache) differences += "expected " + expected.cache + "found    " + found.cache;
    return differences;
}

}  // namespace recovery

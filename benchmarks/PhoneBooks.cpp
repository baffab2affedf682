#include "benchmarks/PhoneBooks.h"

#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

#include "benchmarks/Scratch.h"
#include "tessera/platform/base/Unicode.h"
#include "tessera/platform/objectstore/ObjectStore.h"

namespace benchmarks {

namespace {

/// The fields that a look-up asks for: all that there are.
constexpr DWORD allFields = 0x007F0FFF;

struct Opened {
    std::filesystem::path store;
    std::unique_ptr<OpenBook> book;
};
Opened& opened() {
    static Opened book;
    return book;
}

void mount(const std::filesystem::path& store, const ObjectStore::Options& options = {}) {
    if (!ObjectStore::mount(store.string(), options)) throw std::runtime_error(ObjectStore::errorText());
}

}  // namespace

People peopleOf(const benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    return {.count = count, .extended = count < aMillion};
}

void severalSizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(1'000)->Arg(10'000)->Arg(65'000)->UseManualTime();
}

void allSizes(benchmark::internal::Benchmark* benchmark) {
    severalSizes(benchmark);
    benchmark->Arg(aMillion);
}

PhoneBook::PBRecord recordOf(const Person& person) {
    PhoneBook::PBRecord record;
    record.dwCITypeMask = 0x5;
    record.strName = CString(person.name);
    record.strMobileTelephoneNumber = CString(person.mobile);
    if (!person.home.empty()) {
        record.dwCITypeMask |= 0x8;
        record.strHomeTelephoneNumber = CString(person.home);
    }
    if (!person.group.empty()) {
        record.dwCITypeMask |= 0x10000;
        record.strGroup = CString(person.group);
    }
    return record;
}

std::filesystem::path importFile(const People& people) {
    const std::filesystem::path path = scratchFolder() / (fileNameOf(people) + ".csv");
    if (std::filesystem::exists(path)) return path;
    std::u16string text = u"name,group,categories,mobile,home\n";
    for (int i = 0; i < people.count; ++i) {
        const Person person = personOf(people, i);
        text += person.name + u"," + person.group + u",," + person.mobile;
        if (!person.home.empty()) text += u"," + person.home;
        text += u'\n';
    }
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(text.data()), static_cast<std::streamsize>(text.size() * sizeof(char16_t)));
    return path;
}

std::filesystem::path storeOf(const People& people) {
    const std::filesystem::path path = scratchFolder() / (fileNameOf(people) + ".db");
    if (std::filesystem::exists(path)) return path;
    closeBook();
    mount(path, {.fullDurability = false});  // it is made durable as a whole
    PhoneBook::PhoneBookDBMgr manager;
    CString file = *textOfUtf8(importFile(people).string());
    if (FAILED(manager.initDB(false)) || FAILED(manager.openDB(nullptr)) || FAILED(manager.buildDBFromFile(file, 0))) {
        throw std::runtime_error("the phone book was not made");
    }
    if (people.count > 0) identify(manager, CString(reducedMobileOf(0)));  // it makes what later ones rest on
    manager.closeDB();
    ObjectStore::unmount();
    settle(path);
    return path;
}

std::filesystem::path storeToChange(const People& people) {
    return people.count < aMillion ? copyToChange(storeOf(people)) : storeOf(people);
}

DWORD identify(PhoneBook::PhoneBookDBMgr& manager, const CString& number) {
    PhoneBook::PBRecord record;
    record.dwCITypeMask = allFields;
    DWORD oid = 0;
    const HRESULT result = manager.queryCallerInfo(number, &record, &oid);
    return SUCCEEDED(result) ? oid : 0;
}

OpenBook::OpenBook(const std::filesystem::path& store) {
    closeBook();
    mount(store);
    if (FAILED(manager_.openDB(nullptr))) throw std::runtime_error("the phone book cannot be opened");
}

OpenBook::~OpenBook() {
    manager_.closeDB();
    ObjectStore::unmount();
}

void searchContacts(PhoneBook::PhoneBookDBMgr& manager) {
    delete manager.searchPBRecord(PhoneBook::PBDBATTR_NAME, u"xyzzy");
}

PhoneBook::PhoneBookDBMgr& warmBook(const std::filesystem::path& store) {
    Opened& now = opened();
    if (now.book == nullptr || now.store != store) {
        now.book = std::make_unique<OpenBook>(store);
        now.store = store;
        searchContacts(now.book->manager());
    }
    return now.book->manager();
}

void closeBook() {
    opened().book.reset();
}

void forgetContacts() {
    OpenBook somebody(storeOf({.count = 1}));  // without anybody there would be nothing to take the others' place
    searchContacts(somebody.manager());
}

}  // namespace benchmarks

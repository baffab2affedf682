#include "tests/recovery/Damage.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/platform/objectstore/ObjectStoreFile.h"
#include "tests/support/Builders.h"
#include "tests/support/Files.h"
#include "tests/support/PhoneBookWork.h"

namespace damage_test {
namespace {

using PhoneBook::PhoneBookDBMgr;
using testing_support::quickOptions;
using testing_support::readFile;
using testing_support::writeFile;

constexpr std::size_t pageBytes = 4'096;
constexpr int operations = 400;
constexpr unsigned triedOneIn = 8;

void walk(Database::Iterator* made) {
    const std::unique_ptr<Database::Iterator> iterator(made);
    if (iterator == nullptr) return;
    // A damaged order may lead in a circle: what the count says is enough.
    const int most = iterator->getNumItems() + 1;
    for (int i = 0; i < most && iterator->next() == S_OK; ++i) {
        static_cast<void>(iterator->getString(0));
        CCeDBRecord record;
        static_cast<void>(iterator->getRecord(&record));
    }
}

/// Every kind of reading that a client does. What each answers depends on the damage; that it answers is what counts.
void readEverything(PhoneBookDBMgr& manager) {
    for (int table = 0; table < manager.getNumTables(); ++table)
        walk(manager.getIterator(static_cast<UINT>(table), 0, nullptr, nullptr));
    walk(manager.searchPBRecord(PhoneBook::PBDBATTR_NAME, TEXT("a")));
    walk(manager.qSearchPBRecord(PhoneBook::PBDBATTR_NAME, TEXT("k")));
    walk(manager.searchPBRecordOfTelNo(nullptr, TEXT("010")));
    walk(manager.searchPBRecordOfPBGroup(TEXT("Friends")));
    PhoneBook::PBRecord record;
    record.dwCITypeMask = 0x00FFFFFF;
    DWORD oid = 0;
    static_cast<void>(manager.queryCallerInfo(TEXT("01012345678"), &record, &oid));
    static_cast<void>(manager.fillSDialInfoCache());
    CStringArray groups;
    static_cast<void>(manager.getAvailablePBGroups(groups));
    PhoneBook::CallEntry call;
    static_cast<void>(manager.getMRUCallEntry(&call));
    static_cast<void>(manager.getLRUCallEntry(&oid, &call));
}

bool addsAContact(PhoneBookDBMgr& manager) {
    PhoneBook::PBRecord record =
        testing_support::contact().name(TEXT("New")).mobile(TEXT("010-1")).group(TEXT("Friends")).record();
    DWORD oid = 0;
    return manager.insertPBRecord(record, &oid) == S_OK;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Outcomes& outcomes) {
    return out << outcomes.stores << " damaged stores: " << outcomes.refused << " not opened, " << outcomes.found
               << " found by the examination; of " << outcomes.tried << " tried " << outcomes.recovered
               << " recovered, " << outcomes.written << " still written to";
}

DamagedStore::DamagedStore(unsigned seed) : path_((folder_ / "store.db").string()) {
    if (!ObjectStore::mount(path_, quickOptions())) throw std::runtime_error(ObjectStore::errorText());
    {
        testing_support::OpenPhoneBook book;
        testing_support::RandomChoices choices(seed);
        for (int i = 0; i < operations; ++i)
            testing_support::doAnyPhoneBookOperation(book.manager(), choices);
        for (const WCHAR* name : {TEXT("Kim"), TEXT("김민수"), TEXT("Lee")})
            book.add(testing_support::contact().name(name).mobile(TEXT("010-1234-5678")).group(TEXT("Friends")));
    }
    ObjectStore::unmount();
    whole_ = readFile(path_);
    // "2;" and what the collation calls its version, behind the locale in the one row of the store.
    versionAt_ = whole_.find("2;");
    while (versionAt_ + versionLength_ < whole_.size() && whole_[versionAt_ + versionLength_] > ' ')
        ++versionLength_;
    if (versionAt_ == std::string::npos) throw std::runtime_error("the version of the keys is not where it was");
}

bool DamagedStore::isVersionOfKeys(std::size_t place) const {
    return place >= versionAt_ && place < versionAt_ + versionLength_;
}

void DamagedStore::meet(const std::string& bytes, Outcomes& outcomes) {
    const bool tried = outcomes.stores++ % triedOneIn == 0;
    if (tried) ++outcomes.tried;
    std::filesystem::remove(path_ + "-wal");
    writeFile(path_, bytes);

    std::vector<std::string> findings;
    const bool examined = ObjectStoreFile::check(path_, ObjectStoreFile::Depth::full, findings, quickOptions());
    const bool mounted = ObjectStore::mount(path_, quickOptions()) != FALSE;
    if (!examined || !findings.empty()) ++outcomes.found;
    EXPECT_TRUE(mounted || !examined || !findings.empty()) << "it is refused, but nothing is found to be wrong";
    if (mounted) {
        PhoneBookDBMgr manager;
        const bool opened = SUCCEEDED(manager.openDB(nullptr));
        readEverything(manager);
        EXPECT_TRUE(readFile(path_) == bytes) << "the file was written to";
        if (!opened) ++outcomes.refused;
        if (opened && tried && addsAContact(manager)) ++outcomes.written;
    } else {
        ++outcomes.refused;
    }
    if (mounted) ObjectStore::unmount();
    EXPECT_TRUE(mounted || readFile(path_) == bytes) << "the file was written to";
    if (!tried) return;
    writeFile(path_, bytes);
    recover(outcomes);
}

void DamagedStore::recover(Outcomes& outcomes) {
    const std::string saved = path_ + ".saved";
    ObjectStoreFile::Recovery recovery;
    if (!ObjectStoreFile::recover(path_, saved, recovery, quickOptions())) return;
    ++outcomes.recovered;
    std::vector<std::string> findings;
    EXPECT_TRUE(ObjectStoreFile::check(saved, ObjectStoreFile::Depth::full, findings, quickOptions()));
    EXPECT_TRUE(findings.empty()) << "in the recovered store: " << findings.front();
    std::filesystem::remove(saved);
}

Outcomes changeBytes(DamagedStore& store, unsigned places, std::mt19937& random) {
    Outcomes outcomes;
    while (outcomes.stores < places && !testing::Test::HasFailure()) {
        std::string bytes = store.wholeBytes();
        const std::size_t place = random() % bytes.size();
        if (store.isVersionOfKeys(place)) continue;
        SCOPED_TRACE("byte " + std::to_string(place));
        bytes[place] = static_cast<char>(bytes[place] ^ (1 + random() % 255));
        store.meet(bytes, outcomes);
    }
    return outcomes;
}

Outcomes cutShort(DamagedStore& store, unsigned places, std::mt19937& random) {
    Outcomes outcomes;
    while (outcomes.stores < places && !testing::Test::HasFailure()) {
        const std::size_t length = random() % store.wholeBytes().size();
        SCOPED_TRACE("cut to " + std::to_string(length) + " bytes");
        store.meet(store.wholeBytes().substr(0, length), outcomes);
    }
    EXPECT_EQ(outcomes.found, outcomes.stores);
    EXPECT_EQ(outcomes.refused, outcomes.stores);
    return outcomes;
}

Outcomes replacePages(DamagedStore& store, unsigned pages, std::mt19937& random) {
    Outcomes outcomes;
    while (outcomes.stores < pages && !testing::Test::HasFailure()) {
        std::string bytes = store.wholeBytes();
        const std::size_t count = bytes.size() / pageBytes;
        const std::size_t place = random() % count;
        std::string page(pageBytes, '\0');
        const auto kind = random() % 3;
        if (kind == 1) page = bytes.substr(random() % count * pageBytes, pageBytes);
        if (kind == 2) std::generate(page.begin(), page.end(), [&] { return static_cast<char>(random()); });
        SCOPED_TRACE("page " + std::to_string(place) + " replaced, kind " + std::to_string(kind));
        bytes.replace(place * pageBytes, pageBytes, page);
        if (bytes != store.wholeBytes()) store.meet(bytes, outcomes);
    }
    return outcomes;
}

}  // namespace damage_test

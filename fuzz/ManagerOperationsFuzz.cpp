// Operations of the manager, one after another. The input's bytes are the choices that make them: which operation, on
// which record, with which parameters. The same operations are done on a store in memory and on a store on disk.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "fuzz/FuzzedInput.h"
#include "tests/support/Builders.h"
#include "tests/support/PhoneBookWork.h"
#include "tests/support/StoreContents.h"
#include "tests/support/TemporaryStore.h"

using fuzz::require;
using namespace testing_support;

namespace {

constexpr std::size_t mostOperations = 100;

std::filesystem::path quickestFolder() {
    const std::filesystem::path inMemory = "/dev/shm";
    return std::filesystem::is_directory(inMemory) ? inMemory : std::filesystem::temp_directory_path();
}

/// A store on disk with an empty phone book: made once, and copied for every input.
class FreshStore {
public:
    FreshStore() {
        mount();
        { const OpenPhoneBook book; }
        ObjectStore::unmount();
        std::filesystem::rename(path(), folder_ / "fresh.db");
    }

    void mountCopy() const {
        for (const char* part : {"store.db", "store.db-wal", "store.db-shm"})
            std::filesystem::remove(folder_ / part);
        std::filesystem::copy_file(folder_ / "fresh.db", path());
        mount();
    }

private:
    std::filesystem::path path() const { return folder_ / "store.db"; }
    void mount() const { require(ObjectStore::mount(path().string(), quickOptions()) != FALSE, "a store is mounted"); }

    TemporaryFolder folder_{quickestFolder()};
};

/// What was done on the mounted store, and what is in it then.
struct Played {
    std::vector<PhoneBookDeed> deeds;
    StoreContents contents;
};

Played play(std::string_view input) {
    Played played;
    OpenPhoneBook book;
    InputChoices choices(input);
    while (!choices.atEnd() && played.deeds.size() < mostOperations)
        played.deeds.push_back(doAnyPhoneBookOperation(book.manager(), choices));
    played.contents = contentsOfStore();
    return played;
}

void print(const PhoneBookDeed& deed) {
    std::fprintf(stderr, "%08x %s\n", static_cast<unsigned>(deed.result), deed.description.c_str());
}

void requireSame(const Played& inMemory, const Played& onDisk) {
    if (inMemory.deeds != onDisk.deeds) {
        std::size_t i = 0;
        for (; i < inMemory.deeds.size() && inMemory.deeds[i] == onDisk.deeds[i]; ++i)
            print(inMemory.deeds[i]);
        std::fputs("then in memory and on disk:\n", stderr);
        print(inMemory.deeds.at(i));
        print(onDisk.deeds.at(i));
    }
    require(inMemory.deeds == onDisk.deeds, "an operation answers the same in memory and on disk");
    if (inMemory.contents == onDisk.contents) return;
    for (const PhoneBookDeed& deed : inMemory.deeds)
        print(deed);
    std::fputs(differencesBetween(inMemory.contents, onDisk.contents).c_str(), stderr);
    require(false, "operations leave the same in memory and on disk");
}

void requireSound(const Played& played, const std::vector<std::string>& faults) {
    if (faults.empty()) return;
    for (const PhoneBookDeed& deed : played.deeds)
        print(deed);
    for (const std::string& fault : faults)
        std::fprintf(stderr, "%s\n", fault.c_str());
    require(false, "a phone book is sound");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const FreshStore fresh;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    require(ObjectStore::mountMemory() != FALSE, "a store is mounted");
    const Played inMemory = play(input);
    fresh.mountCopy();
    const Played onDisk = play(input);
    requireSame(inMemory, onDisk);
    requireSound(onDisk, faultsOf(onDisk.contents));
    requireSound(onDisk, faultsOfOrders());
    ObjectStore::unmount();
    return 0;
}

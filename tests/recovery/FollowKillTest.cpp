// A watcher dies at a random instant while it follows the end of contacts that have speed-dial slots: of each contact
// its extension row and all of its slots are freed, or none is.

#include <array>
#include <chrono>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/phonebook/Following.h"
#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/Builders.h"
#include "tests/support/Forked.h"
#include "tests/support/TemporaryStore.h"

using following::OtherProgram;
using testing_support::Forked;
using testing_support::Line;
using testing_support::OpenPhoneBook;
using testing_support::quickOptions;

namespace {

constexpr unsigned rounds = 50;
constexpr unsigned roundsAtMost = 10 * rounds;
constexpr unsigned deathsAtWork = rounds / 2;  ///< It goes on until so many rounds have met it at work.
constexpr unsigned contacts = 40;
constexpr unsigned slotsOfEach = 3;

/// Follows whatever happens, and tells of each change followed, until it is killed.
void watch(Line& parent, const std::string& path) {
    following::Manager manager;
    if (!ObjectStore::mount(path, quickOptions()) || FAILED(manager.initDB(true)))
        throw std::runtime_error("not set up");
    parent.say('r');
    for (MSG message; GetMessage(&message);) {
        DispatchMessage(&message);
        parent.say('f');
    }
}

/// Contacts with three slots each, all of them different; answers who has which.
std::map<CEOID, std::set<int>> addContacts() {
    std::map<CEOID, std::set<int>> slotsOf;
    const ObjectStoreBatch batch;
    OpenPhoneBook book;
    for (unsigned i = 0; i < contacts; ++i) {
        const unsigned first = 1 + i * slotsOfEach;
        const CEOID oid =
            book.add(testing_support::contact().name(TEXT("Kim")).slots(first | (first + 1) << 8 | (first + 2) << 16));
        for (unsigned slot = first; slot < first + slotsOfEach; ++slot) {
            speed_dial::addRow({static_cast<int>(slot), speed_dial::mobileType, TEXT("0101")});
            slotsOf[oid].insert(static_cast<int>(slot));
        }
    }
    return slotsOf;
}

void removeContacts(const std::map<CEOID, std::set<int>>& slotsOf) {
    const ObjectStoreBatch batch;
    const OtherProgram program;
    for (const auto& [oid, slots] : slotsOf)
        program.remove(oid);
}

/// Kills it a while after it told of so many changes.
void killWhileItFollows(Forked& watcher, std::mt19937& random) {
    for (auto followed = random() % contacts; followed != 0; --followed)
        watcher.line().hear<char>();
    const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 300);
    while (std::chrono::steady_clock::now() < end) {
    }
    watcher.kill();
    EXPECT_TRUE(WIFSIGNALED(watcher.wait())) << "it ended by itself";
}

/// Answers how many contacts are followed.
unsigned checkEachIsWhole(const std::map<CEOID, std::set<int>>& slotsOf) {
    std::set<CEOID> rows;
    for (const following::ExtensionRow& row : following::extensionRows())
        rows.insert(row.contact);
    std::set<int> occupied;
    for (const speed_dial::Row& row : speed_dial::rows())
        occupied.insert(row.slot);
    unsigned followed = 0;
    for (const auto& [oid, slots] : slotsOf) {
        followed += rows.contains(oid) ? 0 : 1;
        for (const int slot : slots)
            EXPECT_EQ(rows.contains(oid), occupied.contains(slot)) << "slot " << slot << " of contact " << oid;
    }
    return followed;
}

}  // namespace

TEST(FollowKill, FreesTheRowAndAllTheSlotsOfAContactOrNone) {
    const std::random_device::result_type seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    unsigned diedOnTheWay = 0;
    for (unsigned round = 0; round < rounds || (diedOnTheWay < deathsAtWork && round < roundsAtMost); ++round) {
        if (testing::Test::HasFailure()) return;
        const testing_support::TemporaryFolder folder;
        const std::string path = (folder / "store.db").string();
        Forked watcher([&](Line& parent) { watch(parent, path); });
        EXPECT_EQ('r', watcher.line().hear<char>());
        ASSERT_TRUE(ObjectStore::mount(path, quickOptions()));
        const auto slotsOf = addContacts();
        for (unsigned i = 0; i < contacts; ++i)
            watcher.line().hear<char>();  // of the new contacts, which have their rows
        removeContacts(slotsOf);
        killWhileItFollows(watcher, random);
        const unsigned followed = checkEachIsWhole(slotsOf);
        diedOnTheWay += followed != 0 && followed != contacts ? 1 : 0;
        ObjectStore::unmount();
    }
    EXPECT_GE(diedOnTheWay, deathsAtWork) << "a kill has to meet it at work";
}

// A program that sets and clears speed-dial slots dies at a random instant: a slot's row and the slot word of its
// contact are both written, or neither is, and nothing that was told is lost.

#include <array>
#include <chrono>
#include <csignal>
#include <random>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/TemporaryStore.h"

using PhoneBook::PhoneBookDBMgr;
using PhoneBook::SpeedDialInfo;
using speed_dial::dial;
using testing_support::OpenPhoneBook;
using testing_support::quickOptions;

namespace {

constexpr int rounds = 50;
constexpr int contacts = 10;
constexpr int numbersOfEach = 3;

/// Each number has a slot of its own, set or clear.
using Slots = std::array<bool, contacts * numbersOfEach>;
using Contacts = std::array<DWORD, contacts>;

WString numberIn(int index) {
    const std::string digits = std::to_string(1'000 + index);
    return TEXT("010-") + WString(digits.begin(), digits.end());
}

Contacts makeContacts() {
    OpenPhoneBook book;
    Contacts oids{};
    for (int i = 0; i < contacts; ++i) {
        const int first = i * numbersOfEach;
        oids[static_cast<std::size_t>(i)] = book.add(testing_support::contact()
                                                         .name(TEXT("Kim"))
                                                         .mobile(numberIn(first))
                                                         .home(numberIn(first + 1))
                                                         .business(numberIn(first + 2)));
    }
    return oids;
}

/// The entry of the number with that index: slot, contact and type follow from it.
SpeedDialInfo entryOf(int index, const Contacts& oids) {
    return dial(static_cast<DWORD>(index + 1))
        .of(oids[static_cast<std::size_t>(index / numbersOfEach)])
        .set(DWORD{4} << index % numbersOfEach, numberIn(index));
}

/// Sets the slots that are clear and clears those that are set, and tells of each, until it is killed.
[[noreturn]] void changeSlots(const std::string& path, Slots slots, const Contacts& oids, unsigned seed, int told) {
    std::mt19937 random(seed);
    PhoneBookDBMgr manager;
    if (!ObjectStore::mount(path, quickOptions()) || FAILED(manager.openDB(nullptr))) ::_exit(1);
    while (true) {
        const auto index = static_cast<unsigned char>(random() % slots.size());
        SpeedDialInfo entry = entryOf(index, oids);
        const HRESULT result = slots[index] ? manager.deleteSpeedDialInfo(entry.dwSDialID, &entry)
                                            : manager.insertSpeedDialInfo(entry.dwSDialID, &entry);
        slots[index] = !slots[index];
        if (result != S_OK || ::write(told, &index, 1) != 1) ::_exit(2);
    }
}

/// Lets a process change the slots and kills it a while after it told of so many changes; brings `slots` up to what
/// it told. Answers how many changes that were.
int changeUntilKilled(const std::string& path, Slots& slots, const Contacts& oids, std::mt19937& random) {
    const auto seed = static_cast<unsigned>(random());
    const int enough = static_cast<int>(random() % 40);
    const std::chrono::microseconds longer(random() % 1'500);
    int ends[2] = {-1, -1};
    EXPECT_EQ(0, ::pipe(ends));
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        changeSlots(path, slots, oids, seed, ends[1]);
    }
    ::close(ends[1]);
    int told = 0;
    const auto takeOne = [&] {
        unsigned char index = 0;
        if (::read(ends[0], &index, 1) != 1) return false;
        slots[index] = !slots[index];
        ++told;
        return true;
    };
    while (told < enough && takeOne()) {
    }
    const auto end = std::chrono::steady_clock::now() + longer;
    while (std::chrono::steady_clock::now() < end) {
    }
    ::kill(child, SIGKILL);
    int status = 0;
    EXPECT_EQ(child, ::waitpid(child, &status, 0));
    EXPECT_TRUE(WIFSIGNALED(status)) << "it ended by itself: " << status;
    while (takeOne()) {
    }
    ::close(ends[0]);
    return told;
}

/// What the store says of the slots, row and link in agreement.
Slots slotsIn(PhoneBookDBMgr& manager, const Contacts& oids) {
    Slots slots{};
    for (const speed_dial::Row& row : speed_dial::rows()) {
        const int index = row.slot - 1;
        EXPECT_TRUE(index >= 0 && index < static_cast<int>(slots.size())) << row;
        EXPECT_FALSE(slots.at(static_cast<std::size_t>(index))) << "twice: " << row;
        const CString number = PhoneBookDBMgr::makeCNIP(numberIn(index).c_str());
        EXPECT_EQ((speed_dial::Row{index + 1, DWORD{4} << index % numbersOfEach, WString(number.view())}), row);
        slots.at(static_cast<std::size_t>(index)) = true;
    }
    for (std::size_t i = 0; i < oids.size(); ++i) {
        const DWORD word = speed_dial::wordOf(manager, oids[i]);
        for (std::size_t number = 0; number < numbersOfEach; ++number) {
            const std::size_t index = i * numbersOfEach + number;
            const DWORD slot = slots[index] ? static_cast<DWORD>(index + 1) : 0;
            EXPECT_EQ(slot, word >> (8 * number) & 0xFF) << "of slot " << index + 1 << " only one half is written";
        }
    }
    return slots;
}

void checkStore(const std::string& path, Slots& slots, const Contacts& oids) {
    ASSERT_TRUE(ObjectStore::mount(path, quickOptions())) << ObjectStore::errorText();
    {
        PhoneBookDBMgr manager;
        ASSERT_EQ(S_OK, manager.openDB(nullptr));
        const Slots stored = slotsIn(manager, oids);
        int changed = 0;
        for (std::size_t i = 0; i < slots.size(); ++i)
            changed += stored[i] != slots[i] ? 1 : 0;
        EXPECT_LE(changed, 1) << "only the change at work may be untold";
        slots = stored;
    }
    ObjectStore::unmount();
}

}  // namespace

TEST(SpeedDialKill, LeavesRowAndLinkOfEverySlotInAgreementAndLosesNothingThatWasTold) {
    const std::random_device::result_type seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const testing_support::TemporaryFolder folder;
    const std::string path = (folder / "store.db").string();
    ASSERT_TRUE(ObjectStore::mount(path, quickOptions()));
    const Contacts oids = makeContacts();
    ObjectStore::unmount();  // none may be open in a process that forks
    Slots slots{};
    int told = 0;
    for (int round = 0; round < rounds; ++round) {
        told += changeUntilKilled(path, slots, oids, random);
        ASSERT_NO_FATAL_FAILURE(checkStore(path, slots, oids)) << "round " << round;
    }
    EXPECT_GE(told, rounds) << "most rounds should die at work";
}

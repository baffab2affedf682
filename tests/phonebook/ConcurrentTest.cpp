#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"

// Several managers at work on one store: at the end it holds what each of them says it has left there.

namespace PhoneBook {
namespace {

using testing_support::contact;
using testing_support::OpenPhoneBook;
using testing_support::quickOptions;
using testing_support::TemporaryStore;

/// What one worker has left in the store.
struct Tally {
    unsigned contacts = 0;
    unsigned extensionRows = 0;
};

/// Inserts, updates and deletes in a fixed pattern of its own; false when any operation fails.
bool work(unsigned worker, int rounds, Tally& left) {
    OpenPhoneBook book;
    std::vector<DWORD> mine;
    const std::u16string digit(1, static_cast<char16_t>(u'0' + worker));
    for (int round = 0; round < rounds; ++round) {
        const bool extended = (round + static_cast<int>(worker)) % 3 != 0;
        contact built;
        built.name(u"worker " + digit).mobile(u"010-" + digit);
        if (extended) built.group(u"Group " + digit);
        mine.push_back(book.add(built));
        left.contacts += 1;
        left.extensionRows += extended ? 1 : 0;
        if (round % 4 == 1) {
            PBRecord changed = contact().name(u"changed " + digit).group(u"Group " + digit).record();
            if (book->updatePBRecord(mine.back(), changed) != S_OK) return false;
            left.extensionRows += extended ? 0 : 1;
        }
        if (round % 5 == 4) {
            const unsigned rowsBefore = left.extensionRows;
            PBRecord read;
            read.dwCITypeMask = 0x10000;
            if (book->queryCallerInfo(mine.front(), &read) == S_OK) left.extensionRows = rowsBefore - 1;
            if (FAILED(book->deletePBRecord(mine.front()))) return false;
            mine.erase(mine.begin());
            left.contacts -= 1;
        }
    }
    return true;
}

void expectHeld(const std::vector<Tally>& tallies) {
    OpenPhoneBook book;
    unsigned contacts = 0;
    unsigned extensionRows = 0;
    for (const Tally& tally : tallies) {
        contacts += tally.contacts;
        extensionRows += tally.extensionRows;
    }
    EXPECT_EQ(contacts, book->getNumRecords());
    EXPECT_EQ(extensionRows, book->getTable(PBDBTBL_PHONEBOOKEXT)->getNumRecords());
}

TEST(Managers, OfTwoThreadsLeaveWhatTheySayTheyLeft) {
    const TemporaryStore store;
    const OpenPhoneBook setUp;
    std::vector<Tally> tallies(2);
    bool done[2] = {false, false};
    std::vector<std::thread> threads;
    for (unsigned worker = 0; worker < 2; ++worker) {
        threads.emplace_back([&, worker] { done[worker] = work(worker, 200, tallies[worker]); });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(done[0] && done[1]);
    expectHeld(tallies);
}

/// Works in a process of its own; answers its end of a pipe on which its tally will come.
int workInProcess(const std::string& path, unsigned worker) {
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0) return -1;
    if (::fork() != 0) {
        ::close(ends[1]);
        return ends[0];
    }
    Tally left;
    const bool mounted = ObjectStore::mount(path, quickOptions()) != FALSE;
    const bool done = mounted && work(worker, 200, left);
    ObjectStore::unmount();
    if (done && ::write(ends[1], &left, sizeof left) == sizeof left) ::_exit(0);
    ::_exit(1);
}

TEST(Managers, OfTwoProcessesLeaveWhatTheySayTheyLeft) {
    const testing_support::TemporaryFolder folder;
    const std::string path = (folder / "store.db").string();
    // No store may be open in a process that forks.
    const int pipes[2] = {workInProcess(path, 0), workInProcess(path, 1)};
    std::vector<Tally> tallies(2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(static_cast<ssize_t>(sizeof(Tally)),
                  ::read(pipes[i], &tallies[static_cast<std::size_t>(i)], sizeof(Tally)));
        ::close(pipes[i]);
        int status = -1;
        ::wait(&status);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    ASSERT_TRUE(ObjectStore::mount(path, quickOptions()));
    expectHeld(tallies);
    ObjectStore::unmount();
}

}  // namespace
}  // namespace PhoneBook

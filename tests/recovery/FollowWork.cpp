#include "tests/recovery/FollowWork.h"

#include <deque>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/phonebook/Following.h"
#include "tests/recovery/FollowCheck.h"
#include "tests/recovery/FollowWriter.h"
#include "tests/support/Builders.h"
#include "tests/support/Forked.h"
#include "tests/support/TemporaryStore.h"

namespace follow_test {

using testing_support::Forked;
using testing_support::Line;
using testing_support::OpenPhoneBook;
using testing_support::quickOptions;
using testing_support::TemporaryFolder;

namespace {

constexpr unsigned writers = 4;
constexpr unsigned sharedContacts = 5;

void mount(const std::string& path) {
    if (!ObjectStore::mount(path, quickOptions())) throw std::runtime_error(ObjectStore::errorText());
}

/// Changes in two halves, each when it is told to; tells when it is in the middle of the first, and of its end.
void write(Line& parent, const std::string& path, unsigned number, unsigned changes, unsigned seed) {
    const auto shared = parent.hearAll<CEOID>();
    mount(path);
    {
        Writer writer(number, seed, shared);
        for (const unsigned half : {0u, 1u}) {
            parent.hear<char>();
            for (unsigned i = 0; i < changes / 2; ++i) {
                if (half == 0 && i == changes / 4) parent.say('m');
                writer.change(half);
            }
            parent.say('e');
        }
        writer.ledger().sayTo(parent);
    }
    ObjectStore::unmount();
}

/// A number that is the same for two who find the same in the tables.
std::size_t digestOf(following::Manager& manager) {
    std::string all;
    for (const UINT table :
         {PhoneBook::PBDBTBL_PHONEBOOKEXT, PhoneBook::PBDBTBL_SPEEDDIALNO, PhoneBook::PBDBTBL_AVAILABLEPBGROUP}) {
        if (!manager.isOpen(table)) throw std::runtime_error("a table was left closed");
        for (const auto& [oid, row] : PhoneBook::groups_test::rowsOf<CCeDBRecord>(manager, table, std::identity())) {
            for (int i = 0; i < row.getNumProps(); ++i) {
                const CCeDBProp& prop = row.getPropAt(i);
                all += std::to_string(oid) + ' ' + std::to_string(prop.getPropId()) + ' ' +
                       std::to_string(prop.getUI4()) + ' ' + utf8Of(prop.getText().view()) + '\n';
            }
        }
    }
    return std::hash<std::string>()(all);
}

/// Follows, from when it says so, until it has heard that the marker is gone.
void watch(Line& parent, const std::string& path) {
    const auto marker = parent.hear<CEOID>();
    mount(path);
    {
        following::Manager manager;
        testing_support::require(manager.initDB(true));
        testing_support::require(manager.openDB(nullptr));
        parent.say('r');
        bool isLast = false;
        MSG message;
        while (!isLast && GetMessage(&message)) {
            if (message.message == WM_DBNOTIFICATION) {
                const auto* notification = reinterpret_cast<const CENOTIFICATION*>(message.lParam);
                isLast = notification->oid == marker && notification->uType == following::deleted;
            }
            DispatchMessage(&message);
        }
        parent.say('d');
        parent.hear<char>();  // until the others have finished, too
        parent.say(digestOf(manager));
    }
    ObjectStore::unmount();
}

/// All processes of a test, made while no store is open.
class Processes {
public:
    Processes(unsigned changes, unsigned watcherCount, unsigned seed) {
        const std::string path = (folder_ / "store.db").string();
        for (unsigned i = 0; i < writers; ++i)
            writers_.emplace_back([=](Line& parent) { write(parent, path, i, changes / writers, seed + i); });
        for (unsigned i = 0; i < watcherCount; ++i)
            watchers_.emplace_back([=](Line& parent) { watch(parent, path); });
        mount(path);
        setUp();
        for (Forked& writer : writers_)
            writer.line().say(shared_);
    }
    ~Processes() { ObjectStore::unmount(); }
    Processes(const Processes&) = delete;
    Processes& operator=(const Processes&) = delete;

    void startWatcher(std::size_t index) {
        watchers_[index].line().say(marker_);
        EXPECT_EQ('r', watchers_[index].line().hear<char>());
    }
    void killWatcher() {
        watchers_.front().kill();
        EXPECT_TRUE(WIFSIGNALED(watchers_.front().wait())) << "it ended by itself";
        watchers_.pop_front();
    }
    void startHalf() {
        for (Forked& writer : writers_)
            writer.line().say('g');
    }
    void waitForMiddle() {
        for (Forked& writer : writers_)
            EXPECT_EQ('m', writer.line().hear<char>());
    }
    void waitForEnd() {
        for (Forked& writer : writers_)
            EXPECT_EQ('e', writer.line().hear<char>());
    }

    void expectFollowed(bool firstHalfMayBeMissed) {
        std::vector<Ledger> ledgers;
        for (Forked& writer : writers_) {
            ledgers.push_back(Ledger::hearFrom(writer.line()));
            EXPECT_EQ(0, writer.wait());
        }
        following::OtherProgram().remove(marker_);  // the last change of all
        for (Forked& watcher : watchers_)
            EXPECT_EQ('d', watcher.line().hear<char>());
        expectTablesFollow(ledgers, shared_, firstHalfMayBeMissed);
        OpenPhoneBook book;
        following::Manager here;
        ASSERT_EQ(S_OK, here.openDB(nullptr));
        for (Forked& watcher : watchers_) {
            watcher.line().say('d');
            EXPECT_EQ(digestOf(here), watcher.line().hear<std::size_t>()) << "it finds other tables than we do";
            EXPECT_EQ(0, watcher.wait());
        }
    }

private:
    void setUp() {
        OpenPhoneBook book;
        PhoneBook::PBGroupInfo fixed;
        fixed.dwID = fixedGroup;
        testing_support::require(book->insertAvailablePBGroup(&fixed, false));
        for (unsigned i = 0; i < sharedContacts; ++i)
            shared_.push_back(book.add(testing_support::contact().name(TEXT("Shared")).group(filedUnder[0])));
        marker_ = following::OtherProgram().add(TEXT("Marker"));
    }

    TemporaryFolder folder_;
    std::deque<Forked> writers_;
    std::deque<Forked> watchers_;
    std::vector<CEOID> shared_;
    CEOID marker_ = 0;
};

}  // namespace

void expectFollowed(unsigned changes, unsigned watchers) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    Processes processes(changes, watchers, seed);
    for (unsigned i = 0; i < watchers; ++i)
        processes.startWatcher(i);
    for (int half = 0; half < 2; ++half) {
        processes.startHalf();
        if (half == 0) processes.waitForMiddle();
        processes.waitForEnd();
    }
    processes.expectFollowed(false);
}

void expectFollowedByOneThatIsKilled(unsigned changes) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    Processes processes(changes, 2, seed);
    processes.startWatcher(0);
    processes.startHalf();
    processes.waitForMiddle();
    processes.killWatcher();
    processes.waitForEnd();
    processes.startWatcher(0);
    processes.startHalf();
    processes.waitForEnd();
    processes.expectFollowed(true);
}

}  // namespace follow_test

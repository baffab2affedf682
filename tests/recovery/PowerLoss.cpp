#include "tests/recovery/PowerLoss.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Builders.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/PhoneBookWork.h"
#include "tests/support/PlaceInMemory.h"
#include "tests/support/Seed.h"
#include "tests/support/Sql.h"
#include "tests/support/StoreContents.h"
#include "tests/support/TemporaryStore.h"

namespace power_loss {

namespace fs = std::filesystem;

using testing::IsEmpty;
using namespace testing_support;

namespace {

constexpr const char* storeName = "store.db";
constexpr std::size_t disksOfACut = 3;

/// Of equal contents alone.
using Digest = std::size_t;

Digest digestOf(const StoreContents& contents) {
    std::ostringstream text;
    text << contents;
    return std::hash<std::string>()(text.str());
}

void mountOrThrow(const fs::path& folder, const ObjectStore::Options& options) {
    if (!ObjectStore::mount((folder / storeName).string(), options)) throw std::runtime_error(ObjectStore::errorText());
}

/// What one program does: it opens the phone book, and then does one operation after the other.
class Work {
public:
    Work(unsigned seed, bool writesMuch) : choices_(seed), writesMuch_(writesMuch) {}

    PhoneBookDeed step() {
        ++steps_;
        if (!book_) {
            book_.emplace();
            return {"the phone book is opened", S_OK};
        }
        return writesMuch_ && steps_ % 4 != 0 ? writeLongText() : doAnyPhoneBookOperation(book_->manager(), choices_);
    }

private:
    /// As much as a record takes of one text, each time in one contact and another.
    PhoneBookDeed writeLongText() {
        constexpr const WCHAR* name = TEXT("Somebody with a long address");
        CCeDBProp key = CCeDBProp::ofText(0, name);
        const std::unique_ptr<Database::Iterator> namesakes(
            (*book_)->getIterator(UINT{PhoneBook::PBDBATTR_NAME}, &key, &key));
        const DWORD there = namesakes == nullptr ? 0 : namesakes->getAt(0);
        const WString text(30'000, static_cast<WCHAR>(u'a' + choices_.below(26)));
        PhoneBook::PBRecord record = contact().name(name).email(text).record();
        const HRESULT result =
            there != 0 ? (*book_)->updatePBRecord(there, record) : (*book_)->insertPBRecord(record, nullptr);
        return {"a long text is written", result};
    }

    RandomChoices choices_;
    bool writesMuch_;
    unsigned steps_ = 0;
    std::optional<OpenPhoneBook> book_;
};

/// What a program did on a store before the power went.
struct Run {
    unsigned seed = 0;
    std::vector<Digest> states;  ///< What the store held at first, and after each operation that was acknowledged.
    bool wasAtWork = false;      ///< The power went in the middle of the next one.
};

std::string integrityOf(const fs::path& folder) {
    sqlite3* opened = nullptr;
    const int result = testing_support::openSqlite(folder / storeName, opened);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(opened, sqlite3_close);
    std::string answer;
    const auto append = [](void* text, int, char** values, char**) {
        *static_cast<std::string*>(text) += values[0];
        return 0;
    };
    if (result == SQLITE_OK) sqlite3_exec(opened, "PRAGMA integrity_check", append, &answer, nullptr);
    return answer;
}

/// A store, from one cut to the next.
class Victim {
public:
    explicit Victim(const Plan& plan) : plan_(plan), folder_(std::make_unique<TemporaryFolder>(placeInMemory())) {
        mountOrThrow(folder_->path(), quickOptions());
        OpenPhoneBook();
        start_ = digestOf(contentsOfStore());
        ObjectStore::unmount();
    }

    void cut(std::mt19937& random, Outcome& outcome) {
        const TemporaryFolder before(placeInMemory());
        fs::copy(folder_->path(), before.path());
        Disks disks;
        const Run run = workUntilCut(random, disks, outcome);
        for (auto& disk : disks) {
            folder_ = std::move(disk);
            check(run, before.path(), outcome);
            if (testing::Test::HasFailure()) return;
        }
    }

private:
    /// What the disk may hold after one cut, in a folder each.
    using Disks = std::array<std::unique_ptr<TemporaryFolder>, disksOfACut>;

    Run workUntilCut(std::mt19937& random, Disks& disks, Outcome& outcome) const {
        FaultyDisk disk;
        if (plan_.inCheckpoints) {
            disk.cutPowerAt(1 + static_cast<long>(random() % 40), storeName);
        } else {
            disk.cutPowerAt(1 + static_cast<long>(random() % 400));
        }
        const Run run = work(disk, static_cast<unsigned>(random()));
        ++outcome.cuts;
        outcome.acknowledged += static_cast<unsigned>(run.states.size()) - 1;
        outcome.inCheckpoint += disk.changedAtTheCut().filename() == storeName ? 1 : 0;
        outcome.atEnd += run.wasAtWork ? 0 : 1;
        for (auto& each : disks) {
            each = std::make_unique<TemporaryFolder>(placeInMemory());
            disk.leaveIn(each->path(), random() % 2 == 0 ? Unsynced::lost : Unsynced::scattered, random);
        }
        return run;
    }

    Run work(FaultyDisk& disk, unsigned seed) const {
        constexpr unsigned mostSteps = 90;
        Run run{seed, {start_}};
        try {
            mountOrThrow(folder_->path(), plan_.options);
            Work work(seed, plan_.inCheckpoints);
            for (unsigned i = 0; i < mostSteps && !run.wasAtWork; ++i) {
                work.step();
                run.wasAtWork = !disk.hasPower();
                if (!run.wasAtWork) run.states.push_back(digestOf(contentsOfStore()));
            }
        } catch (const std::runtime_error& failure) {
            EXPECT_FALSE(disk.hasPower()) << failure.what();
            run.wasAtWork = true;
        }
        ObjectStore::unmount();
        return run;
    }

    /// Takes what the disk holds for the store from now on, if it is what it must be.
    void check(const Run& run, const fs::path& before, Outcome& outcome) {
        ++outcome.disks;
        const TemporaryFolder looked(placeInMemory());  // which takes the log into the store
        fs::copy(folder_->path(), looked.path());
        ASSERT_NO_THROW(mountOrThrow(looked.path(), quickOptions())) << ObjectStore::errorText();
        const StoreContents found = contentsOfStore();
        EXPECT_THAT(faultsOf(found), IsEmpty());
        EXPECT_THAT(faultsOfOrders(), IsEmpty());
        EXPECT_EQ("ok", integrityOf(looked.path()));
        ObjectStore::unmount();
        start_ = digestOf(found);
        if (start_ == run.states.back()) return;
        // An operation may make the store what it was once before.
        const bool isOlder = std::ranges::find(run.states, start_) != run.states.end();
        if (isOlder && !plan_.options.fullDurability) {
            ++outcome.foundOlder;
            return;
        }
        ++outcome.foundDone;
        EXPECT_TRUE(run.wasAtWork);
        expectNextDone(run, before, found);
    }

    /// Does it all again on the store as it was, and the operation that the cut met as well.
    void expectNextDone(const Run& run, const fs::path& before, const StoreContents& found) const {
        const TemporaryFolder again(placeInMemory());
        fs::copy(before, again.path());
        mountOrThrow(again.path(), quickOptions());
        {
            Work work(run.seed, plan_.inCheckpoints);
            for (std::size_t i = 1; i < run.states.size(); ++i)
                work.step();
            const StoreContents last = contentsOfStore();
            EXPECT_EQ(run.states.back(), digestOf(last)) << "the work cannot be repeated";
            const PhoneBookDeed met = work.step();
            const StoreContents behind = contentsOfStore();
            EXPECT_TRUE(behind == found) << "after " << run.states.size() - 1
                                         << " operations the cut met: " << met.description
                                         << "\nagainst the store without it:\n"
                                         << differencesBetween(last, found) << "against the store with it:\n"
                                         << differencesBetween(behind, found);
        }
        ObjectStore::unmount();
    }

    Plan plan_;
    std::unique_ptr<TemporaryFolder> folder_;
    Digest start_ = 0;
};

}  // namespace

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    return out << outcome.cuts << " cuts, " << outcome.inCheckpoint << " of them in a checkpoint and " << outcome.atEnd
               << " at the end or later; " << outcome.acknowledged << " operations acknowledged; " << outcome.disks
               << " disks, " << outcome.foundDone << " of them with the operation that the cut met and "
               << outcome.foundOlder << " without some that were acknowledged";
}

Outcome expectWholeOperationsAfterCuts(const Plan& plan) {
    const unsigned seed = seedOfTest();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    Outcome outcome;
    std::optional<Victim> victim;
    while (outcome.cuts < plan.cuts && !testing::Test::HasFailure()) {
        if (outcome.cuts % plan.cutsOfAStore == 0) victim.emplace(plan);
        victim->cut(random, outcome);
    }
    return outcome;
}

}  // namespace power_loss

#include "tests/recovery/WorkKill.h"

#include <chrono>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Builders.h"
#include "tests/support/Forked.h"
#include "tests/support/PhoneBookWork.h"
#include "tests/support/Seed.h"
#include "tests/support/StoreContents.h"
#include "tests/support/TemporaryStore.h"

namespace work_test {

using testing::IsEmpty;
using namespace testing_support;

namespace {

/// What one program does: it opens the phone book, and then does one operation after the other.
class Work {
public:
    explicit Work(unsigned seed) : choices_(seed) {}

    PhoneBookDeed step() {
        if (book_) return doAnyPhoneBookOperation(book_->manager(), choices_);
        book_.emplace();
        return {"the phone book is opened", S_OK};
    }

private:
    RandomChoices choices_;
    std::optional<OpenPhoneBook> book_;
};

/// The steps of one program that count: those that it acknowledged, and the next when that was found done.
struct Run {
    unsigned seed = 0;
    std::vector<HRESULT> results;
};

void mountOrThrow(const std::string& path, const ObjectStore::Options& options) {
    if (!ObjectStore::mount(path, options)) throw std::runtime_error(ObjectStore::errorText());
}

/// Works and acknowledges each step, until it is killed.
[[noreturn]] void workUntilKilled(Line& parent, const std::string& path, const ObjectStore::Options& options,
                                  unsigned seed) {
    mountOrThrow(path, options);
    Work work(seed);
    while (true)
        parent.say(work.step().result);
}

/// All that it still has to say, once it is dead.
void hearTheRest(Line& line, std::vector<HRESULT>& results) {
    try {
        while (true)
            results.push_back(line.hear<HRESULT>());
    } catch (const std::runtime_error&) {  // its end of the line was closed
    }
}

/// Lets a program work, and kills it a while after it acknowledged so many steps.
Run runUntilKilled(const std::string& path, const ObjectStore::Options& options, std::mt19937& random) {
    Run run{static_cast<unsigned>(random()), {}};
    Forked program([&](Line& parent) { workUntilKilled(parent, path, options, run.seed); });
    for (auto count = random() % 30; count != 0; --count)
        run.results.push_back(program.line().hear<HRESULT>());
    const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 3'000);
    while (std::chrono::steady_clock::now() < end) {
    }
    program.kill();
    EXPECT_TRUE(WIFSIGNALED(program.wait())) << "it ended by itself";
    hearTheRest(program.line(), run.results);
    return run;
}

/// What the store must hold when a kill has met `step`: it as it was before, or as it is behind the step.
struct Expected {
    StoreContents before;
    PhoneBookDeed step;
    StoreContents behind;
};

/// Does all runs again, one after the other, on a store in memory, and then the step that comes behind the last.
Expected replayed(const std::vector<Run>& runs) {
    const MemoryStoreMount store;
    std::optional<Work> work;
    for (const Run& run : runs) {
        work.reset();
        work.emplace(run.seed);
        for (const HRESULT result : run.results) {
            const PhoneBookDeed deed = work->step();
            EXPECT_EQ(deed.result, result) << deed.description;
        }
    }
    Expected expected;
    expected.before = contentsOfStore();
    expected.step = work->step();
    expected.behind = contentsOfStore();
    work.reset();
    return expected;
}

/// A store, and all that happened to it.
class Victim {
public:
    explicit Victim(const ObjectStore::Options& options) : options_(options) {
        mountOrThrow(path(), options_);
        runs_.push_back({});
        runs_.back().results.push_back(Work(runs_.back().seed).step().result);
        ObjectStore::unmount();  // none may be open in a process that forks
    }

    void kill(std::mt19937& random, Killed& killed) {
        runs_.push_back(runUntilKilled(path(), options_, random));
        ++killed.kills;
        killed.acknowledged += static_cast<unsigned>(runs_.back().results.size());
        const Expected expected = replayed(runs_);
        if (testing::Test::HasFailure()) return;
        mountOrThrow(path(), options_);
        check(expected, killed);
        ObjectStore::unmount();
    }

private:
    std::string path() const { return (folder_ / "store.db").string(); }

    void check(const Expected& expected, Killed& killed) {
        const StoreContents found = contentsOfStore();
        const bool isAbsent = found == expected.before;
        const bool isDone = found == expected.behind;
        EXPECT_TRUE(isAbsent || isDone) << "after step " << runs_.back().results.size()
                                        << " the kill met: " << expected.step.description
                                        << "\nagainst the store without it:\n"
                                        << differencesBetween(expected.before, found) << "against the store with it:\n"
                                        << differencesBetween(expected.behind, found);
        EXPECT_THAT(faultsOf(found), IsEmpty());
        EXPECT_THAT(faultsOfOrders(), IsEmpty());
        if (isAbsent && isDone) return;  // it writes nothing, and dies with its program
        ++killed.atWork;
        ++(isDone ? killed.foundDone : killed.foundAbsent);
        if (isDone) runs_.back().results.push_back(expected.step.result);
    }

    TemporaryFolder folder_;
    ObjectStore::Options options_;
    std::vector<Run> runs_;
};

}  // namespace

std::ostream& operator<<(std::ostream& out, const Killed& killed) {
    return out << killed.kills << " kills, " << killed.acknowledged << " operations acknowledged; " << killed.atWork
               << " kills met an operation that changes the store: " << killed.foundDone << " found it done, "
               << killed.foundAbsent << " found nothing of it";
}

Killed expectOnlyWholeOperations(const Kills& plan) {
    const unsigned seed = seedOfTest();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    Killed killed;
    std::optional<Victim> victim;
    while (killed.kills < plan.kills || (killed.atWork < plan.kills / 2 && killed.kills < 10 * plan.kills)) {
        if (killed.kills % plan.killsOfAStore == 0) {
            victim.reset();
            victim.emplace(plan.options);
        }
        victim->kill(random, killed);
        if (testing::Test::HasFailure()) break;
    }
    EXPECT_GE(killed.atWork, plan.kills / 2) << "a kill has to meet it at work: " << killed;
    return killed;
}

}  // namespace work_test

#include <algorithm>
#include <optional>
#include <set>
#include <tuple>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/platform/objectstore/StoreTest.h"

// One handle against a plain sorted vector: after any run of seeks, reads and writes both stand at the
// same record and read the same of it.

namespace objectstore_test {
namespace {

using testing_support::MemoryStoreMount;
using testing_support::TemporaryStore;

/// A place among (value, identifier) pairs; a record without the number has no value and comes last.
struct ModelPlace {
    bool lacking = false;
    int number = 0;
    CEOID oid = 0;

    auto key() const { return std::tuple(lacking, number, oid); }
    friend bool operator<(const ModelPlace& a, const ModelPlace& b) { return a.key() < b.key(); }
    friend bool operator==(const ModelPlace& a, const ModelPlace& b) { return a.key() == b.key(); }
};

class Model {
public:
    explicit Model(bool descending) : descending_(descending) {}

    void add(CEOID oid, std::optional<int> number) { records_[oid] = number; }
    void write(CEOID oid, std::optional<int> number) { records_[oid] = number; }
    void erase(CEOID oid) { records_.erase(oid); }

    CEOID toIndex(std::size_t index) {
        const auto all = ordered();
        return index < all.size() ? reach(all[index]) : runOff();
    }
    CEOID toIndexFromEnd(std::size_t index) {
        const auto all = ordered();
        return index < all.size() ? reach(all[all.size() - 1 - index]) : runOff();
    }
    CEOID toRecord(CEOID oid) { return records_.count(oid) != 0 ? reach(placeOf(oid)) : 0; }
    CEOID firstEqual(int number) {
        for (const ModelPlace& place : ordered()) {
            if (!place.lacking && place.number == number) return reach(place);
        }
        return runOff();
    }
    CEOID nextEqual(int number) {
        const CEOID reached = moveBy(1);
        if (reached == 0) return 0;
        return !place_->lacking && place_->number == number ? reached : runOff();
    }
    CEOID moveBy(int steps) {
        if (!started_ && toIndex(0) == 0) return 0;
        if (steps == 0) return current();
        const auto all = ordered();
        // Where the place stands between the records: how many are before it, how many up to it.
        const auto before =
            place_ ? countWhile(all, [&](const auto& at) { return isBefore(at, *place_); }) : all.size();
        const auto upTo = place_ ? countWhile(all, [&](const auto& at) { return !isBefore(*place_, at); }) : all.size();
        const auto target = steps > 0 ? static_cast<long>(upTo) + steps - 1 : static_cast<long>(before) + steps;
        const bool inside = target >= 0 && target < static_cast<long>(all.size());
        return inside ? reach(all[static_cast<std::size_t>(target)]) : runOff();
    }

    /// The record that a read at the position gives; 0 when there is none or it is gone.
    CEOID current() {
        if (!started_) {
            const auto all = ordered();
            if (all.empty()) return 0;
            reach(all.front());
        }
        return place_ && records_.count(place_->oid) != 0 ? place_->oid : 0;
    }
    std::optional<int> numberOf(CEOID oid) const { return records_.at(oid); }
    std::size_t size() const { return records_.size(); }
    Oids oids() const {
        Oids all;
        for (const auto& [oid, number] : records_) {
            all.push_back(oid);
        }
        return all;
    }
    Oids walk() const {
        Oids all;
        for (const ModelPlace& place : ordered()) {
            all.push_back(place.oid);
        }
        return all;
    }

private:
    template <class Condition>
    static std::size_t countWhile(const std::vector<ModelPlace>& all, Condition&& condition) {
        return static_cast<std::size_t>(std::find_if_not(all.begin(), all.end(), condition) - all.begin());
    }
    bool isBefore(const ModelPlace& a, const ModelPlace& b) const { return descending_ ? b < a : a < b; }
    ModelPlace placeOf(CEOID oid) const {
        const std::optional<int> number = records_.at(oid);
        return {!number, number.value_or(0), oid};
    }
    std::vector<ModelPlace> ordered() const {
        std::vector<ModelPlace> all;
        for (const auto& [oid, number] : records_) {
            all.push_back(placeOf(oid));
        }
        std::sort(all.begin(), all.end(), [this](const auto& a, const auto& b) { return isBefore(a, b); });
        return all;
    }
    CEOID reach(const ModelPlace& place) {
        started_ = true;
        place_ = place;
        return place.oid;
    }
    CEOID runOff() {
        started_ = true;
        place_.reset();
        return 0;
    }

    bool descending_;
    bool started_ = false;
    std::optional<ModelPlace> place_;  // none: at the end, once started
    std::map<CEOID, std::optional<int>> records_;
};

Row rowOf(std::optional<int> number) {
    Row row;
    row.ui4(1);
    if (number) {
        row.number(*number);
    } else {
        row.without(numberId);
    }
    return row;
}

/// Half of the identifiers drawn exist, where any do.
CEOID anyOid(const Model& model) {
    const Oids all = model.oids();
    if (all.empty() || *rc::gen::inRange(0, 4) == 0) return *rc::gen::inRange<CEOID>(0, 40);
    return all[*rc::gen::inRange<std::size_t>(0, all.size())];
}

std::optional<int> anyNumber() {
    const int drawn = *rc::gen::inRange(-1, 6);
    return drawn < 0 ? std::nullopt : std::optional(drawn);
}

class Runner {
public:
    explicit Runner(DWORD flags) : handle_(TEXT("Rows"), numberId, flags), other_(TEXT("Rows")), model_(flags != 0) {}

    void run(int operation) {
        switch (operation) {
            case 0: {
                const auto number = anyNumber();
                const CEOID oid = other_.add(rowOf(number));
                RC_ASSERT(oid != 0u);
                model_.add(oid, number);
                return;
            }
            case 1: {
                const CEOID oid = anyOid(model_);
                const auto number = anyNumber();
                const bool present = isPresent(oid);
                RC_ASSERT((writeExisting(oid, number) != 0) == present);
                if (present) model_.write(oid, number);
                return;
            }
            case 2: {
                const CEOID oid = anyOid(model_);
                RC_ASSERT(handle_.erase(oid) == isPresent(oid));
                model_.erase(oid);
                return;
            }
            case 3: {
                const auto index = *rc::gen::inRange<std::size_t>(0, model_.size() + 2);
                RC_ASSERT(handle_.to(static_cast<DWORD>(index)) == model_.toIndex(index));
                return;
            }
            case 4: {
                const auto index = *rc::gen::inRange<std::size_t>(0, model_.size() + 2);
                RC_ASSERT(handle_.seek(CEDB_SEEK_END, index) == model_.toIndexFromEnd(index));
                return;
            }
            case 5: {
                const int steps = *rc::gen::element(-20, -3, -2, -1, 0, 1, 2, 3, 20);
                RC_ASSERT(handle_.by(steps) == model_.moveBy(steps));
                return;
            }
            case 6: {
                const CEOID oid = anyOid(model_);
                RC_ASSERT(handle_.toRecord(oid) == model_.toRecord(oid));
                return;
            }
            case 7: {
                const int number = *rc::gen::inRange(0, 6);
                RC_ASSERT(handle_.firstEqual(Row().number(number)) == model_.firstEqual(number));
                return;
            }
            case 8: {
                const int number = *rc::gen::inRange(0, 6);
                RC_ASSERT(handle_.nextEqual(Row().number(number)) == model_.nextEqual(number));
                return;
            }
            case 9:
                RC_ASSERT(handle_.next() == model_.moveBy(1));
                return;
            default:
                RC_ASSERT(handle_.previous() == model_.moveBy(-1));
                return;
        }
    }

    void compareRead() {
        const CEOID expected = model_.current();
        const auto read = handle_.read();
        RC_ASSERT((read ? read->oid : 0) == expected);
        if (!read) return;
        const bool hasNumber = read->values.count(numberId) != 0;
        RC_ASSERT((hasNumber ? std::optional(read->number()) : std::nullopt) == model_.numberOf(expected));
    }

    void compareWalk() { RC_ASSERT(handle_.walk() == model_.walk()); }

private:
    bool isPresent(CEOID oid) const {
        const Oids all = model_.oids();
        return std::find(all.begin(), all.end(), oid) != all.end();
    }
    /// Identifier 0 would make a record.
    CEOID writeExisting(CEOID oid, std::optional<int> number) {
        return oid == 0 ? 0 : handle_.write(oid, rowOf(number));
    }

    OpenDatabase handle_;
    OpenDatabase other_;
    Model model_;
};

void runAgainstModel(DWORD flags) {
    const CEOID database = makeDatabase(TEXT("Rows"));
    {
        Runner runner(flags);
        const auto count = *rc::gen::inRange(1, 80);
        for (int i = 0; i < count; ++i) {
            runner.run(*rc::gen::weightedElement<int>(
                {{6, 0}, {3, 1}, {3, 2}, {4, 3}, {1, 4}, {2, 5}, {2, 6}, {2, 7}, {2, 8}, {6, 9}, {4, 10}}));
            if (*rc::gen::arbitrary<bool>()) runner.compareRead();
        }
        runner.compareWalk();
    }
    RC_ASSERT(CeDeleteDatabaseEx(database) != FALSE);
}

RC_GTEST_PROP(HandleModel, MovesAsASortedVectorDoesInMemory, ()) {
    const MemoryStoreMount store;
    runAgainstModel(0);
}

RC_GTEST_PROP(HandleModel, MovesAsAReversedVectorDoesInMemoryWhenDescending, ()) {
    const MemoryStoreMount store;
    runAgainstModel(CEDB_SORT_DESCENDING);
}

/// What a failing run left, so that its shrinking can go on.
void removeLeftOver() {
    CEOID left = 0;
    CloseHandle(CeOpenDatabaseEx2(&left, TEXT("Rows"), 0, 0, 0, nullptr));
    if (left != 0) CeDeleteDatabaseEx(left);
}

TEST(HandleModel, MovesAsAVectorDoesOnDisk) {
    const TemporaryStore store;  // one for all runs: each has a database of its own in it
    EXPECT_TRUE(rc::check([] {
        removeLeftOver();
        runAgainstModel(*rc::gen::element(DWORD{0}, DWORD{CEDB_SORT_DESCENDING}));
    }));
}

}  // namespace
}  // namespace objectstore_test

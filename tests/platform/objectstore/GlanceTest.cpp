#include <memory>
#include <thread>

#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/platform/objectstore/StoreTest.h"

namespace objectstore_test {
namespace {

/// A handle that stands on a record whose number is 1.
class Glance : public StoreTest {
protected:
    Glance() {
        makeDatabase(TEXT("Rows"));
        rows_ = std::make_unique<OpenDatabase>(TEXT("Rows"));
        oid_ = rows_->add(Row().number(1));
        EXPECT_EQ(readNumber(), 1);
    }

    std::int32_t readNumber() { return rows_->readRecord(oid_).number(); }
    void write(std::int32_t number) { rows_->write(oid_, Row().number(number)); }
    void writeInAnotherThread(std::int32_t number) {
        std::thread([&] { OpenDatabase(TEXT("Rows")).write(oid_, Row().number(number)); }).join();
    }

private:
    std::unique_ptr<OpenDatabase> rows_;
    CEOID oid_ = 0;
};
INSTANTIATE_TEST_SUITE_P(BothStores, Glance, bothStores, nameOfKind);

TEST_P(Glance, ReadsAsOfItsBeginningUntilItEnds) {
    {
        const ObjectStoreGlance glance;
        EXPECT_EQ(readNumber(), 1);
        writeInAnotherThread(2);
        EXPECT_EQ(readNumber(), 1);
    }
    EXPECT_EQ(readNumber(), 2);
}

TEST_P(Glance, SeesWhatItsOwnThreadWrites) {
    const ObjectStoreGlance glance;
    EXPECT_EQ(readNumber(), 1);
    write(2);
    EXPECT_EQ(readNumber(), 2);
}

TEST_P(Glance, WithinAnotherEndsWithThatOne) {
    {
        const ObjectStoreGlance outer;
        EXPECT_EQ(readNumber(), 1);
        { const ObjectStoreGlance inner; }
        writeInAnotherThread(2);
        EXPECT_EQ(readNumber(), 1);
    }
    EXPECT_EQ(readNumber(), 2);
}

TEST_P(Glance, WithoutOneEachCommitIsSeenAtTheNextCall) {
    for (std::int32_t number = 2; number < 20; ++number) {
        writeInAnotherThread(number);
        EXPECT_EQ(readNumber(), number);
        write(-number);
        EXPECT_EQ(readNumber(), -number);
    }
}

TEST(GlanceOfAStore, IsHarmlessWhenAnotherIsMountedMeanwhile) {
    auto first = std::make_unique<testing_support::MemoryStoreMount>();
    const ObjectStoreGlance glance;
    first.reset();
    const testing_support::MemoryStoreMount second;
    makeDatabase(TEXT("Rows"));
    OpenDatabase rows(TEXT("Rows"));
    EXPECT_NE(rows.add(Row().number(1)), 0u);
    EXPECT_EQ(rows.walk().size(), 1u);
}

}  // namespace
}  // namespace objectstore_test

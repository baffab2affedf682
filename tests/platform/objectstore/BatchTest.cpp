#include <atomic>
#include <thread>

#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/platform/objectstore/StoreTest.h"

namespace objectstore_test {
namespace {

using testing_support::quickOptions;
using testing_support::TemporaryStore;

class Batch : public StoreTest {
protected:
    Batch() { makeDatabase(TEXT("Rows")); }

    static DWORD countSeenByAnotherThread() {
        DWORD seen = 0;
        std::thread([&] { seen = OpenDatabase(TEXT("Rows")).info().dwNumRecords; }).join();
        return seen;
    }
};
INSTANTIATE_TEST_SUITE_P(BothStores, Batch, bothStores, nameOfKind);

TEST_P(Batch, OtherThreadsSeeNothingOfItBeforeItsEndAndAllAfter) {
    OpenDatabase rows(TEXT("Rows"));
    {
        ObjectStoreBatch batch;
        ASSERT_TRUE(batch.begun());
        rows.add(Row().number(1));
        rows.add(Row().number(2));
        EXPECT_EQ(rows.info().dwNumRecords, 2u) << "its own thread sees what it wrote";
        EXPECT_EQ(rows.walk().size(), 2u);
        EXPECT_EQ(countSeenByAnotherThread(), 0u);
        EXPECT_TRUE(batch.end());
        EXPECT_EQ(countSeenByAnotherThread(), 2u);
    }
    EXPECT_EQ(countSeenByAnotherThread(), 2u);
}

TEST_P(Batch, DestructorEndsIt) {
    OpenDatabase rows(TEXT("Rows"));
    {
        const ObjectStoreBatch batch;
        rows.add(Row().number(1));
    }
    EXPECT_EQ(countSeenByAnotherThread(), 1u);
}

TEST_P(Batch, NestedOnesBelongToTheOutermost) {
    OpenDatabase rows(TEXT("Rows"));
    ObjectStoreBatch outer;
    rows.add(Row().number(1));
    {
        ObjectStoreBatch inner;
        EXPECT_TRUE(inner.begun());
        rows.add(Row().number(2));
        EXPECT_TRUE(inner.end());
    }
    rows.add(Row().number(3));
    EXPECT_EQ(countSeenByAnotherThread(), 0u);
    EXPECT_TRUE(outer.end());
    EXPECT_EQ(countSeenByAnotherThread(), 3u);
}

TEST_P(Batch, EndingTwiceIsEndingOnce) {
    OpenDatabase rows(TEXT("Rows"));
    ObjectStoreBatch outer;
    {
        ObjectStoreBatch inner;
        EXPECT_TRUE(inner.end());
        EXPECT_TRUE(inner.end());
    }
    rows.add(Row().number(1));
    EXPECT_EQ(countSeenByAnotherThread(), 0u) << "the outer one is still open";
    EXPECT_TRUE(outer.end());
}

TEST_P(Batch, FailedCallInsideUndoesNothing) {
    OpenDatabase rows(TEXT("Rows"));
    {
        ObjectStoreBatch batch;
        rows.add(Row().number(1));
        EXPECT_EQ(rows.add(Row().blob(std::string(70'000, 'x'))), 0u);
        EXPECT_FALSE(rows.erase(0x7FFFFFFF));
        rows.add(Row().number(2));
        EXPECT_TRUE(batch.end());
    }
    EXPECT_EQ(countSeenByAnotherThread(), 2u);
}

TEST_P(Batch, GivenUpLeavesNothingOfItAndSaysSoAtItsEnd) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID kept = rows.add(Row().number(1));
    {
        ObjectStoreBatch outer;
        rows.add(Row().number(2));
        {
            ObjectStoreBatch inner;
            EXPECT_TRUE(rows.erase(kept));
            ObjectStoreBatch::giveUp();
            EXPECT_EQ(rows.add(Row().number(3)), 0u);
            EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
            EXPECT_FALSE(inner.end());
        }
        EXPECT_EQ(rows.walk(), std::vector<CEOID>{kept}) << "what is read is what there was";
        EXPECT_FALSE(outer.end());
    }
    EXPECT_EQ(countSeenByAnotherThread(), 1u);
    ObjectStoreBatch::giveUp();  // outside of one it does nothing
    ObjectStoreBatch next;
    EXPECT_NE(rows.add(Row().number(4)), 0u);
    EXPECT_TRUE(next.end());
    EXPECT_EQ(countSeenByAnotherThread(), 2u);
}

TEST_P(Batch, ReadThenWriteInsideIsSafeAgainstOtherThreads) {
    constexpr int threads = 4;
    constexpr int rounds = 25;
    std::vector<std::thread> writers;
    for (int i = 0; i < threads; ++i) {
        writers.emplace_back([] {
            OpenDatabase rows(TEXT("Rows"), numberId);
            for (int round = 0; round < rounds; ++round) {
                const ObjectStoreBatch batch;
                const int largest = rows.toLast() == 0 ? 0 : rows.read()->number();
                rows.add(Row().number(largest + 1));
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    OpenDatabase rows(TEXT("Rows"), numberId);
    EXPECT_EQ(rows.info().dwNumRecords, static_cast<DWORD>(threads * rounds));
    rows.toLast();
    EXPECT_EQ(rows.read()->number(), threads * rounds);
}

TEST(BatchOnDisk, WriterThatWaitsTooLongIsToldSoAndItsWritesFailAtOnce) {
    ObjectStore::Options options = quickOptions();
    options.writerWait = std::chrono::milliseconds(50);
    const TemporaryStore store(options);
    makeDatabase(TEXT("Rows"));
    const ObjectStoreBatch holder;
    ASSERT_TRUE(holder.begun());

    std::thread([] {
        OpenDatabase rows(TEXT("Rows"));
        ObjectStoreBatch batch;
        EXPECT_FALSE(batch.begun());
        EXPECT_EQ(GetLastError(), ERROR_LOCK_VIOLATION);
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < 20; ++i) {
            EXPECT_EQ(rows.add(Row().number(i)), 0u);
            EXPECT_EQ(GetLastError(), ERROR_LOCK_VIOLATION);
        }
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
        {
            const ObjectStoreBatch nested;
            EXPECT_FALSE(nested.begun());
        }
        EXPECT_FALSE(batch.end());
        EXPECT_EQ(GetLastError(), ERROR_LOCK_VIOLATION);
    }).join();
}

TEST(BatchOnDisk, WriterWaitsForTheOneAtWork) {
    const TemporaryStore store;
    makeDatabase(TEXT("Rows"));
    std::atomic<bool> waiting = false;
    std::thread writer;
    {
        const ObjectStoreBatch holder;
        writer = std::thread([&] {
            OpenDatabase rows(TEXT("Rows"));
            waiting = true;
            EXPECT_NE(rows.add(Row().number(2)), 0u);
        });
        while (!waiting) {
            std::this_thread::yield();
        }
        OpenDatabase(TEXT("Rows")).add(Row().number(1));
    }
    writer.join();
    OpenDatabase rows(TEXT("Rows"));
    EXPECT_EQ(rows.info().dwNumRecords, 2u);
    rows.to(0);
    EXPECT_EQ(rows.read()->number(), 1);
}

}  // namespace
}  // namespace objectstore_test

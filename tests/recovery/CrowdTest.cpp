#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include "tests/recovery/Crowd.h"
#include "tests/support/Builders.h"
#include "tests/support/Forked.h"
#include "tests/support/TemporaryStore.h"

using crowd_test::expectNothingLostInTheCrowd;
using crowd_test::Figures;
using namespace testing_support;

namespace {

using Clock = std::chrono::steady_clock;

/// Holds the store for writing from when it says so until it hears that it may go on.
void hold(Line& parent, const std::string& path) {
    parent.hear<char>();
    if (!ObjectStore::mount(path, quickOptions())) throw std::runtime_error(ObjectStore::errorText());
    {
        const ObjectStoreBatch batch;
        if (!batch.begun()) throw std::runtime_error("it is held by another");
        parent.say('h');
        parent.hear<char>();
    }
    ObjectStore::unmount();
    parent.say('e');
}

}  // namespace

TEST(Crowd, LosesNothingOfWhatFourProgramsWereToldBesideABusyOne) {
    const Figures figures =
        expectNothingLostInTheCrowd({.programs = 4, .operationsOfEach = 50, .options = quickOptions()});
    EXPECT_EQ(200u, figures.calls);
    EXPECT_EQ(0u, figures.refused) << "ten seconds are enough for a turn: " << figures;
}

TEST(Crowd, WriterThatWaitsInVainIsRefusedAfterItsWaitAndChangesNothing) {
    constexpr std::chrono::milliseconds writerWait(200);
    constexpr std::chrono::seconds margin(5);  // for a processor, on a machine that is busy
    const TemporaryFolder folder;
    const std::string path = (folder / "store.db").string();
    Forked holder([&](Line& parent) { hold(parent, path); });
    ObjectStore::Options options = quickOptions();
    options.writerWait = writerWait;
    ASSERT_TRUE(ObjectStore::mount(path, options));
    {
        OpenPhoneBook book;
        holder.line().say('g');
        holder.line().hear<char>();

        PhoneBook::PBRecord record = contact().name(TEXT("Kim")).group(TEXT("Family")).record();
        DWORD oid = 1;
        SetLastError(ERROR_SUCCESS);
        const auto began = Clock::now();
        EXPECT_EQ(E_FAIL, book->insertPBRecord(record, &oid));
        EXPECT_EQ(ERROR_LOCK_VIOLATION, GetLastError());
        EXPECT_GE(Clock::now() - began, writerWait);
        EXPECT_LT(Clock::now() - began, writerWait + margin);
        EXPECT_EQ(0u, oid);
        EXPECT_EQ(0u, book->getNumRecords());  // who reads does not wait

        holder.line().say('e');
        holder.line().hear<char>();
        EXPECT_EQ(S_OK, book->insertPBRecord(record, &oid));
        EXPECT_EQ(1u, book->getNumRecords());
    }
    ObjectStore::unmount();
}

TEST(Crowd, WriterHasTheStoreWhenItsHolderIsKilled) {
    const TemporaryFolder folder;
    const std::string path = (folder / "store.db").string();
    Forked holder([&](Line& parent) { hold(parent, path); });
    ASSERT_TRUE(ObjectStore::mount(path, quickOptions()));
    {
        OpenPhoneBook book;
        holder.line().say('g');
        holder.line().hear<char>();
        holder.kill();
        EXPECT_TRUE(WIFSIGNALED(holder.wait()));
        EXPECT_NE(0u, book.add(contact().name(TEXT("Kim"))));
    }
    ObjectStore::unmount();
}

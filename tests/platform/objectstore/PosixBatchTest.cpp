#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/platform/objectstore/StoreTest.h"

// What a batch leaves when its process is killed.

namespace objectstore_test {
namespace {

using testing_support::TemporaryStore;

/// Runs `body` in another process and waits for its end; the store is not mounted across the fork.
template <class Body>
int inAnotherProcess(TemporaryStore& store, Body&& body) {
    ObjectStore::unmount();
    const pid_t child = fork();
    if (child == 0) {
        if (ObjectStore::mount(store.path(), store.options()) == FALSE) _exit(99);
        body();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    store.remount();
    return status;
}

TEST(BatchOnDisk, DeathOfTheProcessInsideLeavesNothingOfIt) {
    TemporaryStore store;
    makeDatabase(TEXT("Rows"));
    OpenDatabase(TEXT("Rows")).add(Row().number(1));

    const int status = inAnotherProcess(store, [] {
        OpenDatabase rows(TEXT("Rows"));
        rows.add(Row().number(2));
        const ObjectStoreBatch batch;
        rows.add(Row().number(3));
        rows.add(Row().number(4));
        std::raise(SIGKILL);
    });

    ASSERT_TRUE(WIFSIGNALED(status));
    OpenDatabase rows(TEXT("Rows"), numberId);
    EXPECT_EQ(rows.info().dwNumRecords, 2u) << "the call before the batch stays, the batch does not";
    rows.toLast();
    EXPECT_EQ(rows.read()->number(), 2);
}

TEST(BatchOnDisk, WhatEndedSurvivesTheDeathOfTheProcess) {
    TemporaryStore store;
    makeDatabase(TEXT("Rows"));
    const int status = inAnotherProcess(store, [] {
        OpenDatabase rows(TEXT("Rows"));
        ObjectStoreBatch batch;
        rows.add(Row().number(1));
        rows.add(Row().number(2));
        if (batch.end()) std::raise(SIGKILL);
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(OpenDatabase(TEXT("Rows")).info().dwNumRecords, 2u);
}

}  // namespace
}  // namespace objectstore_test
